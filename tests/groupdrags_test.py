"""One gesture over several locations: they move together, are undone together, and those who look
through them hear of it once, at its end."""
import unittest

import ostrel
import ViewerAPI
from gizmos import HEIGHT, PARENTS, WIDTH, ManipulatorTest, location
from ostrel import events
from PyVlAttribute import FloatAttribute, GroupBuilder, StringAttribute

COOKED = "__LOOKTHROUGH_LOCATION_COOKED"
PLACES = ([-0.9, -0.4, 0.3], [0.8, 0.6, -0.2], [0.2, -0.7, 0.9])


class GroupDragTest(ManipulatorTest):
    def show(self, parents):
        """Cameras, each below a parent with these components."""
        builder = GroupBuilder()
        self.paths = []
        for number, (parent, place) in enumerate(zip(parents, PLACES)):
            self.paths.append("/root/parent%d/thing" % number)
            attributes = GroupBuilder().update(location(("placed.translate", place))).set(
                "type", StringAttribute("camera")).set("geometry.fov", FloatAttribute(40.0)).build()
            builder.set("staticScene.c.parent%d.a" % number, location(*parent))
            builder.set("staticScene.c.parent%d.c.thing.a" % number, attributes)
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", builder.build())
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT)
        self.settle()
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport
        self.activate(self.paths)

    def positions(self):
        return [self.position(path) for path in self.paths]

    def begin(self):
        """Presses on the gizmo's x axis, which stands in the middle of all."""
        at = [sum(place) / len(self.paths) for place in zip(*self.positions())]
        at[0] += 0.5 * self.gizmoLength(at)
        self.x, self.y = [int(value) for value in self.pixelOf(at)]
        self.assertTrue(self.press(self.x, self.y))

    def dragAll(self):
        """Returns the places that were shown last."""
        self.begin()
        for by in (10, 20, 30):
            self.move(self.x + by, self.y)
            self.session.delegate.processLocationEvents()
        shown = self.positions()
        self.assertTrue(self.release(self.x + 30, self.y))
        return shown

    def assertMovedAlike(self, before, after):
        ways = [[b - a for a, b in zip(*places)] for places in zip(before, after)]
        self.assertTrue(ways[0][0] > 0.1, ways)
        for way in ways:
            self.assertAlmostPlaces([way], [[ways[0][0], 0.0, 0.0]])

    def assertAlmostPlaces(self, found, expected):
        for place, other in zip(found, expected):
            self.assertAlmost(place, other)


class UndoTest(GroupDragTest):
    def testAllGoTheSameWayUnderWhateverParentsAndAreUndoneTogether(self):
        for first in range(len(PARENTS)):
            self.show([PARENTS[(first + i) % len(PARENTS)][1] for i in range(len(PLACES))])
            before = self.positions()
            shown = self.dragAll()
            self.settle()
            after = self.positions()
            self.assertMovedAlike(before, after)
            self.assertAlmostPlaces(after, shown)
            for _ in range(2):
                self.assertTrue(self.session.undo())
                self.assertFalse(self.session.canUndo(), "one step")
                self.settle()
                self.assertAlmostPlaces(self.positions(), before)
                self.assertTrue(self.session.redo())
                self.settle()
                self.assertAlmostPlaces(self.positions(), after)
            self.session.close()

    def testEachGestureIsAStepOfItsOwn(self):
        self.show([(), (), ()])
        places = [self.positions()]
        for _ in range(3):
            self.dragAll()
            self.settle()
            self.view.draw()
            places.append(self.positions())
        for expected in reversed(places[:-1]):
            self.assertTrue(self.session.undo())
            self.settle()
            self.assertAlmostPlaces(self.positions(), expected)
        self.assertFalse(self.session.canUndo())

    def testOneThatIsGoneStaysOutOfTheUndo(self):
        self.show([(), (), ()])
        self.dragAll()
        self.settle()
        self.session.setAttribute(self.paths[0], "type", StringAttribute("error"))
        self.settle()
        self.view.draw()
        before = self.positions()
        moved = self.paths[1:]
        self.assertEqual(moved, list(self.manipulator.getLocationPaths().getNearestSample(0.0)))
        at = [sum(place) / len(moved) for place in zip(*before[1:])]
        at[0] += 0.5 * self.gizmoLength(at)
        x, y = [int(value) for value in self.pixelOf(at)]
        self.assertTrue(self.press(x, y))
        self.assertTrue(self.release(x + 20, y))
        self.settle()
        self.assertMovedAlike(before[1:], self.positions()[1:])
        self.assertAlmostPlaces(self.positions()[:1], before[:1])
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertAlmostPlaces(self.positions(), before)


