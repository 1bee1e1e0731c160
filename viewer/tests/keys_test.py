"""What keys do in the viewer's windows, of either toolkit."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from window_test import Screen

VIEWER = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# Both print what the keys led to.
COMMON = """
import sys
sys.path.insert(0, %r)
class Session(object):
    calls = []
    def undo(self): self.calls.append("undo")
    def redo(self): self.calls.append("redo")
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
widget = ViewWidget(session, (10, 10), "", None)
control, shift = Qt.ControlModifier, Qt.ShiftModifier
for key, modifiers in ((Qt.Key_Z, control), (Qt.Key_Z, control | shift), (Qt.Key_Y, control),
                       (Qt.Key_Z, Qt.NoModifier), (Qt.Key_Y, Qt.NoModifier)):
    application.sendEvent(widget, QKeyEvent(QEvent.KeyPress, key, modifiers))
print(" ".join(session.calls))
"""
TK = COMMON + """
import tkwindow
window = tkwindow.ViewWindow(session, (10, 10), "", None)
window._frame.unbind("<Configure>")
window._frame.unbind("<Expose>")
window._root.focus_force()
window._root.update()
for key in ("<Control-z>", "<Control-Shift-Z>", "<Control-y>", "<z>", "<y>"):
    window._root.event_generate(key)
print(" ".join(session.calls))
"""


def hasModule(name):
    with open(os.devnull, "w") as nowhere:
        return subprocess.call([sys.executable, "-c", "import " + name], stderr=nowhere) == 0


class KeysTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def check(self, script, **environment):
        output = subprocess.check_output([sys.executable, "-c", script],
                                         env=dict(os.environ, XDG_RUNTIME_DIR=self.folder,
                                                  **environment))  # or Qt complains
        self.assertEqual(output.decode("ascii").split(), ["undo", "redo", "redo"])

    @unittest.skipUnless(hasModule("PySide2.QtWidgets"), "no Qt")
    def testQtWindowUndoesAndRedoes(self):
        self.check(QT, QT_QPA_PLATFORM="offscreen")

    @unittest.skipUnless(os.path.exists("/usr/bin/Xvfb"), "no Xvfb")
    @unittest.skipUnless(hasModule("tkinter" if sys.version_info[0] >= 3 else "Tkinter"), "no Tk")
    def testTkWindowUndoesAndRedoes(self):
        screen = Screen(self.folder, 100, 100)
        self.addCleanup(screen.close)
        self.check(TK, DISPLAY=screen.display)


if __name__ == "__main__":
    unittest.main()
