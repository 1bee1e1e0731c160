"""What the bundled plug-ins draw, compared with pictures that people have looked at.

The pictures are in tests/golden; OSTREL_WRITE_GOLDEN=1 in the environment writes them anew, to be
looked at before they are committed.
"""
from __future__ import division, print_function

import os
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "viewer", "tests"))

import goldenscenes  # noqa: E402
import ostrel  # noqa: E402
import PyVlLogging  # noqa: E402
from goldendefects import DEFECTS  # noqa: E402
from pictures import Difference, blocks  # noqa: E402
from pngfile import Picture  # noqa: E402
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute  # noqa: E402

FOLDER = os.path.join(ROOT, "tests", "golden")
WRITE = os.environ.get("OSTREL_WRITE_GOLDEN") == "1"

#: What counts as the same picture, in steps of 255. Drivers differ in how they round colours and
#: place samples and thin lines; what is drawn wrong differs by far more somewhere.
MEAN, WORST = 0.5, 8.0


def setUpModule():
    # What a model lacks, a texture say, is no reason to talk here.
    PyVlLogging.setLevel("error")
    with ostrel.Session() as session:
        view = session.addOffscreenView(8, 8)
        _, _, pixels = view.readPixels()
        if not any(bytearray(pixels)):
            raise unittest.SkipTest("no OpenGL context on this machine")
    if WRITE:
        for name in os.listdir(FOLDER):
            os.remove(os.path.join(FOLDER, name))
        for golden in goldenscenes.GOLDENS:
            with Shown(golden) as shown:
                shown.views[0].savePicture(os.path.join(FOLDER, golden.name + ".png"))


class Shown(object):
    """A session that shows a golden picture's scene, in views that differ in nothing."""

    def __init__(self, golden, tree=None, numberOfViews=1):
        self.session = ostrel.Session()
        self.golden = golden
        if callable(golden.scene):
            scene = goldenscenes.literal(tree or golden.scene())
            self.session.createOp("Scene.Literal", GroupAttribute(("staticScene", scene)))
        else:
            self.session.importModel(os.path.join(goldenscenes.MODELS, golden.scene))
        self.views = [self.session.addOffscreenView(golden.size[0], golden.size[1],
                                                    "view%d" % number, golden.camera)
                      for number in range(numberOfViews)]
        self.session.pump()
        if golden.closed:
            self.session.delegate.closeLocations(golden.closed)
            self.session.pump()
        self.session.delegate.setSelectedLocations(golden.selection)
        for view in self.views:
            self.prepare(view)

    def prepare(self, view):
        layer = view.viewport.getLayer("meshes")
        for name, value in self.golden.options.items():
            layer.setOptionByName(name, value)
        view.viewport.setOptionByName("draft", IntAttribute(1 if self.golden.draft else 0))
        view.orbit.yaw, view.orbit.pitch = self.golden.look
        # By what locations tell, not by what shows: that stands in the same place open and closed.
        view.frame(self.session.delegate.computeMergedExtent(["/root"]))
        if self.golden.move:
            self.golden.move(view.orbit)
            view.updateCamera()
        if self.golden.manipulator:
            view.viewport.activateManipulator(self.golden.manipulator, self.golden.selection, True)
        if self.golden.act:
            self.golden.act(view)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.session.close()

    def blocks(self, view=None):
        """Of what a view, or the first, draws now."""
        width, height, pixels = (view or self.views[0]).readPixels()
        stride = 4 * width
        data = bytearray(pixels)
        return blocks([data[y * stride:(y + 1) * stride] for y in range(height)], width, height)


_stored = {}


def storedBlocks(golden):
    """Of the picture that was stored, which is read once."""
    if golden.name not in _stored:
        picture = Picture(os.path.join(FOLDER, golden.name + ".png"))
        assert (picture.width, picture.height) == golden.size, golden.name
        _stored[golden.name] = blocks(picture.rows, *golden.size)
    return _stored[golden.name]


