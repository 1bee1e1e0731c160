"""The viewer's window, with Qt."""
import ctypes
import os
import signal
import sys

from PySide2.QtCore import Qt, QTimer
from PySide2.QtWidgets import QApplication, QWidget

from interaction import Pump, pressKey, titleAt
from ostrel import events

_TICK_MS = 16

_BUTTONS = ((Qt.LeftButton, "left"), (Qt.MiddleButton, "middle"), (Qt.RightButton, "right"))
_MODIFIERS = ((Qt.ShiftModifier, "shift"), (Qt.ControlModifier, "control"), (Qt.AltModifier, "alt"))
_KEYS = dict((getattr(Qt, "Key_" + name), name) for name in (
    "Escape", "Return", "Tab", "Backspace", "Delete", "Insert", "Home", "End", "PageUp", "PageDown",
    "Left", "Right", "Up", "Down", "Space", "Shift", "Control", "Alt"))
_KEYS.update((getattr(Qt, "Key_F%d" % number), "F%d" % number) for number in range(1, 13))


def _names(flags, table):
    return [name for flag, name in table if flags & flag]


def _keyName(event):
    """As docs/events.md has them; "" for other keys."""
    key = event.key()
    if key in _KEYS:
        return _KEYS[key]
    return chr(key).lower() if 0x20 < key < 0x7f else ""


class ViewWidget(QWidget):
    """A native window that the viewer draws into."""

    def __init__(self, session, size, title, loaded, cameraPath=None):
        super(ViewWidget, self).__init__()
        self.setAttribute(Qt.WA_NativeWindow)
        # The viewer paints the whole window itself: Qt must not, and must not flicker.
        self.setAttribute(Qt.WA_PaintOnScreen)
        self.setAttribute(Qt.WA_OpaquePaintEvent)
        self.setAttribute(Qt.WA_NoSystemBackground)
        self.setMouseTracking(True)
        self.resize(*size)
        self._session = session
        self._title = title
        self._loaded = loaded
        self._cameraPath = cameraPath
        self._view = None
        self._pump = None
        self._showTitle()

    def start(self):
        """Begins to show the scene; the widget must be visible."""
        width, height = self._pixels()
        self._view = self._session.addView(int(self.winId()), width, height)
        self._view.lookThrough(self._cameraPath)
        self._pump = Pump(self._session, self._view, lambda: self._loaded(self._view))
        self._timer = QTimer(self)
        self._timer.timeout.connect(self._tick)
        self._timer.start(_TICK_MS)

    def _tick(self):
        self._pump.tick()
        self._showTitle()

    def _showTitle(self):
        self.setWindowTitle(titleAt(self._title, self._session.getTime()) +
                            (self._pump.progress if self._pump else ""))

    def _pixels(self):
        ratio = self.devicePixelRatioF()
        return max(1, int(self.width() * ratio)), max(1, int(self.height() * ratio))

    def _place(self, position):
        ratio = self.devicePixelRatioF()
        return int(position.x() * ratio), int(position.y() * ratio)

    def _send(self, event):
        return self._view is not None and self._view.viewport.event(event)

    def paintEngine(self):
        return None

    def paintEvent(self, event):
        if self._view:
            self._view.draw()

    def resizeEvent(self, event):
        if self._view:
            self._view.resize(*self._pixels())

    def closeEvent(self, event):
        if self._view:
            self._timer.stop()
            self._view = None

    def _button(self, event, build):
        for name in _names(event.button(), _BUTTONS):
            x, y = self._place(event.pos())
            self._send(build(x, y, name, _names(event.buttons(), _BUTTONS),
                             _names(event.modifiers(), _MODIFIERS)))

    def mousePressEvent(self, event):
        self._button(event, events.mousePress)

    def mouseDoubleClickEvent(self, event):
        self._button(event, events.mousePress)

    def mouseReleaseEvent(self, event):
        self._button(event, events.mouseRelease)

    def mouseMoveEvent(self, event):
        x, y = self._place(event.pos())
        buttons = _names(event.buttons(), _BUTTONS)
        self._send(events.mouseMove(x, y, buttons, _names(event.modifiers(), _MODIFIERS)))
        if self._view and not buttons:
            self._view.viewport.hover(x, y)

    def leaveEvent(self, event):
        if self._view:
            self._view.viewport.hover()

    def wheelEvent(self, event):
        x, y = self._place(event.position())
        self._send(events.wheel(x, y, event.angleDelta().y() / 120.0,
                                _names(event.buttons(), _BUTTONS),
                                _names(event.modifiers(), _MODIFIERS)))

    def keyPressEvent(self, event):
        if event.modifiers() & Qt.ControlModifier and event.key() in (Qt.Key_Z, Qt.Key_Y):
            if event.key() == Qt.Key_Y or event.modifiers() & Qt.ShiftModifier:
                self._session.redo()
            else:
                self._session.undo()
        elif self._sendKey(event, events.keyPress):
            return
        elif self._view:
            pressKey(self._session, self._view, _keyName(event),
                     _names(event.modifiers(), _MODIFIERS), self.close)
            self._showTitle()

    def keyReleaseEvent(self, event):
        self._sendKey(event, events.keyRelease)

    def _sendKey(self, event, build):
        name = _keyName(event)
        return bool(name) and self._send(build(name, _names(event.modifiers(), _MODIFIERS)))


def _createApplication():
    platforms = (os.environ.get("QT_QPA_PLATFORM") or "xcb").split(";")
    if "xcb" not in [platform.split(":")[0] for platform in platforms]:
        return QApplication(sys.argv[:1])
    # Without a display Qt would end the process. The connection stands until Qt has its own: some
    # servers reset when their last client leaves, and turn the next one away.
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    display = x11.XOpenDisplay(None)
    if not display:
        raise RuntimeError("the window can't be shown: couldn't connect to display \"%s\""
                           % os.environ.get("DISPLAY", ""))
    try:
        return QApplication(sys.argv[:1])
    finally:
        x11.XCloseDisplay(ctypes.c_void_p(display))


def run(session, size, title, loaded, cameraPath=None):
    """Shows the session's scene in a window until the user closes it. `loaded` is called with the
    view once the whole scene is there. Raises RuntimeError when no window can be shown."""
    application = QApplication.instance() or _createApplication()
    if application.platformName() != "xcb":
        raise RuntimeError("the window needs an X11 display, not \"%s\""
                           % application.platformName())
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    widget = ViewWidget(session, size, title, loaded, cameraPath)
    widget.show()
    application.processEvents()
    widget.start()
    application.exec_()
