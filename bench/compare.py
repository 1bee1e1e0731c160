#!/usr/bin/env python3
"""Compares this project with the libraries and the viewer that others would take instead.

    python3 bench/compare.py [W1 W2 W3 W4 W7 W8] [--leaves N] [--rounds N] [--output FILE.tsv]

In each round every program does its work once, in turn, and each round begins with another one, so
that whatever else the machine does falls on all alike. What is printed, one line a figure:

    workload  n  metric  program  median  ratio

where ratio is this project's median by the program's: below 1 this project is ahead. bench/README.md
says what the workloads are, and how the programs are built. What is not installed is skipped with a
line. Figures hold only beside others of the same run.

W1 to W4  scene_bench beside the programs of bench/peers
W7        a model to a picture of 1280x720, whole processes: this project's viewer on both
          interpreters, and F3D
W8        start-up: modules imported; a picture of nothing
"""

import argparse
import contextlib
import os
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time
import zlib

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RELEASE = os.path.join(ROOT, "build", "release")
PEERS = os.path.join(ROOT, "build", "peers")
MODELS = "/usr/share/assimp/models"
OURS = "ours"

#: Of Debian's assimp-testmodels: some of each common kind, from small to not so small.
PICTURED = (
    "Collada/duck.dae",
    "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb",
    "OBJ/spider.obj",
    "PLY/Wuson.ply",
    "FBX/spider.fbx",
)

#: What one figure counts as the same in all programs: their checksums, to so many parts.
TOLERANCE = 1e-3


class Figures:
    """Figures of programs, several of each, in the order in which they came first."""

    def __init__(self):
        self.values = {}  # (workload, n, metric) -> program -> values

    def add(self, key, program, value):
        self.values.setdefault(key, {}).setdefault(program, []).append(value)

    def medians(self, key):
        return {name: statistics.median(each) for name, each in self.values[key].items()}

    def rows(self):
        """(workload, n, metric, program, median, ratio or None), this project's before others."""
        for key in self.values:
            medians = self.medians(key)
            ours = [name for name in medians if name.startswith(OURS)]
            for name in ours:
                yield key + (name, medians[name], None)
            for name, value in medians.items():
                if name in ours:
                    continue
                for each in ours:
                    label = name if len(ours) == 1 else "%s to %s" % (each, name)
                    yield key + (label, value, medians[each] / value if value else None)


def note(text):
    print("# " + text, flush=True)


def inTurn(programs, rounds):
    """The programs of all rounds; each round begins with another one."""
    for i in range(rounds):
        first = i % len(programs)
        yield from programs[first:] + programs[:first]


# W1 to W4


def scenePrograms():
    programs = []
    for name, path in (
        (OURS, os.path.join(RELEASE, "bin", "scene_bench")),
        ("OpenSceneGraph", os.path.join(PEERS, "osg_bench")),
        ("Coin", os.path.join(PEERS, "coin_bench")),
        ("VTK", os.path.join(PEERS, "vtk_bench")),
    ):
        if os.path.exists(path):
            programs.append((name, path))
        else:
            note("%s is skipped: %s is not built" % (name, os.path.relpath(path, ROOT)))
    return programs


def measureScenes(workloads, leaves, rounds, figures):
    for name, path in inTurn(scenePrograms(), rounds):
        command = [path] + workloads + ["--leaves", str(leaves), "--repetitions", "1"]
        result = subprocess.run(command, stdout=subprocess.PIPE, universal_newlines=True)
        if result.returncode:
            note("%s failed: status %d" % (name, result.returncode))
        for line in result.stdout.splitlines():
            workload, n, metric, value = line.split()
            figures.add((workload, n, metric), name, float(value))
            # What a library is told by itself stands beside our one way as well.
            if metric.endswith("_told_us") or metric.endswith("_told_ms"):
                ours = figures.values.get((workload, n, metric.replace("_told", "")), {})
                if OURS in ours:
                    figures.values[(workload, n, metric)][OURS] = ours[OURS]
    compareChecksums(figures)


def compareChecksums(figures):
    """All must have shown the same scene."""
    for key in list(figures.values):
        if key[2] in ("checksum", "box_checksum"):
            medians = figures.medians(key)
            del figures.values[key]
            expected = medians.get(OURS)
            for name, value in medians.items():
                if expected and abs(value - expected) > TOLERANCE * abs(expected):
                    note("%s %s: %s has %.9g and not %.9g" % (key[0], key[2], name, value, expected))


# W7 and W8


def interpreters():
    """(name, command, environment) of this project's Python on each interpreter."""
    cache = os.path.join(RELEASE, "CMakeCache.txt")
    found = []
    for version in ("2.7", "3"):
        prefix = "OSTREL_PYTHON%s:FILEPATH=" % version.replace(".", "")
        try:
            with open(cache) as lines:
                paths = [line[len(prefix) :].strip() for line in lines if line.startswith(prefix)]
        except OSError:
            paths = []
        if not paths:
            note("Python %s is skipped: this project is not built" % version)
            continue
        # What view.sh sets.
        environment = dict(
            os.environ,
            PYTHONPATH=os.path.join(RELEASE, "python" + version),
            OSTREL_PLUGINS=os.path.join(RELEASE, "plugins"),
            GLIBC_TUNABLES="glibc.malloc.hugetlb=1",
        )
        # Not what only stands for it, such as a manager of versions.
        interpreter = subprocess.check_output(
            [paths[0], "-c", "import sys; sys.stdout.write(sys.executable)"],
            universal_newlines=True,
        )
        found.append(("%s, Python %s" % (OURS, version), [interpreter], environment))
    return found