class OpenGroupsTest(GroupDragTest):
    """The manipulation groups that an application has been told of as open."""

    def setUp(self):
        GroupDragTest.setUp(self)
        self.opened = opened = []

        class Bridge(ViewerAPI.ManipulatorBridge):
            def openManipulationGroup(self, path):
                opened.append(path)

            def closeManipulationGroup(self, path):
                opened.remove(path)

        self.addCleanup(setattr, ViewerAPI, "ManipulatorBridge", ViewerAPI.ManipulatorBridge)
        ViewerAPI.ManipulatorBridge = Bridge
        self.show([(), (), ()])

    def testEachIsOpenedOnceAlsoWhenItsLocationIsListedTwice(self):
        first, second, _ = self.paths
        self.viewport.deactivateAllManipulators(True)
        self.paths = [first, second]
        self.activate([first, second, first])
        at = [sum(place) / 3 for place in zip(*(self.position(path)
                                                for path in (first, second, first)))]
        at[0] += 0.5 * self.gizmoLength(at)
        x, y = self.pixelAt(at)
        self.assertTrue(self.press(x, y))
        self.assertEqual([first, second], self.opened)
        self.release(x, y)
        self.assertEqual([], self.opened)


class LookThroughTest(GroupDragTest):
    """The views "z" and "a", in this order, look through the first location, "m" through the second
    one; nobody through the third."""

    def setUp(self):
        self.show([(), PARENTS[1][1], ()])
        self.views = dict((name, self.session.addOffscreenView(16, 16, name)) for name in "zma")
        for name, number in (("z", 0), ("m", 1), ("a", 0)):
            self.views[name].lookThrough(self.paths[number])
        self.settle()
        self.told = []
        # The session's own listener goes on hearing of it.
        def listen(payload):
            self.told.append((payload.getChildByName("viewport").getValue(),
                              payload.getChildByName("location").getValue(),
                              list(payload.getChildByName("attrs.xform.placed.translate")
                                   .getNearestSample(0.0))))
            name, path, value = self.told[-1]
            self.views[name].showThrough(path, payload.getChildByName("attrs"))
        self.session.delegate.registerCallback(COOKED, listen)

    def translate(self, number):
        return list(self.session.delegate.getAttributes(self.paths[number]).getChildByName(
            "xform.placed.translate").getNearestSample(0.0))

    def testTheyHearOnceAtTheEndInTheOrderInWhichTheyStandInTheViewer(self):
        before = [self.views[name].viewport.getActiveCamera().getOrigin() for name in "zma"]
        self.begin()
        for by in (10, 20, 30):
            self.move(self.x + by, self.y)
            self.session.delegate.processLocationEvents()
            self.assertEqual([], self.told)
            self.assertEqual(before, [self.views[name].viewport.getActiveCamera().getOrigin()
                                      for name in "zma"])
        self.assertTrue(self.release(self.x + 30, self.y))
        self.assertEqual([("z", self.paths[0], self.translate(0)),
                          ("a", self.paths[0], self.translate(0)),
                          ("m", self.paths[1], self.translate(1))], self.told)
        self.assertTrue(self.translate(0)[0] > PLACES[0][0] + 0.1)
        for name, number in (("z", 0), ("m", 1), ("a", 0)):
            self.assertAlmostPlaces([self.views[name].viewport.getActiveCamera().getOrigin()],
                                    [self.position(self.paths[number])])
        self.settle()
        self.assertEqual({("z", 0), ("a", 0), ("m", 1)},
                         set((name, self.paths.index(path)) for name, path, _ in self.told[3:]),
                         "and once more when it is cooked")

    def testAGestureThatIsTakenBackTellsThemTheBeginning(self):
        self.begin()
        self.move(self.x + 30, self.y)
        self.assertTrue(self.viewport.event(events.keyPress("Escape")))
        self.assertEqual([("z", self.paths[0], PLACES[0]), ("a", self.paths[0], PLACES[0]),
                          ("m", self.paths[1], PLACES[1])], self.told)
        self.assertTrue(self.release(self.x + 30, self.y))
        self.settle()
        self.assertFalse(self.session.canUndo())

    def testOneThatComesDuringTheGestureIsToldLast(self):
        self.begin()
        self.move(self.x + 10, self.y)
        self.views["b"] = self.session.addOffscreenView(16, 16, "b")
        self.views["b"].lookThrough(self.paths[0])
        self.move(self.x + 30, self.y)
        self.assertEqual([], self.told)
        self.assertTrue(self.release(self.x + 30, self.y))
        self.assertEqual(["z", "a", "b", "m"], [name for name, _, _ in self.told])
        self.assertEqual([self.translate(0)] * 3 + [self.translate(1)],
                         [value for _, _, value in self.told])

    def testAListenerThatFailsLeavesTheOthersTheirNewsAndTheGestureItsEnd(self):
        def fail(payload):
            self.told.append(payload.getChildByName("viewport").getValue())
            raise ValueError("no such panel")
        self.session.delegate.registerCallback(COOKED, fail)
        self.begin()
        self.move(self.x + 30, self.y)
        try:
            self.release(self.x + 30, self.y)
        except RuntimeError as error:
            self.assertTrue("no such panel" in str(error), error)
        else:
            self.fail("the error came to nobody")
        self.assertEqual(["z", "m"], self.told, "each location's first")
        self.session.delegate.registerCallback(COOKED, lambda payload: None)
        self.assertTrue(self.manipulator.getOptionByName("readout") is None)
        self.settle()
        self.assertFalse(self.session.delegate.isFrozenDueToManipulation())
        self.assertTrue(self.translate(0)[0] > PLACES[0][0] + 0.1)
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())


if __name__ == "__main__":
    unittest.main()
