"""What tests of the viewer's windows share: a screen, and scripts in processes of their own."""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import unittest

VIEWER = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

#: What a window, or a script with one, may take on a loaded machine, in seconds.
DEADLINE = 120.0


def _hasModule(name):
    with open(os.devnull, "w") as nowhere:
        return subprocess.call([sys.executable, "-c", "import " + name], stderr=nowhere) == 0


needsQt = unittest.skipUnless(_hasModule("PySide2.QtWidgets"), "no Qt")
needsTk = unittest.skipUnless(_hasModule("tkinter" if sys.version_info[0] >= 3 else "Tkinter"),
                              "no Tk")
needsScreen = unittest.skipUnless(os.path.exists("/usr/bin/Xvfb"), "no Xvfb")


class Screen(object):
    """An X server with a screen in a file."""

    def __init__(self, folder, width, height):
        reader, writer = os.pipe()
        options = {} if sys.version_info[0] < 3 else {"pass_fds": (writer,)}
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "%dx%dx24" % (width, height),
             "-fbdir", folder, "-nolisten", "tcp"], stderr=subprocess.PIPE, **options)
        os.close(writer)
        number = b""
        while not number.endswith(b"\n"):  # it ends when the pipe closes before that
            part = os.read(reader, 100)
            if not part:
                raise RuntimeError("Xvfb: %r" % self.server.communicate()[1])
            number += part
        os.close(reader)
        self.display = ":" + number.decode("ascii").strip()
        self.file = os.path.join(folder, "Xvfb_screen0")

    def close(self):
        if self.server.poll() is None:
            self.server.terminate()
            self.server.communicate()

    def pixels(self):
        """Rows of (blue, green, red) from the top: the file is an X window dump."""
        with open(self.file, "rb") as stream:
            data = stream.read()
        header = struct.unpack(">25I", data[:100])
        begin = header[0] + header[19] * 12
        width, height, stride = header[4], header[5], header[12]
        return [[tuple(bytearray(data[begin + y * stride + 4 * x:][:3])) for x in range(width)]
                for y in range(height)]


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
