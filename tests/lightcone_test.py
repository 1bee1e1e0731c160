"""The "LightConeManipulator" under the mouse: the cone of a spot opens and closes by its rim."""
from __future__ import division

import math
import unittest

import ostrel
from gizmos import HEIGHT, WIDTH, ManipulatorTest, transform
from ostrel import events
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, GroupBuilder,
                           StringAttribute)

NAME = "LightConeManipulator"
SPOT, OTHER, POINT, MESH = "/root/parent/spot", "/root/other", "/root/point", "/root/mesh"
#: In pixels: where the mouse begins and where it ends are whole ones.
TOLERANCE = 3.0


def light(kind="spot", angle=40.0, at=(0.0, 0.0, 0.0), turn=(0.0, 1.0, 0.0, 0.0)):
    builder = GroupBuilder()
    builder.set("type", StringAttribute("light"))
    builder.set("attributeEditor.exclusiveTo", StringAttribute(ostrel.Session.NODE))
    builder.set("xform.placed.translate", DoubleAttribute(at, 3))
    builder.set("xform.placed.rotate", DoubleAttribute(turn, 4))
    builder.set("light.kind", kind and StringAttribute(kind))
    builder.set("light.coneAngle", angle and FloatAttribute(angle))
    return builder.build()


class LightConeTest(ManipulatorTest):
    def show(self, spot=None, camera="PerspectiveCamera", parent=None):
        builder = GroupBuilder()
        builder.set("staticScene.c.parent.a", parent or GroupAttribute(
            ("type", StringAttribute("group"))))
        builder.set("staticScene.c.parent.c.spot.a", spot or light())
        builder.set("staticScene.c.other.a", light(angle=100.0, at=(1.0, 1.0, 0.0)))
        builder.set("staticScene.c.point.a", light("point", None))
        builder.set("staticScene.c.mesh.a.type", StringAttribute("polymesh"))
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", builder.build())
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT, cameraPlugin=camera)
        self.settle()
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport

    def activate(self, paths=(SPOT,), name=NAME):
        return ManipulatorTest.activate(self, paths, name)

    def angle(self, path=SPOT):
        return self.session.delegate.getAttributes(path).getChildByName(
            "light.coneAngle").getValue()

    def rim(self, degrees, around=0.0, world=None):
        """The pixel of a place of the rim of a cone that opens that far, of a light in this place
        of the world: 100 pixels from its tip."""
        world = world or [float(i % 5 == 0) for i in range(16)]
        half, around = math.radians(degrees / 2), math.radians(around)
        length = self.gizmoLength(world[12:15])
        return self.pixelOf(transform(
            [length * math.sin(half) * math.cos(around), length * math.sin(half) * math.sin(around),
             -length * math.cos(half)], world))

    def dragRim(self, begin, end, **more):
        self.assertTrue(self.press(*begin))
        self.assertTrue(self.move(*[(a + b) / 2 for a, b in zip(begin, end)], **more))
        self.assertTrue(self.release(*end, **more))
        self.settle()

    def assertRimAt(self, pixel, around=0.0, world=None):
        place = self.rim(self.angle(), around, world)
        self.assertTrue(math.hypot(place[0] - pixel[0], place[1] - pixel[1]) < TOLERANCE,
                        (place, pixel, self.angle()))


class DragTest(LightConeTest):
    def testTheRimStaysUnderThePointer(self):
        for camera in ("PerspectiveCamera", "OrthographicCamera"):
            for around in (0.0, 60.0, 180.0, 300.0):
                for wanted in (15.0, 40.0, 90.0, 140.0):
                    self.show(camera=camera)
                    self.activate()
                    begin, end = self.rim(40.0, around), self.rim(wanted, around)
                    self.dragRim(begin, end)
                    # Seen askew a pixel is some degrees.
                    self.assertTrue(abs(self.angle() - wanted) < 8.0,
                                    (camera, around, wanted, self.angle()))
                    self.assertRimAt(end, around)
                    self.session.close()

    def testAlsoUnderAParentThatTurnsAndScalesUnevenly(self):
        parent = GroupAttribute(
            ("type", StringAttribute("group")),
            ("xform.a.translate", DoubleAttribute([0.5, -0.3, 0.2], 3)),
            ("xform.a.rotateY", DoubleAttribute([90.0, 0.0, 1.0, 0.0], 4)),
            ("xform.a.scale", DoubleAttribute([3.0, 1.0, 0.5], 3)))
        self.show(parent=parent)
        self.activate()
        # It shines down -x; sizes don't matter to what it lights.
        world = [0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0.5, -0.3, 0.2, 1]
        begin, end = self.rim(40.0, 90.0, world), self.rim(70.0, 90.0, world)
        self.dragRim(begin, end)
        self.assertTrue(abs(self.angle() - 70.0) < 4.0, self.angle())
        self.assertRimAt(end, 90.0, world)

    def testItShowsAtOnceAndIsOneStepOfUndo(self):
        self.show()
        self.activate()
        begin, end = self.rim(40.0), self.rim(80.0)
        self.assertTrue(self.press(*begin))
        angles = [self.angle()]
        for part in (0.3, 0.6, 1.0):
            self.move(*[a + part * (b - a) for a, b in zip(begin, end)])
            self.session.delegate.processLocationEvents()
            angles.append(self.angle())
            self.assertEqual([angles[-1]], list(
                self.manipulator.getOptionByName("readout").getNearestSample(0.0)))
            self.assertFalse(self.session.canUndo())
        self.assertEqual(angles, sorted(angles))
        self.release(*end)
        self.assertTrue(self.manipulator.getOptionByName("readout") is None)
        self.settle()
        self.assertEqual(angles[-1], self.angle())
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())
        self.settle()
        self.assertEqual(40.0, self.angle())

    def testEscapeBringsBackWhatWasAlsoWhereThereWasNothing(self):
        for angle in (40.0, None):
            self.show(light(angle=angle))
            self.activate()
            before = self.session.delegate.getAttributes(SPOT)
            self.assertTrue(self.press(*self.rim(angle or 60.0)))
            self.move(*self.rim(90.0))
            self.assertNotEqual(before, self.session.delegate.getAttributes(SPOT))
            self.assertTrue(self.viewport.event(events.keyPress("Escape")))
            self.release(*self.rim(90.0))
            self.settle()
            self.assertEqual(before, self.session.delegate.getAttributes(SPOT))
            self.assertFalse(self.session.canUndo())
            self.session.close()

    def testWithControlTheAngleIsRound(self):
        for step, option in ((5.0, None), (7.5, FloatAttribute(7.5))):
            self.show(light(angle=41.0))
            self.activate()
            if option:
                self.manipulator.setOptionByName("snapStep", option)
            self.dragRim(self.rim(41.0), self.rim(83.0), modifiers=["control"])
            self.assertEqual(0.0, math.fmod(self.angle(), step), self.angle())
            self.assertTrue(70.0 < self.angle() < 90.0, self.angle())
            self.session.close()

    def testSeveralLightsOpenByAsMuchAndNoFartherThanTheyCan(self):
        self.show()
        self.activate([SPOT, OTHER])
        self.dragRim(self.rim(40.0), self.rim(80.0))
        self.assertTrue(abs(self.angle() - 80.0) < 4.0)
        self.assertTrue(abs(self.angle() + 60.0 - self.angle(OTHER)) < 1e-9)
        self.view.draw()
        self.dragRim(self.rim(self.angle()), self.rim(170.0))
        self.assertEqual(179.0, self.angle(OTHER))
        self.assertTrue(self.session.undo())
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())
        self.settle()
        self.assertEqual((40.0, 100.0), (self.angle(), self.angle(OTHER)))

    def testWhoLooksThroughTheLightSeesAsFarAsItShines(self):
        self.show()
        through = self.session.addOffscreenView(64, 64, "through")
        through.lookThrough(SPOT)
        self.activate()
        self.settle()
        self.dragRim(self.rim(40.0), self.rim(80.0))
        self.assertTrue(abs(through.viewport.getActiveCamera().getFOV() - self.angle()) < 1e-9)