def isSame(difference):
    return difference.mean <= MEAN and difference.worst <= WORST


class GoldenTest(unittest.TestCase):

    def check(self, golden):
        if not callable(golden.scene) and not os.path.exists(
                os.path.join(goldenscenes.MODELS, golden.scene)):
            self.skipTest("no model " + golden.scene)
        with Shown(golden) as shown:
            self.assertEqual([], shown.session.getErrors())
            difference = Difference(shown.blocks(), storedBlocks(golden))
        self.assertTrue(isSame(difference), "%s: %r" % (golden.name, difference))

    def testFolderHoldsThesePicturesAndNoOthers(self):
        self.assertEqual(sorted(golden.name + ".png" for golden in goldenscenes.GOLDENS),
                         sorted(os.listdir(FOLDER)))

    def testPicturesAreAllDifferent(self):
        for i, golden in enumerate(goldenscenes.GOLDENS):
            for other in goldenscenes.GOLDENS[:i]:
                # Culling shows nothing of a closed shape, and a draft is meant to look alike.
                if {golden.name, other.name} <= {"shapes", "culled", "draft"}:
                    continue
                if golden.size != other.size:
                    continue
                difference = Difference(storedBlocks(golden), storedBlocks(other))
                self.assertFalse(isSame(difference), (golden.name, other.name))

    def testTwoViewportsOfASessionShowTheSame(self):
        golden = goldenscenes.byName("selected")
        with Shown(golden, numberOfViews=2) as shown:
            for view in shown.views + shown.views[:1]:
                self.assertTrue(isSame(Difference(shown.blocks(view), storedBlocks(golden))))

    def testViewportsInDifferentModesDoNotDisturbEachOther(self):
        golden = goldenscenes.byName("wireframe")
        other = goldenscenes.byName("draft_wireframe")
        with Shown(golden, numberOfViews=2) as shown:
            shown.golden = other
            shown.prepare(shown.views[1])
            for view, its in zip(shown.views * 2, (golden, other) * 2):
                self.assertTrue(isSame(Difference(shown.blocks(view), storedBlocks(its))))

    def testChangesAndTheirReversalShowThePictureAgain(self):
        golden = goldenscenes.byName("shapes")
        with Shown(golden) as shown:
            view = shown.views[0]
            delegate = shown.session.delegate
            layer = view.viewport.getLayer("meshes")
            before = view.readPixels()
            steps = [
                (lambda: delegate.setSelectedLocations(["/root/cube"]),
                 lambda: delegate.setSelectedLocations([])),
                (lambda: layer.setOptionByName("displayMode", StringAttribute("points")),
                 lambda: layer.setOptionByName("displayMode", StringAttribute("shaded"))),
                (lambda: view.viewport.setOptionByName("draft", IntAttribute(1)),
                 lambda: view.viewport.setOptionByName("draft", IntAttribute(0)))]
            for change, reversal in steps:
                change()
                self.assertNotEqual(before, view.readPixels())
                reversal()
                self.assertEqual(before, view.readPixels())


class DefectTest(unittest.TestCase):
    """Scenes as a faulty viewer would show them: the comparison has to tell."""

    def check(self, defect):
        tried = []
        for golden in goldenscenes.GOLDENS:
            tree = defect(golden) if callable(golden.scene) else None
            if tree is None:
                continue
            tried.append(golden.name)
            with Shown(golden, tree) as shown:
                if not isSame(Difference(shown.blocks(), storedBlocks(golden))):
                    return
        self.fail("not seen in any of: " + ", ".join(tried))


def _addTests():
    def testOf(each):
        return lambda self: self.check(each)

    for golden in goldenscenes.GOLDENS:
        setattr(GoldenTest, "test_picture_" + golden.name, testOf(golden))
    for name, defect in DEFECTS:
        setattr(DefectTest, "test_%s_is_seen" % name, testOf(defect))


_addTests()

if __name__ == "__main__":
    unittest.main()
