"""W7 and W8: whole processes, from their start to their end."""

import os
import shutil
import struct
import subprocess
import tempfile
import time
import zlib

from display import display
from figures import OURS, RELEASE, ROOT, inTurn, note

MODELS = "/usr/share/assimp/models"

#: Of Debian's assimp-testmodels: some of each common kind, from small to not so small.
PICTURED = (
    "Collada/duck.dae",
    "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb",
    "OBJ/spider.obj",
    "PLY/Wuson.ply",
    "FBX/spider.fbx",
)


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
            GLIBC_TUNABLES="glibc.malloc.hugetlb=1:glibc.malloc.mmap_threshold=33554432"
            ":glibc.malloc.trim_threshold=1073741824",
        )
        # Not what only stands for it, such as a manager of versions.
        interpreter = subprocess.check_output(
            [paths[0], "-c", "import sys; sys.stdout.write(sys.executable)"],
            universal_newlines=True,
        )
        found.append(("%s, Python %s" % (OURS, version), [interpreter], environment))
    return found


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