@contextlib.contextmanager
def display():
    """An environment with a display that has GLX; None where there is none to be had."""
    if os.environ.get("DISPLAY"):
        yield dict(os.environ)
        return
    if not shutil.which("Xvfb"):
        yield None
        return
    reading, writing = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x720x24"],
        pass_fds=[writing],
        stderr=subprocess.DEVNULL,
    )
    os.close(writing)
    try:
        with os.fdopen(reading) as number:
            yield dict(os.environ, DISPLAY=":" + number.readline().strip())
    finally:
        server.terminate()
        server.wait()


def run(command, environment):
    """Seconds of wall clock and of the processors, and the exit status."""
    before = os.times()
    begin = time.perf_counter()
    status = subprocess.run(
        command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    ).returncode
    wall = time.perf_counter() - begin
    after = os.times()
    processors = (
        after.children_user + after.children_system - before.children_user - before.children_system
    )
    return wall, processors, status


def isDrawn(path):
    """Whether a PNG file shows more than a plain ground."""
    try:
        with open(path, "rb") as file:
            content = file.read()
    except OSError:
        return False
    at, packed, header = 8, b"", None
    while at < len(content):
        (size,) = struct.unpack(">I", content[at : at + 4])
        kind, body = content[at + 4 : at + 8], content[at + 8 : at + 8 + size]
        at += 12 + size
        if kind == b"IHDR":
            header = struct.unpack(">IIBB", body[:10])
        elif kind == b"IDAT":
            packed += body
    width, height, _, kind = header
    row = width * {0: 1, 2: 3, 4: 2, 6: 4}[kind] + 1
    pixels = zlib.decompress(packed)
    return len({pixels[row * y : row * (y + 1)] for y in range(height)}) > 5


def measureProcesses(workload, metric, programs, rounds, figures):
    """Each program is (name, command, environment, picture that it has to draw or None)."""
    failed = set()
    for name, command, environment, picture in programs:  # once for the disk's sake
        _, _, status = run(command, environment)
        if status or (picture and not isDrawn(picture)):
            failed.add(name)
            what = "status %d" % status if status else "an empty picture"
            note("%s %s: %s is skipped: %s" % (workload, metric, name, what))
    programs = [program for program in programs if program[0] not in failed]
    for name, command, environment, _ in inTurn(programs, rounds) if programs else ():
        wall, processors, _ = run(command, environment)
        figures.add((workload, "1", metric + ".wall_ms"), name, 1000 * wall)
        figures.add((workload, "1", metric + ".cpu_ms"), name, 1000 * processors)


def measurePictures(rounds, figures):
    f3d = shutil.which("f3d")
    if not f3d:
        note("F3D is skipped: install f3d")
    viewer = os.path.join(ROOT, "viewer", "view.py")
    with tempfile.TemporaryDirectory() as folder, display() as shown:
        if f3d and not shown:
            note("F3D is skipped: it needs a display; install xvfb")
            f3d = None
        for model in PICTURED:
            path = os.path.join(MODELS, model)
            if not os.path.exists(path):
                note("%s is skipped: install assimp-testmodels" % model)
                continue
            programs = []
            for name, python, environment in interpreters():
                picture = os.path.join(folder, name[-1] + ".png")
                command = python + [viewer, path, "--output", picture, "--size", "1280x720"]
                programs.append((name, command, environment, picture))
            if f3d:
                picture = os.path.join(folder, "f3d.png")
                command = [f3d, "--dry-run", "--resolution", "1280,720", "--output", picture, path]
                programs.append(("F3D", command, shown, picture))
            measureProcesses("W7", os.path.basename(model), programs, rounds, figures)


PICTURE_OF_NOTHING = """
import ostrel
with ostrel.Session() as session:
    view = session.addOffscreenView(1280, 720)
    session.pump()
    view.draw()
"""
VTK_PICTURE_OF_NOTHING = """
import vtk
window = vtk.vtkRenderWindow()
window.SetOffScreenRendering(1)
window.SetSize(1280, 720)
window.AddRenderer(vtk.vtkRenderer())
window.Render()
"""


def measureStart(rounds, figures):
    ours = interpreters()
    python = shutil.which("python3", path="/usr/bin")
    with display() as shown:
        hasVtk = python and shown and run([python, "-c", "import vtk"], shown)[2] == 0
        if not hasVtk:
            note("VTK's Python is skipped: install python3-vtk9 and xvfb")
        for metric, script, peer in (
            ("import", "import ostrel", "import vtk"),
            ("picture_of_nothing", PICTURE_OF_NOTHING, VTK_PICTURE_OF_NOTHING),
        ):
            programs = [(name, command + ["-c", script], env, None) for name, command, env in ours]
            if hasVtk:
                programs.append(("VTK", [python, "-c", peer], shown, None))
            measureProcesses("W8", metric, programs, rounds, figures)


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    known = ["W1", "W2", "W3", "W4", "W7", "W8"]
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
    scenes = [name for name in wanted if name in known[:4]]
    if scenes:
        measureScenes(scenes, options.leaves, options.rounds, figures)
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
