"""The bindings' neighbours, all scripted by the test: the scene, the plug-ins behind the host
objects, and the application's ManipulatorBridge. Import this before the first delegate is made."""

import ctypes
import gc
import os
import sys
import types
import unittest

IS_PYTHON_3 = sys.version_info[0] >= 3

sys.path.insert(0, os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                "python3" if IS_PYTHON_3 else "python2.7"))

import ScriptedPlugins
import ScriptedScene
import ViewerAPI_cmodule as ViewerAPI

if IS_PYTHON_3:
    from io import StringIO
else:
    from StringIO import StringIO

DELEGATE = "ScriptedDelegate"
COMPONENT = "ScriptedComponent"
VIEWPORT = "ScriptedViewport"
LAYER = "ScriptedLayer"
CAMERA = "ScriptedCamera"
MANIPULATORS = ("ScriptedMove", "ScriptedAim")


class Bridge(object):
    """Records its calls. An answer that is an exception is raised."""

    def __init__(self):
        self.calls = []
        self.answers = {"isNodeEditable": True, "setValue": True, "getManipulationCommitId": 0}
        application.bridges.append(self)

    def _called(self, name, *arguments):
        self.calls.append((name,) + arguments)
        answer = self.answers.get(name)
        if isinstance(answer, BaseException):
            raise answer
        return answer

    def getValue(self, *arguments):
        return self._called("getValue", *arguments)

    def setValue(self, *arguments):
        return self._called("setValue", *arguments)

    def isNodeEditable(self, *arguments):
        return self._called("isNodeEditable", *arguments)

    def updateOp(self, *arguments):
        return self._called("updateOp", *arguments)

    def getManipulationCommitId(self, *arguments):
        return self._called("getManipulationCommitId", *arguments)

    def openManipulationGroup(self, *arguments):
        return self._called("openManipulationGroup", *arguments)

    def closeManipulationGroup(self, *arguments):
        return self._called("closeManipulationGroup", *arguments)

    def cleanupLiveAttributes(self, *arguments):
        return self._called("cleanupLiveAttributes", *arguments)


# The module is kept by the first delegate that finds it, so it is the same for all tests.
application = types.ModuleType("ViewerAPI")
application.ManipulatorBridge = Bridge
application.bridges = []
sys.modules["ViewerAPI"] = application


class Plugins(object):
    """What every scripted plug-in was called with, and what it answers.

    `calls` are tuples of plug-in, entry and arguments. `answers` by (plugin, entry) are values, or
    callables that get the host and the arguments; an exception is raised.
    """

    def __init__(self):
        self.calls = []
        self.answers = {}
        self.hosts = {}

    def __call__(self, plugin, host, entry, arguments):
        self.calls.append((plugin, entry) + arguments)
        if entry == "create":
            self.hosts[plugin] = host
        answer = self.answers.get((plugin, entry))
        if isinstance(answer, BaseException):
            raise answer
        if callable(answer):
            return answer(host, *arguments)
        return answer

    def take(self, plugin=None):
        """The calls since the last time, of one plug-in or of all."""
        calls, self.calls = self.calls, []
        return [call for call in calls if plugin in (None, call[0])]


#: Raises the error that a call has left pending, as calls may on Python 2.
raisePending = ctypes.pythonapi.PyErr_Occurred


def errorOf(function, *arguments):
    """The error that a call raises or, as calls may on Python 2, leaves pending; or None."""
    try:
        function(*arguments)
        raisePending()
    except Exception as error:
        return error
    return None


def instanceCount():
    info = ViewerAPI.GetDiagnosticInfo()
    return info.getChildByName("ViewerDelegateInstanceCount").getValue(-1)


class ScriptedTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        gc.collect()  # delegates that a former test left in a cycle
        self.plugins = Plugins()
        ScriptedPlugins.setHook(self.plugins)
        application.ManipulatorBridge = Bridge
        del application.bridges[:]
        self.delegate = None
        self._stderr = sys.stderr
        sys.stderr = self.printed = StringIO()

    def tearDown(self):
        self.delegate = None
        sys.stderr = self._stderr
        ScriptedPlugins.setHook(None)

    def createDelegate(self, plugin=DELEGATE):
        """Makes self.delegate, whose clients begin at self.firstClient, and forgets the calls."""
        self.firstClient = ScriptedScene.getNumberOfClients() + 1
        self.delegate = ViewerAPI.CreateViewerDelegate(plugin)
        self.bridge = application.bridges[-1] if application.bridges else None
        self.plugins.take()
        ScriptedScene.takeCommands()
        return self.delegate

    def createViewport(self, name="v"):
        if self.delegate is None:
            self.createDelegate()
        viewport = self.delegate.addViewport(VIEWPORT, name)
        self.plugins.take()
        return viewport

    def host(self, plugin=DELEGATE):
        """The host of the plug-in's last instance."""
        return self.plugins.hosts[plugin]

    def takePrinted(self):
        text = self.printed.getvalue()
        self.printed.seek(0)
        self.printed.truncate()
        return text

    def assertError(self, kind, text, function, *arguments):
        """The call raises exactly this kind with exactly this text."""
        error = errorOf(function, *arguments)
        self.assertIs(kind, type(error), "%r" % (error,))
        self.assertEqual(text, str(error))
