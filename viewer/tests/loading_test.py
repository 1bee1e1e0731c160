"""What the titles of the viewer's windows say, of either toolkit, while a model is being read."""
import unittest

from windowscripts import VIEWER, WindowScriptTest, needsQt, needsScreen, needsTk

# Both print the titles that a window has one after the other: reading the model takes until there
# is one that says so.
COMMON = """
import os, sys
sys.path.insert(0, %r)
import ostrel
materials = os.path.join(os.environ["XDG_RUNTIME_DIR"], "held.mtl")
os.mkfifo(materials)
with open(materials.replace(".mtl", ".obj"), "w") as model:
    model.write("mtllib held.mtl\\nv 0 0 0\\nv 1 0 0\\nv 0 1 0\\nf 1 2 3\\n")
session = ostrel.Session()
session.importModel(model.name)
loads = []

def letGo():
    try:
        os.close(os.open(materials, os.O_WRONLY | os.O_NONBLOCK))
    except OSError:
        pass  # nobody reads it yet, or any more

def run(tick, getTitle):
    titles = [getTitle()]
    while not loads:
        tick()
        if getTitle() != titles[-1]:
            titles.append(getTitle())
        if titles[-1].endswith("1 to come"):
            letGo()
    print(titles[0])
    print("1 to come" if any(title.endswith(", loading, 1 to come") for title in titles) else titles)
    print(titles[-1])
""" % VIEWER
QT = COMMON + """
from PySide2.QtWidgets import QApplication
from qtwindow import ViewWidget
application = QApplication([])
window = ViewWidget(session, (64, 48), "model", loads.append)
window.show()
application.processEvents()
window.start()
run(window._tick, window.windowTitle)
window.close()
session.close()
"""
TK = COMMON + """
import tkwindow
window = tkwindow.ViewWindow(session, (64, 48), "model", loads.append)
def tick():
    window._pump.tick()
    window._showTitle()
run(tick, window._root.title)
session.close()
"""


@needsScreen
class LoadingTest(WindowScriptTest):
    def check(self, script):
        self.assertEqual(self.runOnScreen(script),
                         ["model, frame 0", "1 to come", "model, frame 0"])

    @needsQt
    def testQtWindowTells(self):
        self.check(QT)

    @needsTk
    def testTkWindowTells(self):
        self.check(TK)


if __name__ == "__main__":
    unittest.main()
