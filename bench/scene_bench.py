"""From the scene engine to a delegate plug-in, driven from Python: scene_bench.py [leaves...]

The road of an application: the bridge is a Python object and hears of every event, the pump is called
from Python. PYTHONPATH names a build's Python folder; both interpreters will do. The workloads are
those of scene_bench, and the lines have its form.

    PYTHONPATH=build/release/python3 python3 bench/scene_bench.py 10000 100000
"""

from __future__ import print_function

import os
import subprocess
import sys
import time

import PyScenelib
import PyVlPluginSystem
import ViewerAPI
from PyVlAttribute import DoubleAttribute, GroupBuilder, IntAttribute

try:
    clock = time.perf_counter
except AttributeError:  # Python 2
    clock = time.time

EDITED_LEAF = "/root/set_0/group_0/leaf_0"
LEAVES_IN_SET = 1000
LEAVES_IN_GROUP = 100


def translated(x):
    return GroupBuilder().set("translate", DoubleAttribute([x, 0.0, 0.0], 3)).build()


def editArgs(x):
    """A literal scene that consists of one leaf's transform."""
    return GroupBuilder().set("staticScene.c.set_0.c.group_0.c.leaf_0.a.xform", translated(x)).build()


def memoryBytes(name):
    with open("/proc/self/status") as status:
        for line in status:
            if line.startswith(name + ":"):
                return int(line.split()[1]) * 1024.0
    return 0.0


def median(values):
    values = sorted(values)
    return values[len(values) // 2]


def parentsOfLeaves(leaves):
    yield "/root"
    for first in range(0, leaves, LEAVES_IN_GROUP):
        if first % LEAVES_IN_SET == 0:
            yield "/root/set_%d" % (first // LEAVES_IN_SET)
        yield "/root/set_%d/group_%d" % (
            first // LEAVES_IN_SET,
            first % LEAVES_IN_SET // LEAVES_IN_GROUP,
        )


class Bench(object):
    def __init__(self, leaves):
        self.leaves = leaves
        self.pumpSeconds = 0.0
        folder = os.path.join(os.path.dirname(PyScenelib.__file__), "..", "bench_plugins")
        if PyVlPluginSystem.loadLibrary(os.path.join(folder, "BenchPlugins.so")) != 1:
            raise SystemExit("no BenchPlugins.so in " + folder)
        self.delegate = ViewerAPI.CreateViewerDelegate("CountingDelegate")
        self.delegate.setBoundingBoxesEnabled(False)
        scene = PyScenelib.createOp(
            "Scene.Generate", GroupBuilder().set("leafCount", IntAttribute(leaves)).build()
        )
        self.edited = PyScenelib.createOp("Scene.Literal", editArgs(0.0))
        self.viewed = PyScenelib.createOp("Scene.Merge", None, [scene, self.edited])

    def show(self, workload, metric, value):
        print("%s %d %s %.6g" % (workload, self.leaves, metric, value))
        sys.stdout.flush()

    def read(self, name):
        return self.delegate.getOptionByName(name).getValue(0.0)

    def pumpUntil(self, name, value):
        deadline = clock() + 300.0
        while self.read(name) != value:
            if clock() > deadline:
                raise SystemExit("%s is %g and not %g" % (name, self.read(name), value))
            start = clock()
            self.delegate.processLocationEvents()
            self.pumpSeconds += clock() - start
            time.sleep(0)

    def populate(self):
        before = memoryBytes("VmRSS")
        parents = list(parentsOfLeaves(self.leaves))
        start = clock()
        self.delegate.openLocations(parents)
        self.delegate.setViewOp(self.viewed)
        self.pumpUntil("leaves", float(self.leaves))
        self.show("python-populate", "total_ms", (clock() - start) * 1e3)
        self.show("python-populate", "pump_ms", self.pumpSeconds * 1e3)
        self.show("python-populate", "checksum", self.read("checksum"))
        locations = self.leaves + len(parents)
        self.show(
            "python-memory", "peak_bytes_per_location", (memoryBytes("VmHWM") - before) / locations
        )

    def editOne(self):
        times = []
        for i in range(1, 16):
            start = clock()
            PyScenelib.setOpArgs(self.edited, "Scene.Literal", editArgs(1000.0 + i))
            self.pumpUntil("lastX", 1000.0 + i)
            times.append(clock() - start)
        self.show("python-edit-one", "median_ms", median(times) * 1e3)

    def hideGroup(self):
        times = []
        for _ in range(7):
            for change in (
                lambda: self.delegate.hideLocations(["/root/set_0"]),
                self.delegate.unhideAllLocations,
            ):
                start = clock()
                change()
                self.delegate.processLocationEvents()
                times.append(clock() - start)
        self.show("python-hide-group", "median_ms", median(times) * 1e3)

    def readAttributes(self):
        """getAttributes of every leaf of a set, again and again for a second."""
        paths = [
            "%s/leaf_%d" % (group, leaf)
            for group in list(parentsOfLeaves(LEAVES_IN_SET))[2:]
            for leaf in range(LEAVES_IN_GROUP)
        ]
        getAttributes = self.delegate.getAttributes
        reads = 0
        start = clock()
        while clock() - start < 1.0:
            for path in paths:
                if getAttributes(path) is None:
                    raise SystemExit("no attributes of " + path)
            reads += len(paths)
        self.show("python-attributes", "reads_per_second", reads / (clock() - start))


def main(arguments):
    sizes = [int(size) for size in arguments] or [10000, 100000, 1000000]
    if len(sizes) > 1:  # a fresh process for each, so that each finds a cold heap
        return max(subprocess.call([sys.executable, __file__, str(size)]) for size in sizes)
    bench = Bench(sizes[0])
    bench.populate()
    bench.editOne()
    bench.hideGroup()
    bench.readAttributes()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
