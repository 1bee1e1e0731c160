"""The log as Python sees it."""
import ctypes
import os
import subprocess
import sys
import time
import unittest

import PyVlLogging

CALLER = os.path.join(os.environ["OSTREL_TEST_PLUGINS"], "logging", "caller.so")


def runPython(code):
    """The code's exit status, stdout and stderr in an interpreter of its own."""
    process = subprocess.Popen([sys.executable, "-c", code], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    out, err = process.communicate()
    return process.returncode, out.decode("utf-8"), err.decode("utf-8")


class PyVlLoggingTest(unittest.TestCase):
    def setUp(self):
        self.lines = []
        PyVlLogging.setSink(lambda *line: self.lines.append(line))

    def tearDown(self):
        PyVlLogging.setSink(None)
        PyVlLogging.setLevel("warning")

    def testALineHasLevelChannelTextSourceAndLine(self):
        PyVlLogging.log("error", "channel", "text", "source", 12)
        PyVlLogging.log("warning", "channel", "bare")
        self.assertEqual(self.lines, [("error", "channel", "text", "source", 12),
                                      ("warning", "channel", "bare", "", 0)])
        for part in self.lines[0][:4]:
            self.assertTrue(type(part) is str)

    def testTheLevelDecidesWhatPasses(self):
        levels = ["debug", "info", "warning", "error"]
        self.assertEqual(PyVlLogging.getLevel(), "warning")
        for index, threshold in enumerate(levels + ["off"]):
            PyVlLogging.setLevel(threshold)
            self.assertEqual(PyVlLogging.getLevel(), threshold)
            del self.lines[:]
            for level in levels:
                PyVlLogging.log(level, "channel", "text")
            self.assertEqual([line[0] for line in self.lines], levels[index:])

    def testUnknownLevelsAreValueErrors(self):
        for call in (lambda: PyVlLogging.setLevel("loud"),
                     lambda: PyVlLogging.log("loud", "channel", "text")):
            with self.assertRaises(ValueError) as caught:
                call()
            self.assertEqual(str(caught.exception), "unknown level 'loud': it must be 'debug', "
                                                    "'info', 'warning', 'error' or 'off'")

    def testTheSinkMustBeCallable(self):
        sink = PyVlLogging.getSink()
        with self.assertRaises(TypeError) as caught:
            PyVlLogging.setSink(3)
        self.assertEqual(str(caught.exception), "the sink must be callable or None")
        self.assertTrue(PyVlLogging.getSink() is sink)

    def testTheSinkIsReleasedWhenItIsReplaced(self):
        def sink(*line):
            pass
        before = sys.getrefcount(sink)
        PyVlLogging.setSink(sink)
        self.assertEqual(sys.getrefcount(sink), before + 1)
        PyVlLogging.setSink(None)
        self.assertEqual(sys.getrefcount(sink), before)
        self.assertTrue(PyVlLogging.getSink() is None)

    def testTextOutsideUtf8ComesThroughUnchanged(self):
        text = b"caf\xe9 \xc3\xa9"
        if sys.version_info[0] >= 3:
            text = text.decode("utf-8", "surrogateescape")
        PyVlLogging.log("error", text, text)
        self.assertEqual(self.lines, [("error", text, text, "", 0)])

    def testLinesOfOtherThreadsArriveOnTheMainThread(self):
        # A thread that waits for the interpreter lock would never end here: its caller holds it.
        ctypes.PyDLL(CALLER).logFromAnotherThread(b"one")
        PyVlLogging.log("error", "channel", "two")
        self.assertEqual([line[2] for line in self.lines], ["one", "two"])

    def testLinesOfOtherThreadsArriveWithoutAnother(self):
        ctypes.PyDLL(CALLER).logFromAnotherThread(b"one")
        deadline = time.time() + 10
        while not self.lines and time.time() < deadline:
            time.sleep(0.001)  # gives the interpreter lock away
        self.assertEqual([line[2] for line in self.lines], ["one"])

    def testALineLoggedWithoutTheInterpreterLockArrives(self):
        ctypes.CDLL(CALLER).logHere(b"one")
        PyVlLogging.setSink(PyVlLogging.getSink())  # delivers what waits
        self.assertEqual([line[2] for line in self.lines], ["one"])

    def testWhatWaitsGoesToTheSinkThatWasThere(self):
        ctypes.PyDLL(CALLER).logFromAnotherThread(b"one")
        PyVlLogging.setSink(None)
        self.assertEqual([line[2] for line in self.lines], ["one"])

    def testAnErrorThatIsPendingOutlivesTheSink(self):
        def sink(*line):
            try:
                raise KeyError("inside")
            except KeyError:
                pass
        PyVlLogging.setSink(sink)
        try:
            raise ValueError("outside")
        except ValueError:
            PyVlLogging.log("error", "channel", "text")
            self.assertTrue(sys.exc_info()[0] is ValueError)

    def testASinkThatRaisesIsPrintedAndItsLineGoesToStderr(self):
        status, out, err = runPython(
            "import PyVlLogging\n"
            "def sink(*line): raise KeyError('full')\n"
            "PyVlLogging.setSink(sink)\n"
            "PyVlLogging.log('error', 'channel', 'the text')\n"
            "print('goes on')\n")
        self.assertEqual((status, out), (0, "goes on\n"))
        self.assertTrue("KeyError: 'full'" in err or "KeyError('full',)" in err, err)
        self.assertTrue("error channel: the text" in err, err)

    def testWhatTheSinkLogsItselfGoesToStderr(self):
        status, out, err = runPython(
            "import PyVlLogging\n"
            "def sink(*line):\n"
            "    print(line[2])\n"
            "    PyVlLogging.log('error', 'channel', 'inner')\n"
            "PyVlLogging.setSink(sink)\n"
            "PyVlLogging.log('error', 'channel', 'outer')\n")
        self.assertEqual((status, out), (0, "outer\n"))
        self.assertTrue("error channel: inner" in err, err)

    def testWithoutSinkLinesGoToStderr(self):
        status, out, err = runPython(
            "import PyVlLogging\n"
            "PyVlLogging.log('error', 'channel', 'the text', 'source', 3)\n")
        self.assertEqual((status, out), (0, ""))
        self.assertTrue(err.endswith("error channel: the text [source:3]\n"), err)

    def testTheInterpreterEndsWithASinkSet(self):
        status, out, err = runPython(
            "import PyVlLogging, atexit, ctypes\n"
            "class Last(object):\n"
            "    def __del__(self): PyVlLogging.log('error', 'channel', 'last')\n"
            "PyVlLogging.setSink(lambda *line: None)\n"
            "PyVlLogging.last = Last()\n")
        self.assertEqual(status, 0, err)


if __name__ == "__main__":
    unittest.main()