class SubjectTest(LightConeTest):
    def compatible(self, *paths):
        return self.session.delegate.getCompatibleManipulatorsInfo(list(paths)).getChildByName(
            NAME) is not None

    def testItFitsLightsWithACone(self):
        self.show()
        info = self.session.delegate.getRegisteredManipulatorsInfo()
        self.assertEqual(StringAttribute("Light"), info.getChildByName(NAME + ".group"))
        self.assertEqual([True, True, False, False],
                         [self.compatible(path) for path in (SPOT, OTHER, POINT, MESH)])
        for attributes, fits in ((light(angle=None), True), (light(None), True),
                                 (light(None, None), False), (light("area"), False)):
            self.show(attributes)
            self.assertEqual(fits, self.compatible(SPOT), attributes)
            self.session.close()

    def testItFollowsTheSelection(self):
        self.show()
        self.session.select([SPOT, MESH])
        self.view.manipulate(NAME)
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)
        self.assertEqual(StringAttribute([SPOT]), self.manipulator.getLocationPaths())


class PictureTest(LightConeTest):
    def pixels(self):
        return bytearray(self.view.readPixels()[2])

    def changed(self, before, after):
        return [(i // 4 % WIDTH, i // 4 // WIDTH) for i in range(0, len(before), 4)
                if before[i:i + 3] != after[i:i + 3]]

    def testTheConeIsAsLargeAtAnyDistanceAndAsWideAsItIs(self):
        for factor in (1.0, 6.0):
            for angle in (20.0, 40.0, 120.0):
                self.show(light(angle=angle))
                self.view.frame([-3 * factor, 3 * factor] * 3)
                before = self.pixels()
                self.activate()
                shown = self.changed(before, self.pixels())
                rim = [self.rim(angle, around) for around in range(360)]
                tip = self.pixelOf([0.0, 0.0, 0.0])
                for axis in (0, 1):
                    expected = [place[axis] for place in rim] + [tip[axis]]
                    seen = [place[axis] for place in shown]
                    self.assertTrue(abs(min(expected) - min(seen)) < 3, (factor, angle))
                    self.assertTrue(abs(max(expected) - max(seen)) < 3, (factor, angle))
                self.session.close()

    def testTheRimIsWhatHighlightsAndTakesTheMouse(self):
        self.show()
        self.activate()
        plain = self.pixels()
        x, y = [int(value) for value in self.rim(40.0)]
        self.viewport.hover(x, y)
        self.assertTrue(self.viewport.isDirty())
        self.assertTrue(len(self.changed(plain, self.pixels())) > 200)
        inside = [int(value) for value in self.rim(0.0)]
        self.viewport.hover(*inside)
        self.assertEqual(plain, self.pixels())
        self.assertFalse(self.manipulator.getOptionByName("readout"))
        self.press(*inside)
        self.assertTrue(self.manipulator.getOptionByName("readout") is None)

    def testAReadOnlyLightsConeIsGreyAndStaysAsItIs(self):
        self.show()
        self.activate()
        plain = self.pixels()
        self.viewport.deactivateAllManipulators(True)
        self.session.lockedNodes.add(ostrel.Session.NODE)
        self.activate()
        self.assertTrue(len(self.changed(plain, self.pixels())) > 200)
        self.press(*self.rim(40.0))
        self.assertTrue(self.manipulator.getOptionByName("readout") is None)


if __name__ == "__main__":
    unittest.main()
