"""The module's functions and constants, and option ids."""

import subprocess
import sys
import unittest

import ViewerAPI_cmodule as ViewerAPI

IS_PYTHON_3 = sys.version_info[0] >= 3


class ModuleEntryTest(unittest.TestCase):
    def testConstantsHaveTheirValues(self):
        for name, value in (
                ("kViewportLayerPluginVersion", 2),
                ("kVlViewerDelegatePrimary", 0),
                ("kVlViewerDelegateSources", 1),
                ("kVlViewerDelegateLookThrough", 2),
                ("kVlViewportCameraTypeUnknown", 0),
                ("kVlViewportCameraTypePerspective", 1),
                ("kVlViewportCameraTypeOrthographic", 2),
                ("kVlViewportCameraTypeSpherical", 3),
                ("CameraDirtyBits_Clean", 0),
                ("CameraDirtyBits_DirtyParams", 1),
                ("CameraDirtyBits_AllDirty", 1)):
            self.assertEqual(value, getattr(ViewerAPI, name), name)

    def testAllCameraDirtyBitsAreTheParameters(self):
        self.assertTrue(
            ViewerAPI.CameraDirtyBits_AllDirty == ViewerAPI.CameraDirtyBits_DirtyParams)

    def testTypesBearTheModulesName(self):
        for name in ("Manipulator", "ViewerDelegate", "ViewerDelegateComponent", "Viewport",
                     "ViewportLayer", "ViewportCamera"):
            self.assertEqual(name, getattr(ViewerAPI, name).__name__)
            self.assertEqual("ViewerAPI_cmodule", getattr(ViewerAPI, name).__module__)

    @unittest.skipUnless(IS_PYTHON_3, "the names of a module have no order on Python 2")
    def testTheLayerVersionAndTheTypesAreAddedInTheirOrder(self):
        names = [name for name, value in vars(ViewerAPI).items()
                 if isinstance(value, type) or name == "kViewportLayerPluginVersion"]
        self.assertEqual(["kViewportLayerPluginVersion", "Manipulator", "ViewerDelegate",
                          "ViewerDelegateComponent", "Viewport", "ViewportLayer",
                          "ViewportCamera"], names)

    def testTheInstanceCountIsZeroWhileNoDelegateIsAlive(self):
        # In a process of its own: others in this one may have failed to load, which counts on.
        answer = subprocess.check_output([
            sys.executable, "-c",
            "import ViewerAPI_cmodule as v\n"
            "info = v.GetDiagnosticInfo()\n"
            "print(info.getNumberOfChildren(), info.getChildName(0),\n"
            "      info.getChildByName('ViewerDelegateInstanceCount').getValue(-1))\n"])
        self.assertEqual("1ViewerDelegateInstanceCount0",
                         "".join(c for c in answer.decode() if c.isalnum()))

    def testFunctionsRefuseWrongArguments(self):
        for function, arguments in (
                (ViewerAPI.GetDiagnosticInfo, (1,)),
                (ViewerAPI.CreateViewerDelegate, ()),
                (ViewerAPI.CreateViewerDelegate, (1,)),
                (ViewerAPI.GenerateOptionId, ()),
                (ViewerAPI.GenerateOptionId, (1,)),
                (ViewerAPI.LookUpOptionId, ("x",)),
                (ViewerAPI.LookUpOptionId, ())):
            self.assertRaises(TypeError, function, *arguments)


class OptionIdTest(unittest.TestCase):
    def testLowSixteenBitsAreZero(self):
        for name in ("x", "", "a longer name", "y" * 5000):
            self.assertEqual(0, ViewerAPI.GenerateOptionId(name) & 0xffff, name)

    def testIdIsALongOfSixtyFourBits(self):
        optionId = ViewerAPI.GenerateOptionId("x")
        self.assertIs(type(2 ** 64), type(optionId))
        self.assertLess(0, optionId)
        self.assertLess(optionId, 2 ** 64)

    def testANameAlwaysHasTheSameId(self):
        self.assertEqual(ViewerAPI.GenerateOptionId("some.option"),
                         ViewerAPI.GenerateOptionId("some.option"))
        self.assertNotEqual(ViewerAPI.GenerateOptionId("some.option"),
                            ViewerAPI.GenerateOptionId("some.other"))

    def testIdsAgreeBetweenProcesses(self):
        answer = subprocess.check_output([
            sys.executable, "-c",
            "import ViewerAPI_cmodule as v\nprint('%d' % v.GenerateOptionId('some.option'))"])
        self.assertEqual(ViewerAPI.GenerateOptionId("some.option"), int(answer))

    def testLookUpGivesTheName(self):
        self.assertEqual("x", ViewerAPI.LookUpOptionId(ViewerAPI.GenerateOptionId("x")))

    def testLookUpOfAnIdNeverGeneratedIsTheEmptyString(self):
        # No generated id has low bits set.
        self.assertEqual("", ViewerAPI.LookUpOptionId(1))

    def testTheEmptyNameHasAnIdToo(self):
        optionId = ViewerAPI.GenerateOptionId("")
        self.assertNotEqual(0, optionId)
        self.assertEqual("", ViewerAPI.LookUpOptionId(optionId))

    def testNamesAreTextAsTheInterpreterHasIt(self):
        name = u"gr\u00f6\u00dfe" if IS_PYTHON_3 else "gr\xc3\xb6\xc3\x9fe"
        self.assertEqual(name, ViewerAPI.LookUpOptionId(ViewerAPI.GenerateOptionId(name)))

    def testBytesThatAreNoUtf8ComeBackUnchanged(self):
        name = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"
        self.assertEqual(name, ViewerAPI.LookUpOptionId(ViewerAPI.GenerateOptionId(name)))


if __name__ == "__main__":
    unittest.main()
