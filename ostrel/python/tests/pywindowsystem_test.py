"""Off-screen windows from Python. What is drawn to them is tested where there are viewports."""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

import PyWindowSystem


class PyWindowSystemTest(unittest.TestCase):
    def setUp(self):
        self.window = PyWindowSystem.createOffscreen(5, 3)

    def testIdsAreNegativeAndDiffer(self):
        other = PyWindowSystem.createOffscreen(1, 1)
        self.assertTrue(self.window < 0)
        self.assertTrue(other < 0)
        self.assertNotEqual(self.window, other)
        self.assertTrue(type(self.window) is int)

    def testAPictureIsSizeAndBytes(self):
        self.assertEqual(PyWindowSystem.readPixels(self.window), (5, 3, b"\0" * 60))
        PyWindowSystem.resizeOffscreen(self.window, 2, 7)
        self.assertEqual(PyWindowSystem.readPixels(self.window), (2, 7, b"\0" * 56))

    def testAnEndedWindowIsUnknown(self):
        PyWindowSystem.destroyOffscreen(self.window)
        text = "There is no off-screen surface %d" % self.window
        for call in (lambda: PyWindowSystem.readPixels(self.window),
                     lambda: PyWindowSystem.destroyOffscreen(self.window),
                     lambda: PyWindowSystem.resizeOffscreen(self.window, 1, 1),
                     lambda: PyWindowSystem.writePng(self.window, "never.png")):
            with self.assertRaises(ValueError) as caught:
                call()
            self.assertEqual(str(caught.exception), text)
        self.assertFalse(os.path.exists("never.png"))

    def testImpossibleSizesAreValueErrors(self):
        for width, height in ((0, 1), (1, 0), (-5, 5), (16385, 1), (1, 16385)):
            with self.assertRaises(ValueError) as caught:
                PyWindowSystem.createOffscreen(width, height)
            self.assertEqual(str(caught.exception),
                             "An off-screen surface can't be %dx%d pixels: each must be from 1 to "
                             "16384" % (width, height))
            self.assertRaises(ValueError, PyWindowSystem.resizeOffscreen, self.window, width,
                              height)
        self.assertEqual(PyWindowSystem.readPixels(self.window)[:2], (5, 3))

    def testWrongArgumentsAreErrors(self):
        self.assertRaises(TypeError, PyWindowSystem.createOffscreen, 1)
        self.assertRaises(TypeError, PyWindowSystem.createOffscreen, "1", "1")
        self.assertRaises(OverflowError, PyWindowSystem.createOffscreen, 2 ** 40, 1)
        self.assertRaises(TypeError, PyWindowSystem.readPixels, None)
        self.assertRaises(TypeError, PyWindowSystem.writePng, self.window)

    def testTheRendererMayBeLoadedAheadAndNeverUsed(self):
        script = "import PyWindowSystem; PyWindowSystem.openAhead(); PyWindowSystem.openAhead()"
        self.assertEqual(subprocess.call([sys.executable, "-c", script]), 0)

    def testAPictureIsWrittenAsPng(self):
        folder = tempfile.mkdtemp()
        try:
            path = os.path.join(folder, "view.png")
            PyWindowSystem.writePng(self.window, path)
            with open(path, "rb") as png:
                content = png.read()
            self.assertEqual(content[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", content[16:24]), (5, 3))
        finally:
            shutil.rmtree(folder)

    def testAPictureThatCannotBeWrittenIsAnIOErrorWithPathAndReason(self):
        with self.assertRaises(IOError) as caught:
            PyWindowSystem.writePng(self.window, "/no/such/folder/view.png")
        self.assertEqual(str(caught.exception),
                         "Can't write '/no/such/folder/view.png': No such file or directory")


if __name__ == "__main__":
    unittest.main()
