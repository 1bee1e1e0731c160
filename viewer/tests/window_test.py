"""The viewer's windows on a real X server, read back from its screen."""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

VIEW = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "view.py")
DUCK = "/usr/share/assimp/models/Collada/duck.dae"
DEADLINE = 120.0

# Runs the viewer with Qt out of reach.
WITHOUT_QT = "import os, runpy, sys; sys.modules['PySide2'] = None; sys.argv = sys.argv[1:];" \
             " sys.path[0] = os.path.dirname(sys.argv[0]);" \
             " runpy.run_path(sys.argv[0], run_name='__main__')"


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


@unittest.skipUnless(os.path.exists("/usr/bin/Xvfb"), "no Xvfb")
class WindowTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.screen = Screen(self.folder, 320, 240)
        self.addCleanup(self.screen.close)

    def start(self, *command):
        process = subprocess.Popen([sys.executable] + list(command), stderr=subprocess.PIPE,
                                   env=dict(os.environ, DISPLAY=self.screen.display,
                                            XDG_RUNTIME_DIR=self.folder))  # or Qt complains

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
            process = self.start(*command + (DUCK,))
            lines = process.communicate()[1].decode("utf-8").splitlines()
            self.assertEqual(process.returncode, 1, lines)
            self.assertEqual(lines, ["view: the window can't be shown: couldn't connect to display "
                                     "\"%s\"" % self.screen.display])


if __name__ == "__main__":
    unittest.main()
