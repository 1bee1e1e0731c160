"""What `cmake --install` lays out is whole: a plug-in author's project builds against it, and the
installed modules load that plug-in and draw with the bundled ones."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = os.path.dirname(os.environ["OSTREL_PLUGINS"])
SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PYTHON = "python2.7" if sys.version_info[0] == 2 else "python3"

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(Author LANGUAGES C CXX)
set(CMAKE_CXX_STANDARD 20)
find_package(ViewerAPI 0.1 REQUIRED)
add_library(SelectionCounter MODULE selectioncounter.cpp)
target_link_libraries(SelectionCounter PRIVATE ViewerAPI::ViewerAPI_headers)
target_link_options(SelectionCounter PRIVATE
  -Wl,-z,defs -Wl,--version-script=${ViewerAPI_PLUGIN_VERSION_SCRIPT})
set_target_properties(SelectionCounter PROPERTIES PREFIX "")
"""

SCRIPT = """
import sys
import PyVlPluginSystem, PyWindowSystem, ViewerAPI, ostrel
assert PyVlPluginSystem.loadLibrary(sys.argv[1]) == 1
with ostrel.Session() as session:
    session.importModel(sys.argv[2])
    view = session.addOffscreenView(64, 36)
    session.pump()
    view.frame()
    view.savePicture(sys.argv[3])
"""

TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"


def run(*command, **options):
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    output = process.communicate()[0].decode("utf-8", "replace")
    if process.returncode:
        raise AssertionError("%s failed:\n%s" % (" ".join(command), output))


@unittest.skipIf("LD_PRELOAD" in os.environ, "a preloaded sanitizer would reach the compiler too")
class InstallTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as target:
            target.write(text)
        return path

    def testAPluginProjectBuildsAndRunsAgainstTheInstalledTree(self):
        prefix = os.path.join(self.folder, "installed")
        run("cmake", "--install", BUILD, "--prefix", prefix)

        self.write("CMakeLists.txt", PROJECT)
        shutil.copy(os.path.join(SOURCE, "plugins", "examples", "selectioncounter.cpp"), self.folder)
        project = os.path.join(self.folder, "build")
        run("cmake", "-G", "Ninja", "-S", self.folder, "-B", project,
            "-DCMAKE_PREFIX_PATH=" + prefix)
        run("cmake", "--build", project)

        environment = dict(os.environ, PYTHONPATH=os.path.join(prefix, "lib", PYTHON),
                           OSTREL_PLUGINS="")
        picture = os.path.join(self.folder, "picture.png")
        run(sys.executable, "-c", SCRIPT, os.path.join(project, "SelectionCounter.so"),
            self.write("triangle.obj", TRIANGLE), picture, env=environment)
        with open(picture, "rb") as written:
            self.assertEqual(written.read(8), b"\x89PNG\r\n\x1a\n")


if __name__ == "__main__":
    unittest.main()
