"""What tests share that draw in windows of a toolkit which knows nothing of OpenGL."""
import time
import unittest

try:
    import tkinter
except ImportError:
    try:
        import Tkinter as tkinter
    except ImportError:
        tkinter = None

import PyVlLogging

from xserver import WindowReader, XServer

# What a pump, or a picture on its way through the server, may take on a loaded machine.
DEADLINE = 60.0


class TkWindowTest(unittest.TestCase):
    """Tests on a screen of their own; passed over where there is no X server or no Tk."""

    @classmethod
    def setUpClass(cls):
        if tkinter is None:
            raise unittest.SkipTest("this interpreter has no Tk")
        try:
            cls.server = XServer()
        except (OSError, RuntimeError) as error:
            raise unittest.SkipTest("no X server: %s" % error)

    @classmethod
    def tearDownClass(cls):
        cls.server.stop()

    def setUp(self):
        self.log = []
        PyVlLogging.setSink(lambda *line: self.log.append(line))
        self.root = tkinter.Tk()
        self.reader = WindowReader()

    def tearDown(self):
        self.reader.close()
        self.root.destroy()
        PyVlLogging.setSink(None)

    def addFrame(self, width, height, **options):
        """A Tk frame on the screen that leaves its pixels alone."""
        frame = tkinter.Frame(self.root, width=width, height=height, background="", **options)
        frame.pack()
        self.root.update()
        return frame

    def addFrameOfAnotherVisual(self, width, height):
        """A frame whose window no context of the others fits."""
        try:
            return self.addFrame(width, height, visual=("truecolor", 32), colormap="new")
        except tkinter.TclError as error:
            self.skipTest("the server has no other visual: %s" % error)

    def waitForPicture(self, frame, isExpected, draw=lambda: None):
        """The picture in the frame, once it is as expected; the last one when it never is."""
        deadline = time.time() + DEADLINE
        while True:
            draw()
            picture = self.reader.read(frame.winfo_id(), frame.winfo_width(),
                                       frame.winfo_height())
            if isExpected(picture) or time.time() > deadline:
                return picture
