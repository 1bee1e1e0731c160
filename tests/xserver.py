"""An X server without a screen, and the pictures in its windows."""
import collections
import ctypes
import os
import signal
import subprocess

#: pixels: (red, green, blue) of each, 0 to 255, row after row from the top.
Picture = collections.namedtuple("Picture", "width height pixels")

_PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None)


def _endWithParent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


class XServer(object):
    """A server of its own on a free display, which DISPLAY names until stop().

    Raises OSError where there is no Xvfb, RuntimeError when it doesn't start.
    """

    def __init__(self, width=1024, height=768):
        # What is preloaded for this interpreter, a sanitizer's runtime, is not for the server.
        environment = dict(os.environ)
        environment.pop("LD_PRELOAD", None)
        with open(os.devnull, "w") as nowhere:
            self._process = subprocess.Popen(
                ["Xvfb", "-displayfd", "1", "-screen", "0", "%dx%dx24" % (width, height),
                 "-noreset", "-nolisten", "tcp"],
                stdout=subprocess.PIPE, stderr=nowhere, env=environment,
                preexec_fn=_endWithParent)
        number = self._process.stdout.readline().decode().strip()
        if not number:
            self._process.wait()
            raise RuntimeError("Xvfb doesn't start")
        self._displayBefore = os.environ.get("DISPLAY")
        os.environ["DISPLAY"] = ":" + number

    def stop(self):
        if self._displayBefore is None:
            del os.environ["DISPLAY"]
        else:
            os.environ["DISPLAY"] = self._displayBefore
        self._process.stdout.close()
        self._process.terminate()
        self._process.wait()


class WindowReader(object):
    """Reads windows of the display that DISPLAY names, as another X client sees them."""

    _ALL_PLANES = ctypes.c_ulong(-1)
    _Z_PIXMAP = 2

    def __init__(self):
        self._x = ctypes.CDLL("libX11.so.6")
        pointer, number = ctypes.c_void_p, ctypes.c_int
        self._x.XOpenDisplay.restype = pointer
        self._x.XOpenDisplay.argtypes = [ctypes.c_char_p]
        self._x.XGetImage.restype = pointer
        self._x.XGetImage.argtypes = [pointer, ctypes.c_ulong, number, number, ctypes.c_uint,
                                      ctypes.c_uint, ctypes.c_ulong, number]
        self._x.XGetPixel.restype = ctypes.c_ulong
        self._x.XGetPixel.argtypes = [pointer, number, number]
        self._x.XDestroyImage.argtypes = [pointer]
        self._x.XCloseDisplay.argtypes = [pointer]
        self._display = self._x.XOpenDisplay(None)
        if not self._display:
            raise RuntimeError("no display %r" % os.environ.get("DISPLAY"))

    def read(self, windowId, width, height):
        """The picture in a mapped window, which must be on the screen as a whole."""
        image = self._x.XGetImage(self._display, windowId, 0, 0, width, height, self._ALL_PLANES,
                                  self._Z_PIXMAP)
        if not image:
            raise RuntimeError("window %d can't be read" % windowId)
        pixels = []
        for y in range(height):
            for x in range(width):
                value = self._x.XGetPixel(image, x, y)
                pixels.append((value >> 16 & 255, value >> 8 & 255, value & 255))
        self._x.XDestroyImage(image)
        return Picture(width, height, pixels)

    def close(self):
        self._x.XCloseDisplay(self._display)
