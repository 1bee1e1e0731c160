#!/usr/bin/env python3
"""Compares this project with the libraries and the viewer that others would take instead.

    python3 bench/compare.py [W1 ... W8] [--leaves N] [--rounds N] [--output FILE.tsv]

In each round every program does its work once, in turn, and each round begins with another one, so
that whatever else the machine does falls on all alike. What is printed, one line a figure:

    workload  n  metric  program  median  ratio

where ratio is this project's median by the program's: below 1 this project is ahead. Where a library
has several ways to do the same, each has a line, and the quickest is marked. bench/README.md says
what the workloads are, and how the programs are built. What is not installed is skipped with a line.
Programs that don't show or find the same get a line. Figures hold only beside others of the same
run.

W1 to W4  scene_bench beside the programs of bench/peers
W5, W6    draw_bench beside them
W7        a model to a picture of 1280x720, whole processes: this project's viewer on both
          interpreters, and F3D
W8        start-up: modules imported; a picture of nothing
"""

import argparse
import os
import subprocess
import sys

from display import display
from figures import OURS, RELEASE, ROOT, Figures, inTurn, note
from processes import measurePictures, measureStart

PEERS = os.path.join(ROOT, "build", "peers")
SCENES = ["W1", "W2", "W3", "W4"]
PICTURES = ["W5", "W6"]


def libraryPrograms(ours, environment):
    """(name, path, environment): this project's program, and those beside it in `environment`.

    That is None where they need a display and there is none to be had.
    """
    programs = []
    for name, path, needed in (
        (OURS, os.path.join(RELEASE, "bin", ours), dict(os.environ)),
        ("OpenSceneGraph", os.path.join(PEERS, "osg_bench"), environment),
        ("Coin", os.path.join(PEERS, "coin_bench"), environment),
        ("VTK", os.path.join(PEERS, "vtk_bench"), environment),
    ):
        if not os.path.exists(path):
            note("%s is skipped: %s is not built" % (name, os.path.relpath(path, ROOT)))
        elif needed is None:
            note("%s is skipped: it needs a display; install xvfb" % name)
        else:
            programs.append((name, path, needed))
    return programs


def measureLibraries(ours, arguments, environment, rounds, figures):
    for name, path, own in inTurn(libraryPrograms(ours, environment), rounds):
        result = subprocess.run(
            [path] + arguments, env=own, stdout=subprocess.PIPE, universal_newlines=True
        )
        if result.returncode:
            note("%s failed: status %d" % (name, result.returncode))
        for line in result.stdout.splitlines():
            workload, n, metric, value = line.split()
            metric, _, way = metric.partition("@")
            label = "%s, %s" % (name, way.replace("_", " ")) if way else name
            figures.add((workload, n, metric), label, float(value))
    addToldOnes(figures)


def addToldOnes(figures):
    """What a library is told by itself stands beside our one way as well."""
    for workload, n, metric in figures.values:
        ours = figures.values.get((workload, n, metric.replace("_told", "")), {})
        if metric.endswith(("_told_us", "_told_ms")) and OURS in ours:
            figures.values[workload, n, metric][OURS] = ours[OURS]


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    known = SCENES + PICTURES + ["W7", "W8"]
    parser.add_argument("workloads", nargs="*", metavar="WORKLOAD", help="default: all")
    parser.add_argument("--leaves", type=int, default=1000000, help="of W1 to W4, in thousands")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--output", metavar="FILE.tsv", help="writes the lines there as well")
    options = parser.parse_args()
    # Start-up is measured as it is the second time.
    os.environ.pop("PYTHONDONTWRITEBYTECODE", None)
    unknown = sorted(set(options.workloads) - set(known))
    if unknown:
        parser.error("there is no workload %s; there are %s" % (unknown[0], ", ".join(known)))
    wanted = [name for name in known if name in (options.workloads or known)]

    figures = Figures()
    scenes = [name for name in wanted if name in SCENES]
    if scenes:
        arguments = scenes + ["--leaves", str(options.leaves), "--repetitions", "1"]
        measureLibraries("scene_bench", arguments, dict(os.environ), options.rounds, figures)
    pictures = [name for name in wanted if name in PICTURES]
    if pictures:
        with display() as shown:
            measureLibraries("draw_bench", pictures, shown, options.rounds, figures)
    figures.checkAgreement()
    if "W7" in wanted:
        measurePictures(options.rounds, figures)
    if "W8" in wanted:
        measureStart(options.rounds, figures)

    lines = ["\t".join(("workload", "n", "metric", "program", "median", "ratio"))]
    for workload, n, metric, program, value, ratio in figures.rows():
        shown = "%.3g" % ratio if ratio is not None else ""
        lines.append("\t".join((workload, n, metric, program, "%.4g" % value, shown)))
    print("\n".join(lines))
    if options.output:
        with open(options.output, "w") as file:
            file.write("\n".join(lines) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
