"""ViewerDelegate.setLookThroughLocation, and what its channels pass to Python."""

import unittest
import weakref

from scripted import IS_PYTHON_3, ScriptedTest, VIEWPORT, ViewerAPI, errorOf, instanceCount
import ScriptedScene
from PyVlAttribute import GroupAttribute, StringAttribute

REQUESTED = "__LOOKTHROUGH_LOCATION_CHANGE_REQUESTED"
COOKED = "__LOOKTHROUGH_LOCATION_COOKED"
CHANGED = "__LOOKTHROUGH_LOCATION_CHANGED"
DOES_NOT_EXIST = "__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST"
CHANNELS = (REQUESTED, COOKED, CHANGED, DOES_NOT_EXIST)

CAMERA = "/root/camera"
ATTRIBUTES = GroupAttribute(("name", StringAttribute("cam")))


class LookThroughTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.viewport = self.createViewport("left")
        self.fired = []
        for channel in CHANNELS:
            self.listen(channel)

    def listen(self, channel, then=None):
        """Records what the channel is fired with, and then does something."""
        fired = self.fired

        def callback(payload):
            fired.append((channel, payload))
            if then:
                then()
        self.delegate.registerCallback(channel, callback)

    def takeFired(self):
        """Channel, viewport and location of what was fired since the last time."""
        fired = [(channel, payload.getChildByName("viewport").getValue(),
                  payload.getChildByName("location").getValue())
                 for channel, payload in self.fired]
        del self.fired[:]
        return fired

    def look(self, path, viewport=None):
        return self.delegate.setLookThroughLocation(viewport or self.viewport, path)

    def cook(self, path=CAMERA):
        ScriptedScene.report(self.firstClient + 3, path, ATTRIBUTES)
        self.delegate.processLocationEvents()

    def commands(self):
        return [line.split(" ")[0] for line in ScriptedScene.takeCommands()]


class OutcomeTest(LookThroughTest):
    def testARequestIsToldAndThenItsOutcome(self):
        self.assertIsNone(self.look(CAMERA))
        self.assertEqual([(REQUESTED, "left", CAMERA)], self.takeFired())
        self.assertEqual(["setLocationsActive"], self.commands())
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA), (CHANGED, "left", CAMERA)], self.takeFired())

    def testThePayloadIsViewportLocationAndAttributesInThisOrder(self):
        self.look(CAMERA)
        self.cook()
        named = [("viewport", StringAttribute("left")), ("location", StringAttribute(CAMERA))]
        cooked = named + [("attrs", ATTRIBUTES)]
        self.assertEqual([(REQUESTED, named), (COOKED, cooked), (CHANGED, cooked)],
                         [(channel, list(payload)) for channel, payload in self.fired])
        self.assertIsNone(self.fired[0][1].getChildByName("attrs"))

    def testWhatDoesNotExistIsToldUntilItDoes(self):
        self.look(CAMERA)
        ScriptedScene.reportGone(self.firstClient + 3, CAMERA)
        self.delegate.processLocationEvents()
        self.assertEqual((DOES_NOT_EXIST, "left", CAMERA), self.takeFired()[-1])
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA), (CHANGED, "left", CAMERA)], self.takeFired())

    def testAnEmptyStringEndsIt(self):
        self.look(CAMERA)
        self.takeFired()
        self.commands()
        self.look("")
        self.assertEqual([(CHANGED, "left", "")], self.takeFired())
        self.assertEqual(["setLocationsInactive"], self.commands())

    def testEachViewportHasItsOwn(self):
        right = self.createViewport("right")
        self.look(CAMERA)
        self.look(CAMERA, right)
        self.takeFired()
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA), (CHANGED, "left", CAMERA),
                          (COOKED, "right", CAMERA), (CHANGED, "right", CAMERA)],
                         self.takeFired())

    def testTheLookThroughViewHasTheAttributes(self):
        self.look(CAMERA)
        self.assertIsNone(self.delegate.getAttributes(CAMERA,
                                                      ViewerAPI.kVlViewerDelegateLookThrough))
        self.cook()
        self.assertEqual(ATTRIBUTES, self.delegate.getAttributes(
            CAMERA, ViewerAPI.kVlViewerDelegateLookThrough))


class ArgumentTest(LookThroughTest):
    def testAPathWithoutALeadingSlashRaises(self):
        self.look(CAMERA)
        self.takeFired()
        for path in ("camera", "root/camera", " "):
            self.assertError(RuntimeError, 'Invalid look-through location ("%s")' % path,
                             self.look, path)
        self.assertEqual([], self.takeFired())
        self.cook()
        self.assertEqual([], self.takeFired(), "the old request is gone")

    def testWrongArgumentsRaiseTheParsersErrors(self):
        for arguments in ((), (self.viewport,), (self.viewport, 1), (self.viewport, None),
                          (self.viewport, CAMERA, 1)):
            error = errorOf(self.delegate.setLookThroughLocation, *arguments)
            self.assertIs(TypeError, type(error), arguments)
        self.assertEqual([], self.takeFired())

    def testARemovedViewportIsIgnored(self):
        self.look(CAMERA)
        self.delegate.removeViewport("left")
        self.takeFired()
        self.commands()
        for path in (CAMERA, "", "no path"):
            self.assertIsNone(self.look(path))
        self.assertEqual(([], []), (self.takeFired(), self.commands()))

    def testAViewportOfAnotherDelegateIsIgnored(self):
        first = self.delegate
        other = self.createDelegate().addViewport(VIEWPORT, "other")
        self.commands()
        self.assertIsNone(first.setLookThroughLocation(other, CAMERA))
        self.assertEqual(([], []), (self.takeFired(), self.commands()))

    def testTheDocumentationNamesTheChannels(self):
        text = ViewerAPI.ViewerDelegate.setLookThroughLocation.__doc__
        for channel in CHANNELS:
            self.assertIn('"%s"' % channel, text)


class ListenerTest(LookThroughTest):
    def testAnErrorSurfacesAndTheRequestStaysOpen(self):
        def fail():
            raise ValueError("x")
        self.look(CAMERA)
        self.listen(COOKED, fail)
        error = errorOf(self.cook)
        self.assertIs(RuntimeError, type(error))
        self.assertIn("ValueError('x')" if IS_PYTHON_3 else "ValueError('x',)", str(error))
        self.listen(COOKED)
        self.takeFired()
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA), (CHANGED, "left", CAMERA)], self.takeFired())

    def testItMayAskForAnotherLocation(self):
        self.look(CAMERA)
        self.takeFired()
        self.listen(COOKED, lambda: self.look("/root/light"))
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA), (REQUESTED, "left", "/root/light")],
                         self.takeFired())

    def testItMayRemoveTheViewport(self):
        self.look(CAMERA)
        self.takeFired()
        self.listen(COOKED, lambda: self.delegate.removeViewport("left"))
        self.cook()
        self.assertEqual([(COOKED, "left", CAMERA)], self.takeFired())
        self.assertEqual(0, self.delegate.getNumberOfViewports())

    def testItMayLetTheDelegateGo(self):
        self.createViewport("right")
        self.look(CAMERA)
        self.look(CAMERA, self.delegate.getViewport("right"))
        self.takeFired()
        before = instanceCount()
        gone = weakref.ref(self.delegate)

        def letGo():
            self.delegate = None
        self.listen(COOKED, letGo)
        self.cook()
        self.assertEqual((COOKED, "left", CAMERA), self.takeFired()[0])
        self.assertIsNone(gone())
        self.assertEqual(before - 1, instanceCount())


if __name__ == "__main__":
    unittest.main()
