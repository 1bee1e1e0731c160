"""What the viewer's windows, of either toolkit, tell a viewport of mouse and keys."""
import unittest

from windowscripts import VIEWER, WindowScriptTest, needsQt, needsScreen, needsTk

EXPECTED = """mousePress 10,20 left held=left with=shift
mouseMove 12,25 held=left with=shift
mouseRelease 12,25 left held= with=shift
mouseMove 13,26 held= with=
hover 13,26
mousePress 1,2 right held=right with=control
mouseRelease 1,2 right held= with=control
wheel 5,6 1.0 held= with=
wheel 5,6 -1.0 held= with=
keyPress f with=
keyPress Home with=alt
keyRelease f with=
"""

# Both print what is told.
COMMON = """
import sys
sys.path.insert(0, %r)
class Session(object):
    def addView(self, *arguments): return self
    def lookThrough(self, path): pass
    def getTime(self): return 0.0
    viewport = property(lambda self: self)
    def event(self, group):
        get = lambda name: group.getChildByName(name)
        words = [get("type").getValue()]
        if get("x"):
            words.append("%%d,%%d" %% (get("x").getValue(), get("y").getValue()))
        words += [str(get(name).getValue()) for name in ("button", "delta", "key") if get(name)]
        for name, word in (("buttons", "held="), ("modifiers", "with=")):
            if get(name):
                words.append(word + "+".join(get(name).getNearestSample(0.0)))
        print(" ".join(words))
        return True
    def hover(self, *place): print("hover %%d,%%d" %% place)
session = Session()
""" % VIEWER
QT = COMMON + """
from PySide2.QtCore import QEvent, QPoint, QPointF, Qt
from PySide2.QtGui import QKeyEvent, QMouseEvent, QWheelEvent
from PySide2.QtWidgets import QApplication
from qtwindow import ViewWidget
application = QApplication([])
widget = ViewWidget(session, (100, 100), "", None)
widget._view = session
none, left, right = Qt.NoButton, Qt.LeftButton, Qt.RightButton
plain, shift, control = Qt.NoModifier, Qt.ShiftModifier, Qt.ControlModifier
press, move, release = QEvent.MouseButtonPress, QEvent.MouseMove, QEvent.MouseButtonRelease
for kind, x, y, button, held, modifiers in (
        (press, 10, 20, left, left, shift), (move, 12, 25, none, left, shift),
        (release, 12, 25, left, none, shift), (move, 13, 26, none, none, plain),
        (press, 1, 2, right, right, control), (release, 1, 2, right, none, control)):
    application.sendEvent(widget, QMouseEvent(kind, QPointF(x, y), button, held, modifiers))
for angle in (120, -120):
    application.sendEvent(widget, QWheelEvent(
        QPointF(5, 6), QPointF(5, 6), QPoint(), QPoint(0, angle), none, plain, Qt.NoScrollPhase,
        False))
for kind, key, modifiers in ((QEvent.KeyPress, Qt.Key_F, plain),
                             (QEvent.KeyPress, Qt.Key_Home, Qt.AltModifier),
                             (QEvent.KeyPress, Qt.Key_Launch0, plain),  # has no name
                             (QEvent.KeyRelease, Qt.Key_F, plain)):
    application.sendEvent(widget, QKeyEvent(kind, key, modifiers))
widget._view = None
"""
TK = COMMON + """
import tkwindow
window = tkwindow.ViewWindow(session, (100, 100), "", None)
for name in ("<Configure>", "<Expose>", "<Leave>"):
    window._frame.unbind(name)
window._root.focus_force()
window._root.update()
for name, x, y, state in (
        ("<ButtonPress-1>", 10, 20, 0x1), ("<Motion>", 12, 25, 0x101),
        ("<ButtonRelease-1>", 12, 25, 0x101), ("<Motion>", 13, 26, 0),
        ("<ButtonPress-3>", 1, 2, 0x4), ("<ButtonRelease-3>", 1, 2, 0x404),
        ("<Button-4>", 5, 6, 0), ("<Button-5>", 5, 6, 0)):
    window._frame.event_generate(name, x=x, y=y, state=state)
for name, state in (("<KeyPress-f>", 0), ("<KeyPress-Home>", 0x8), ("<KeyRelease-f>", 0)):
    window._root.event_generate(name, state=state)
"""


class EventsTest(WindowScriptTest):
    @needsQt
    def testQtWindowTellsEvents(self):
        self.assertEqual(self.runOffscreen(QT), EXPECTED.splitlines())

    @needsScreen
    @needsTk
    def testTkWindowTellsEvents(self):
        self.assertEqual(self.runOnScreen(TK), EXPECTED.splitlines())


if __name__ == "__main__":
    unittest.main()
