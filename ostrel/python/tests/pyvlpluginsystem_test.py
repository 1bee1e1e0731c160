"""Loading plug-in libraries from Python."""
import os
import shutil
import tempfile
import unittest

import PyVlLogging
import PyVlPluginSystem

LIBRARIES = os.path.join(os.environ["OSTREL_TEST_PLUGINS"], "plugin_system")


class PyVlPluginSystemTest(unittest.TestCase):
    def setUp(self):
        self.lines = []
        PyVlLogging.setSink(lambda *line: self.lines.append(line))

    def tearDown(self):
        PyVlLogging.setSink(None)

    def testALibrarysPluginsAreCountedAndListed(self):
        path = os.path.join(LIBRARIES, "good.so")
        self.assertEqual(PyVlPluginSystem.loadLibrary(path), 2)
        self.assertEqual(PyVlPluginSystem.loadLibrary(path), 2)
        self.assertEqual(PyVlPluginSystem.getPluginNames("ExamplePlugin", 7), ["GoodExample"])
        self.assertEqual(PyVlPluginSystem.getPluginNames("ExamplePlugin", 6), [])
        self.assertEqual(PyVlPluginSystem.getPluginNames("NoPlugin", 7), [])
        self.assertEqual(self.lines, [])

    def testASkippedLibraryIsLoggedNotRaised(self):
        for name, reason in (("missing", "no such file"),
                             ("noentries", "it lacks the entry vlSetPluginHost")):
            del self.lines[:]
            path = os.path.join(LIBRARIES, name + ".so")
            self.assertEqual(PyVlPluginSystem.loadLibrary(path), 0)
            self.assertEqual([line[:3] for line in self.lines], [
                ("error", "VlPluginSystem",
                 "Skipped plug-in library '%s': %s." % (path, reason))])

    def testADirectoryIsLoadedInTheOrderOfItsNames(self):
        folder = tempfile.mkdtemp()
        try:
            shutil.copy(os.path.join(LIBRARIES, "duplicate.so"), os.path.join(folder, "b.so"))
            with open(os.path.join(folder, "a.so"), "w") as library:
                library.write("no library" * 1000)
            with open(os.path.join(folder, "readme.txt"), "w") as readme:
                readme.write("no library either")
            PyVlPluginSystem.loadLibrary(os.path.join(LIBRARIES, "good.so"))
            self.assertEqual(PyVlPluginSystem.loadDirectory(folder), 1)
            self.assertEqual(len(self.lines), 2)
            self.assertTrue("a.so': invalid ELF header." in self.lines[0][2])
            self.assertTrue("b.so': record 0 is ViewportPlugin 'Good'" in self.lines[1][2])
            names = PyVlPluginSystem.getPluginNames("ViewportPlugin", 2)
            self.assertEqual([name for name in names if name in ("Good", "Late")],
                             ["Good", "Late"])
        finally:
            shutil.rmtree(folder)

    def testADirectoryThatIsNotThereIsLogged(self):
        self.assertEqual(PyVlPluginSystem.loadDirectory("/no/such/folder"), 0)
        self.assertEqual([line[2] for line in self.lines], [
            "Skipped plug-in directory '/no/such/folder': No such file or directory."])

    def testWrongArgumentsAreErrors(self):
        self.assertRaises(TypeError, PyVlPluginSystem.loadLibrary)
        self.assertRaises(TypeError, PyVlPluginSystem.loadLibrary, 3)
        self.assertRaises(TypeError, PyVlPluginSystem.loadDirectory, None)
        self.assertRaises(TypeError, PyVlPluginSystem.getPluginNames, "ViewportPlugin")
        for version in (-1, 2 ** 32):
            with self.assertRaises(OverflowError) as context:
                PyVlPluginSystem.getPluginNames("ViewportPlugin", version)
            self.assertEqual(str(context.exception), "apiVersion must fit 32 unsigned bits")
        self.assertRaises(OverflowError, PyVlPluginSystem.getPluginNames, "ViewportPlugin", 2 ** 70)


if __name__ == "__main__":
    unittest.main()
