"""What tests share that open the viewer's windows in scripts: each in a process of its own."""
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

from window_test import DEADLINE, Screen

VIEWER = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def _hasModule(name):
    with open(os.devnull, "w") as nowhere:
        return subprocess.call([sys.executable, "-c", "import " + name], stderr=nowhere) == 0


needsQt = unittest.skipUnless(_hasModule("PySide2.QtWidgets"), "no Qt")
needsTk = unittest.skipUnless(_hasModule("tkinter" if sys.version_info[0] >= 3 else "Tkinter"),
                              "no Tk")
needsScreen = unittest.skipUnless(os.path.exists("/usr/bin/Xvfb"), "no Xvfb")


class WindowScriptTest(unittest.TestCase):
    """Runs scripts, which must succeed, and soon enough; answers the lines that they print."""

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def _runScript(self, script, **environment):
        process = subprocess.Popen([sys.executable, "-c", script], stdout=subprocess.PIPE,
                                   env=dict(os.environ, XDG_RUNTIME_DIR=self.folder,
                                            **environment))  # or Qt complains
        timer = threading.Timer(DEADLINE, process.kill)
        timer.start()
        output = process.communicate()[0]
        timer.cancel()
        self.assertEqual(process.returncode, 0, output)
        return output.decode("ascii").splitlines()

    def runOnScreen(self, script):
        screen = Screen(self.folder, 100, 100)
        self.addCleanup(screen.close)
        return self._runScript(script, DISPLAY=screen.display)

    def runOffscreen(self, script):
        """Of Qt alone."""
        return self._runScript(script, QT_QPA_PLATFORM="offscreen")
