"""What keys do in the viewer's windows, of either toolkit."""
import unittest

from windowscripts import VIEWER, WindowScriptTest, needsQt, needsScreen, needsTk

# Both print what the keys led to.
COMMON = """
import sys
sys.path.insert(0, %r)
class Session(object):
    calls = []
    def undo(self): self.calls.append("undo")
    def redo(self): self.calls.append("redo")
    def setCollapsed(self, isCollapsed): self.calls.append("collapsed=%%d" %% isCollapsed)
    def isCollapsed(self): return False
    def setBoxesShown(self, areShown): self.calls.append("boxes=%%d" %% areShown)
    def setProxiesShown(self, areShown): self.calls.append("proxies=%%d" %% areShown)
    areBoxesShown = areProxiesShown = lambda self: True
    time = 5.0
    def getTime(self): return self.time
    def setTime(self, frame):
        self.time = frame
        self.calls.append("frame=%%g" %% frame)
    manipulator, axes = None, "world"
    def getManipulator(self): return self.manipulator
    def manipulate(self, name):
        self.manipulator = name
        self.calls.append("manipulator=%%s" %% name)
    def getManipulatorAxes(self): return self.axes
    def setManipulatorAxes(self, axes):
        self.axes = axes
        self.calls.append("axes=" + axes)
    def addView(self, *arguments): return self
    def lookThrough(self, path): pass
    def event(self, group): return False
    viewport = property(lambda self: self)
session = Session()
""" % VIEWER
QT = COMMON + """
from PySide2.QtCore import QEvent, Qt
from PySide2.QtGui import QKeyEvent
from PySide2.QtWidgets import QApplication
from qtwindow import ViewWidget
application = QApplication([])
widget = ViewWidget(session, (10, 10), "model", None)
widget._view = session
widget.close = lambda: session.calls.append("close")
plain, control, shift, alt = (Qt.NoModifier, Qt.ControlModifier, Qt.ShiftModifier, Qt.AltModifier)
for key, modifiers in ((Qt.Key_Z, control), (Qt.Key_Z, control | shift), (Qt.Key_Y, control),
                       (Qt.Key_Z, plain), (Qt.Key_Y, plain), (Qt.Key_C, plain),
                       (Qt.Key_B, plain), (Qt.Key_P, plain), (Qt.Key_Right, plain),
                       (Qt.Key_Right, plain), (Qt.Key_Left, plain), (Qt.Key_W, plain),
                       (Qt.Key_E, plain), (Qt.Key_R, plain), (Qt.Key_R, plain), (Qt.Key_X, plain),
                       (Qt.Key_X, plain), (Qt.Key_C, control), (Qt.Key_X, control),
                       (Qt.Key_B, alt), (Qt.Key_W, control | shift), (Qt.Key_P, control | alt),
                       (Qt.Key_Q, control), (Qt.Key_C, shift), (Qt.Key_Q, plain),
                       (Qt.Key_Escape, plain)):
    application.sendEvent(widget, QKeyEvent(QEvent.KeyPress, key, modifiers))
print(" ".join(session.calls))
print(widget.windowTitle())
widget._view = None
"""
TK = COMMON + """
import tkwindow
window = tkwindow.ViewWindow(session, (10, 10), "model", None)
window._frame.unbind("<Configure>")
window._frame.unbind("<Expose>")
window._root.quit = lambda: session.calls.append("close")
window._root.focus_force()
window._root.update()
for key in ("<Control-z>", "<Control-Shift-Z>", "<Control-y>", "<z>", "<y>", "<c>", "<b>", "<p>",
            "<Right>", "<Right>", "<Left>", "<w>", "<e>", "<r>", "<r>", "<x>", "<x>",
            "<Control-c>", "<Control-x>", "<Mod1-b>", "<Control-Shift-W>", "<Control-Mod1-p>",
            "<Control-q>", "<Shift-C>", "<q>", "<Escape>"):
    window._root.event_generate(key)
print(" ".join(session.calls))
print(window._root.title())
"""


class KeysTest(WindowScriptTest):
    def check(self, lines):
        calls, title = lines
        self.assertEqual(calls.split(), ["undo", "redo", "redo", "collapsed=1", "boxes=0", "proxies=0",
                                         "frame=6", "frame=7", "frame=6",
                                         "manipulator=TranslateManipulator",
                                         "manipulator=RotateManipulator",
                                         "manipulator=ScaleManipulator", "manipulator=None",
                                         "axes=local", "axes=world", "collapsed=1", "close",
                                         "close"])
        self.assertEqual(title, "model, frame 6")

    @needsQt
    def testQtWindowHeedsKeys(self):
        self.check(self.runOffscreen(QT))

    @needsScreen
    @needsTk
    def testTkWindowHeedsKeys(self):
        self.check(self.runOnScreen(TK))


if __name__ == "__main__":
    unittest.main()
