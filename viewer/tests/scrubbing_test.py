"""Frames are scrubbed in the viewer's windows, of either toolkit, while the proxies of each cook."""
import unittest

from windowscripts import DEADLINE, VIEWER, WindowScriptTest, needsQt, needsScreen, needsTk

# Both scrub from frame 0 to 12, and back to 8, and print which frame the proxy shows then.
COMMON = """
import sys, time
sys.path.insert(0, %r)
import ostrel
MODEL = "/usr/share/assimp/models/Collada/box_nested_animation.dae"
PROXY = "/root/box_nested_animation_dae/__VlOst_proxy/box_nested_animation_dae/Armature/Cube"

def settle(session, tick):
    deadline = time.time() + %r / 4
    tick()
    while session.delegate.isProcessing():
        if time.time() > deadline:
            sys.exit("the scene is never there")
        tick()

def load(session):
    session.setCollapsed(True)
    session.importModel(MODEL, proxy=MODEL)

def shape(session):
    return list(session.delegate.getAttributes(PROXY).getChildByName("geometry.point.P"))

def shapeAt(frame):
    with ostrel.Session() as session:
        load(session)
        session.setTime(frame)
        session.pump()
        return shape(session)

session = ostrel.Session()
load(session)
loads = []
""" % (VIEWER, DEADLINE)
CHECK = """
settle(session, window._pump.tick)
print("frame %g shows %s" % (session.getTime(), [frame for frame in range(14)
                                                 if shapeAt(frame) == shape(session)]))
print("%d, %s" % (len(loads), title))
"""
QT = COMMON + """
from PySide2.QtCore import QEvent, Qt
from PySide2.QtGui import QKeyEvent
from PySide2.QtWidgets import QApplication
from qtwindow import ViewWidget
application = QApplication([])
window = ViewWidget(session, (64, 48), "box", loads.append)
window.show()
application.processEvents()
window.start()
settle(session, window._pump.tick)
for key in 12 * [Qt.Key_Right] + 4 * [Qt.Key_Left]:
    application.sendEvent(window, QKeyEvent(QEvent.KeyPress, key, Qt.NoModifier))
    window._pump.tick()
title = window.windowTitle()
""" + CHECK + """
window.close()
session.close()
"""
TK = COMMON + """
import tkwindow
window = tkwindow.ViewWindow(session, (64, 48), "box", loads.append)
window._root.focus_force()
window._root.update()
settle(session, window._pump.tick)
for key in 12 * ["<Right>"] + 4 * ["<Left>"]:
    window._root.event_generate(key)
    window._pump.tick()
title = window._root.title()
""" + CHECK + """
session.close()
"""


@needsScreen
class ScrubbingTest(WindowScriptTest):
    def check(self, script):
        self.assertEqual(self.runOnScreen(script), ["frame 8 shows [8]", "1, box, frame 8"])

    @needsQt
    def testQtWindowScrubs(self):
        self.check(QT)

    @needsTk
    def testTkWindowScrubs(self):
        self.check(TK)


if __name__ == "__main__":
    unittest.main()
