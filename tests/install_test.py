"""What `cmake --install` lays out is whole: the project of the plug-in guide builds against it, its
script runs, and the installed modules draw with the bundled plug-ins."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = os.path.dirname(os.environ["OSTREL_PLUGINS"])
SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PYTHON = "python2.7" if sys.version_info[0] == 2 else "python3"

SCRIPT = """
import sys
import ostrel
with ostrel.Session() as session:
    session.importModel(sys.argv[1])
    view = session.addOffscreenView(64, 36)
    session.pump()
    view.frame()
    view.savePicture(sys.argv[2])
"""

TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"


def fromGuide(language):
    """The guide's one example in that language."""
    with open(os.path.join(SOURCE, "docs", "plugin-guide.md"), "rb") as guide:
        text = guide.read().decode("utf-8")
    example, = re.findall("```%s\n(.*?)```" % language, text, re.S)
    return example


def run(*command, **options):
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    output = process.communicate()[0].decode("utf-8", "replace")
    if process.returncode:
        raise AssertionError("%s failed:\n%s" % (" ".join(command), output))
    return output


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

        self.write("CMakeLists.txt", fromGuide("cmake"))
        shutil.copy(os.path.join(SOURCE, "plugins", "examples", "selectioncounter.cpp"), self.folder)
        project = os.path.join(self.folder, "build")
        run("cmake", "-G", "Ninja", "-S", self.folder, "-B", project,
            "-DCMAKE_PREFIX_PATH=" + prefix)
        run("cmake", "--build", project)

        environment = dict(os.environ, PYTHONPATH=os.path.join(prefix, "lib", PYTHON),
                           OSTREL_PLUGINS="")
        output = run(sys.executable, "-c", fromGuide("python"), cwd=self.folder, env=environment)
        self.assertEqual(output, "2\n")
        picture = os.path.join(self.folder, "picture.png")
        run(sys.executable, "-c", SCRIPT, self.write("triangle.obj", TRIANGLE), picture,
            env=environment)
        with open(picture, "rb") as written:
            self.assertEqual(written.read(8), b"\x89PNG\r\n\x1a\n")


if __name__ == "__main__":
    unittest.main()
