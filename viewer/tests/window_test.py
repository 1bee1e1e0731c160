"""The viewer's windows on a real X server, read back from its screen."""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from windowscripts import DEADLINE, Screen, VIEWER, needsQt, needsScreen

VIEW = os.path.join(VIEWER, "view.py")
DUCK = "/usr/share/assimp/models/Collada/duck.dae"

# Runs the viewer with Qt out of reach.
WITHOUT_QT = "import os, runpy, sys; sys.modules['PySide2'] = None; sys.argv = sys.argv[1:];" \
             " sys.path[0] = os.path.dirname(sys.argv[0]);" \
             " runpy.run_path(sys.argv[0], run_name='__main__')"


@needsScreen
class WindowTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.screen = Screen(self.folder, 320, 240)
        self.addCleanup(self.screen.close)

    def start(self, *command, **environment):
        process = subprocess.Popen([sys.executable] + list(command), stderr=subprocess.PIPE,
                                   env=dict(os.environ, DISPLAY=self.screen.display,
                                            XDG_RUNTIME_DIR=self.folder,  # or Qt complains
                                            **environment))

        def stop():
            if process.poll() is None:
                process.kill()
                process.wait()
            process.stderr.close()

        self.addCleanup(stop)
        return process

    def duckShows(self):
        """Whether the middle of the screen is yellow: far more red and green than blue."""
        rows = self.screen.pixels()
        middle = [pixel for row in rows[90:150] for pixel in row[130:190]]
        yellow = sum(1 for blue, green, red in middle if min(red, green) > blue + 40)
        return yellow > len(middle) // 3

    def checkShows(self, *command):
        process = self.start(*command)
        deadline = time.time() + DEADLINE
        while not self.duckShows():
            if process.poll() is not None:
                self.fail("the viewer ended: %r" % process.stderr.read())
            self.assertTrue(time.time() < deadline, "nothing on the screen")
            time.sleep(0.1)
        return process

    def checkFails(self, problem, *command, **environment):
        process = self.start(*command + (DUCK,), **environment)
        lines = process.communicate()[1].decode("utf-8").splitlines()
        self.assertEqual((process.returncode, lines), (1, ["view: " + problem]))

    def testWindowShowsAModel(self):
        self.checkShows(VIEW, DUCK, "--size", "320x240")

    def testTkWindowShowsAModel(self):
        self.checkShows("-c", WITHOUT_QT, VIEW, DUCK, "--size", "320x240")

    def testWindowShowsTheOthersWhenAModelFails(self):
        process = self.checkShows(VIEW, "missing.dae", DUCK, "--size", "320x240")
        self.assertTrue(b"missing.dae" in process.stderr.readline())

    def testADisplayThatCannotBeReachedIsToldInALine(self):
        self.screen.close()
        self.screen.display = ":9999"  # its own may be another server's by now
        for command in ((VIEW,), ("-c", WITHOUT_QT, VIEW)):
            self.checkFails("the window can't be shown: couldn't connect to display \"%s\""
                            % self.screen.display, *command)

    @needsQt
    def testAPlatformWithoutX11WindowsIsToldInALine(self):
        self.checkFails("the window needs an X11 display, not \"offscreen\"", VIEW,
                        QT_QPA_PLATFORM="offscreen")


if __name__ == "__main__":
    unittest.main()
