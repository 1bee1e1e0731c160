"""The viewer's window, with Qt."""
import signal
import sys

from PySide2.QtCore import Qt, QTimer
from PySide2.QtWidgets import QApplication, QWidget

from interaction import ORBIT, PAN, ZOOM, Interaction, Pump

_TICK_MS = 16


class ViewWidget(QWidget):
    """A native window that the viewer draws into."""

    def __init__(self, session, size, title, loaded):
        super(ViewWidget, self).__init__()
        self.setAttribute(Qt.WA_NativeWindow)
        # The viewer paints the whole window itself: Qt must not, and must not flicker.
        self.setAttribute(Qt.WA_PaintOnScreen)
        self.setAttribute(Qt.WA_OpaquePaintEvent)
        self.setAttribute(Qt.WA_NoSystemBackground)
        self.setWindowTitle(title)
        self.resize(*size)
        self._session = session
        self._loaded = loaded
        self._view = None

    def start(self):
        """Begins to show the scene; the widget must be visible."""
        width, height = self._pixels()
        self._view = self._session.addView(int(self.winId()), width, height)
        self._interaction = Interaction(self._view)
        self._pump = Pump(self._session, self._view, self._loaded)
        self._timer = QTimer(self)
        self._timer.timeout.connect(self._pump.tick)
        self._timer.start(_TICK_MS)

    def _pixels(self):
        ratio = self.devicePixelRatioF()
        return max(1, int(self.width() * ratio)), max(1, int(self.height() * ratio))

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

    def mousePressEvent(self, event):
        if not self._view:
            return
        if event.button() == Qt.RightButton:
            mode = ZOOM
        elif event.button() == Qt.MiddleButton or event.modifiers() & Qt.ShiftModifier:
            mode = PAN
        else:
            mode = ORBIT
        self._interaction.press(mode, event.x(), event.y())

    def mouseMoveEvent(self, event):
        if self._view:
            self._interaction.move(event.x(), event.y())

    def mouseReleaseEvent(self, event):
        if self._view:
            self._interaction.release()

    def wheelEvent(self, event):
        if self._view:
            self._interaction.wheel(event.angleDelta().y() / 120.0)

    def keyPressEvent(self, event):
        if event.modifiers() & Qt.ControlModifier and event.key() in (Qt.Key_Z, Qt.Key_Y):
            if event.key() == Qt.Key_Y or event.modifiers() & Qt.ShiftModifier:
                self._session.redo()
            else:
                self._session.undo()
        elif self._view and event.key() == Qt.Key_F:
            self._view.frame()
        elif event.key() in (Qt.Key_Escape, Qt.Key_Q):
            self.close()


def run(session, size, title, loaded):
    """Shows the session's scene in a window until the user closes it. `loaded` is called once the
    whole scene is there. Raises RuntimeError when no window can be shown."""
    application = QApplication.instance() or QApplication(sys.argv[:1])
    if application.platformName() != "xcb":
        raise RuntimeError("the window needs an X11 display, not \"%s\""
                           % application.platformName())
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    widget = ViewWidget(session, size, title, loaded)
    widget.show()
    application.processEvents()
    widget.start()
    application.exec_()
