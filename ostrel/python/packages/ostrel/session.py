"""A scene and a viewer delegate that shows it."""
import math
import os
import re
import time
import weakref

import PyScenelib
import PyWindowSystem
from PyVlAttribute import (FloatAttribute, GroupAttribute, GroupBuilder, IntAttribute,
                           StringAttribute)

import ViewerAPI
from ostrel import lookthrough
from ostrel.edithistory import EditHistory
from ostrel.orbit import usableBounds
from ostrel.plugins import loadPlugins
from ostrel.proxies import LOADER_CHANNEL, proxyLoaderOp
from ostrel.view import View

#: The longest time between two looks at a scene that is being cooked, in seconds.
_PUMP_PERIOD = 0.02
#: The same, in seconds, for what cooks apart from that scene: proxies.
_PROXY_PERIOD = 0.001


_waiting = set()  # weak references to delegates whose end is waited for


def _isThere(viewport):
    try:
        viewport.isDirty()
    except RuntimeError:
        return False
    return True


def _destroyWindows(windowIds):
    for windowId in windowIds:
        PyWindowSystem.destroyOffscreen(windowId)


class Session(object):
    """A scene that is the merger of its models and other ops, with edits on top, and the delegate
    that views it.

    Edits are attributes that are set location by location: by manipulators in the viewer, or by
    setAttribute(). Each step can be undone.

    Everything cooks in the background: pump() waits for it and passes it to the viewer. A session
    is used from one thread, and ends with close() or at the end of a "with" block: what needs the
    viewer or the scene raises RuntimeError from then on.

    lockedNodes  a set of node names: what the viewer sets on locations that one of them owns, by
                 their "attributeEditor.exclusiveTo", is not taken. See also isNodeEditable()

    Manipulators edit only locations that name their node. Those of imported models name NODE;
    scenes of other ops write it, or a name of their own, themselves.
    """

    #: The name of the node that holds a session's edits.
    NODE = "session"

    def __init__(self, delegatePlugin="SceneDelegate"):
        loadPlugins()
        self._time = 0.0
        self._areBoxesShown = self._areProxiesShown = True
        self._imports = []  # (op id, args)
        self._names = set()
        self._inputs = []
        self._merge = PyScenelib.createOp("Scene.Merge")
        self._edit = PyScenelib.createOp("Scene.Edit", None, [self._merge])
        self._history = EditHistory()
        self._stepCommit = None  # the last commit, while it is the last step's
        self.lockedNodes = set()
        self._windowIds = []
        self._views = weakref.WeakValueDictionary()
        self._selection = []
        self._delegate = ViewerAPI.CreateViewerDelegate(delegatePlugin)
        ViewerAPI.setEditor(self._edit, self)
        self.delegate.setup()
        self.delegate.addComponent("LocationExpander", "expander")
        self.delegate.addComponent("ErrorCollector", "errors")
        self.delegate.registerCallback(LOADER_CHANNEL, proxyLoaderOp)
        self.delegate.setSystemArgs(self._systemArgs())
        self.delegate.setViewOp(self._edit)
        self.delegate.setSelectionCallbacks(
            lambda paths: self.select(paths.getNearestSample(0.0)),
            lambda _: StringAttribute(self._selection))
        lookthrough.register(self.delegate, self._views.get)

    @property
    def delegate(self):
        """The ViewerAPI.ViewerDelegate; set up, viewing the scene, with all locations open."""
        self._requireOpen()
        return self._delegate

    def _requireOpen(self):
        if self._delegate is None:
            raise RuntimeError("the session is closed")

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        """Ends the viewer and its off-screen windows. Further calls do nothing.

        From within a call of the viewer, what is being called lasts until that returns.
        """
        if self._delegate is None:
            return
        ViewerAPI.setEditor(self._edit, None)
        delegate, self._delegate = self._delegate, None
        viewports = [delegate.getViewportByIndex(index)
                     for index in range(delegate.getNumberOfViewports())]
        windowIds, self._windowIds = self._windowIds, []

        def destroyWindows(reference):
            _waiting.discard(reference)
            _destroyWindows(windowIds)

        try:
            delegate.cleanup()
        finally:
            if any(_isThere(viewport) for viewport in viewports):
                # One that is being called needs its window to the end. The call holds the delegate.
                _waiting.add(weakref.ref(delegate, destroyWindows))
            else:
                _destroyWindows(windowIds)

    # The scene.

    def importModel(self, path, proxy=None):
        """Adds a model file to the scene, under a location of its own; returns the op's id. proxy is
        another model file, which is shown in the model's place while that is closed.

        Importing happens later: a file that can't be read shows in getErrors() after a pump().
        """
        path = os.path.abspath(path)
        items = [("filePath", StringAttribute(path)),
                 ("name", StringAttribute(self._uniqueName(path))),
                 ("exclusiveTo", StringAttribute(self.NODE))]
        if proxy is not None:
            items.append(("proxies.viewer", StringAttribute(os.path.abspath(proxy))))
        args = GroupAttribute(*items)
        op = PyScenelib.createOp("Geometry.Import", self._timed(args))
        self._imports.append((op, args))
        self.addOp(op)
        return op

    def _uniqueName(self, path):
        """A location's name for a file: its own, with a number behind it where that is taken."""
        name = unique = re.sub(r"[./]", "_", os.path.basename(path))
        number = 1
        while unique in self._names:
            number += 1
            unique = "%s_%d" % (name, number)
        self._names.add(unique)
        return unique

    def createOp(self, opType, args=None, inputs=()):
        """Makes an op and adds it to the scene; returns its id. See PyScenelib.getOpTypes()."""
        op = PyScenelib.createOp(opType, args, inputs)
        self.addOp(op)
        return op

    def addOp(self, op):
        """Merges an op of PyScenelib into the scene."""
        self._requireOpen()
        self._inputs.append(op)
        PyScenelib.setOpInputs(self._merge, self._inputs)

    def removeOp(self, op):
        """Takes an op, or a model by the id that importModel gave, out of the scene."""
        self._requireOpen()
        self._inputs.remove(op)
        self._imports = [(each, args) for each, args in self._imports if each != op]
        PyScenelib.setOpInputs(self._merge, self._inputs)

    def setTime(self, frame):
        """Shows the models, and proxies, at this frame."""
        self._requireOpen()
        self._time = float(frame)
        self.delegate.setSystemArgs(self._systemArgs())
        transaction = PyScenelib.Transaction()
        for op, args in self._imports:
            transaction.setOpArgs(op, "Geometry.Import", self._timed(args))
        transaction.commit()

    def getTime(self):
        """The frame that is shown, at first 0."""
        return self._time

    def _timed(self, args):
        return GroupBuilder().update(args).set("system", self._systemArgs()).build()

    def _systemArgs(self):
        return GroupAttribute(("timeSlice.currentTime", FloatAttribute(self._time)))

    # Edits.

    def setAttribute(self, locationPath, attributeName, attribute):
        """Sets an attribute (dotted name) of a location on top of what the scene gives; None takes
        an earlier edit back. One step of undo; returns the commit's id.

        The viewer shows it after a pump(). A group is merged into the one that the scene gives.
        While the scene has no such location the edit waits for one.

            session.setAttribute("/root/a", "xform.placed.translate", DoubleAttribute([1, 0, 0], 3))
        """
        return self.commitEdits([(locationPath, attributeName, attribute)])

    def commitEdits(self, edits, dropped=(), lastCommit=None):
        """Sets several attributes as one step of undo: edits is a list of (location path, attribute
        name, attribute), each as for setAttribute(). Returns the commit's id.

        What is back at the scene's own value, after the viewer has shown others, is no edit. What
        the viewer shows in place of the scene's values goes from these locations, and from
        the paths in dropped. With lastCommit, what an earlier call returned, the edits belong to
        that one's step, if it is still the last. Raises ValueError for impossible paths and names,
        TypeError for what is no attribute, and changes nothing then.
        """
        self._requireOpen()
        isSameStep = lastCommit is not None and lastCommit == self._stepCommit
        changes = [edit for edit in edits if not self._isBack(*edit)]
        isStep = self._history.apply(changes, isSameStep) or isSameStep
        commit = self._commit(set(dropped).union(edit[0] for edit in edits))
        self._stepCommit = commit if isStep else None
        return commit

    def _isBack(self, locationPath, attributeName, attribute):
        """Whether the viewer, which shows another value in place of the scene's, sets that again."""
        if self._history.getValue(locationPath, attributeName) is not None:
            return False
        return self.delegate.getLiveAttributes(locationPath) is not None and \
            self.delegate.getCookedAttributes(locationPath).getChildByName(
                attributeName) == attribute

    def getEditedValue(self, locationPath, attributeName):
        """The edit of an attribute; None when there is none."""
        return self._history.getValue(locationPath, attributeName)

    def undo(self):
        """Takes the last step back. Returns False when there is none."""
        self._requireOpen()
        return self.canUndo() and self._step(self._history.undo())

    def redo(self):
        """Makes the step again that was taken back last. Returns False when there is none: a new
        edit leaves nothing to be made again."""
        self._requireOpen()
        return self.canRedo() and self._step(self._history.redo())

    def canUndo(self):
        """Whether undo() would take something back."""
        return self._history.canUndo()

    def canRedo(self):
        """Whether redo() would do something."""
        return self._history.canRedo()

    def _step(self, paths):
        self._commit(paths)
        self._stepCommit = None
        return True

    def _commit(self, paths):
        transaction = PyScenelib.Transaction()
        transaction.setOpArgs(self._edit, "Scene.Edit", self._history.args)
        # Told again also where two edits cancel out before either is cooked, or nothing changes.
        for path in sorted(paths):
            transaction.recookLocation(self._edit, path)
        return transaction.commit()

    def isCommitCooked(self, commitId):
        """Whether the viewer gets no data any more that is older than this commit."""
        return PyScenelib.isCommitCooked(commitId)

    def isNodeEditable(self, nodeName):
        """Whether locations may be edited in the viewer whose "attributeEditor.exclusiveTo" is this
        name. An application with nodes of its own overrides it."""
        return nodeName not in self.lockedNodes

    def isLocationEditable(self, locationPath):
        """Whether what is set on a location in the viewer is taken: if the viewer knows it, and no
        node owns it that may not be edited."""
        attributes = self.delegate.getAttributes(locationPath)
        if attributes is None:
            attributes = self.delegate.getAttributes(locationPath,
                                                     ViewerAPI.kVlViewerDelegateLookThrough)
        if attributes is None:
            return False
        for name in ("attributeEditor.xform.exclusiveTo", "attributeEditor.exclusiveTo"):
            owner = attributes.getChildByName(name)
            if isinstance(owner, StringAttribute):
                return self.isNodeEditable(owner.getValue(""))
        return True

    # The selection.

    def select(self, locationPaths):
        """Selects these locations and no others; they need not exist. Clicks in a view do so as
        well."""
        self._requireOpen()
        locationPaths = list(locationPaths)
        StringAttribute(locationPaths)  # raises TypeError, before anything has changed
        self._selection = locationPaths
        self.delegate.setSelectedLocations(locationPaths)
        for view in list(self._views.values()):
            view.selectionChanged()

    def getSelection(self):
        """The selected locations, a list of paths."""
        return list(self._selection)

    # The viewer.

    def setCollapsed(self, isCollapsed):
        """Whether all that stands right below "/root", such as models, is closed: it shows as its
        box, or its proxy, in place of what it holds. Not at first. Takes effect in a pump()."""
        self.delegate.getComponent("expander").setOptionByName(
            "collapsed", IntAttribute(1 if isCollapsed else 0))

    def isCollapsed(self):
        """What setCollapsed() was told last."""
        return self.delegate.getComponent("expander").getOptionByName("collapsed").getValue() == 1

    def setBoxesShown(self, areShown):
        """Whether locations that show nothing of their own have boxes; at first they do. Takes
        effect in a pump()."""
        self._requireOpen()
        self._areBoxesShown = bool(areShown)
        self.delegate.setBoundingBoxesEnabled(self._areBoxesShown)

    def areBoxesShown(self):
        """What setBoxesShown() was told last."""
        return self._areBoxesShown

    def setProxiesShown(self, areShown):
        """Whether locations that show nothing of what they hold have their proxies; at first they
        do. Takes effect in a pump()."""
        self._requireOpen()
        self._areProxiesShown = bool(areShown)
        self.delegate.setProxyGeometryEnabled(self._areProxiesShown)

    def areProxiesShown(self):
        """What setProxiesShown() was told last."""
        return self._areProxiesShown

    def pump(self, progress=None, timeout=None):
        """Passes what is cooked to the viewer until nothing is left to do.

        progress, a callable, is told the seconds so far after each round; False from it stops.
        timeout is in seconds. Returns whether everything is done.
        """
        begin = time.time()
        isCooked = False
        while True:
            self.delegate.processLocationEvents()
            if not self.delegate.isProcessing():
                return True
            elapsed = time.time() - begin
            if progress is not None and progress(elapsed) is False:
                return False
            if timeout is not None and elapsed >= timeout:
                return False
            if isCooked:
                time.sleep(_PROXY_PERIOD)
            isCooked = PyScenelib.waitUntilIdle(_PUMP_PERIOD)

    def getLocations(self):
        """The paths of all locations that the viewer knows, in order: parents before children. Those
        that it generates are among them, boxes and proxies. None of what is closed is.

            for path in session.getLocations():
                print(path, session.delegate.getAttributes(path).getChildByName("type"))
        """
        return list(self.delegate.getOptionByName("locations") or ())

    def countLocationsToCome(self):
        """How many locations are still to be cooked, or wait for a file that is being read, as far
        as they are known: what a model holds is only known once it has been read. Locations that
        are there and change don't count, nor do proxies. Those of other sessions do."""
        return PyScenelib.countLocationsToCome()

    def getErrors(self):
        """What failed: a list of (location path, message)."""
        flat = list(self.delegate.getComponent("errors").getOptionByName("errors"))
        return list(zip(flat[::2], flat[1::2]))

    def getBounds(self):
        """The box around all that the viewer shows, in world space: (xmin, xmax, ymin, ymax, zmin,
        zmax), or None without any.

        Where it shows nothing, or has another delegate plug-in that tells no "bounds", these are
        what the "bound" attributes of locations come to. Those of groups do not follow edits below
        them.
        """
        bounds = self.delegate.getOptionByName("bounds")
        if bounds is None:
            bounds = self.delegate.computeMergedExtent(["/root"])
        if bounds is None or len(bounds) != 6:
            return None
        return usableBounds(bounds)

    def getExtent(self):
        """The length of the diagonal of getBounds(), or of a box of size 2."""
        bounds = usableBounds(self.getBounds())
        return math.sqrt(sum((bounds[i + 1] - bounds[i]) ** 2 for i in (0, 2, 4))) or 1.0

    def addView(self, windowId, width, height, name="main", cameraPlugin="PerspectiveCamera"):
        """A View in a native window of this size in pixels. Its name, which no other view of the
        session may have, is the viewport's. Raises ValueError where it is taken."""
        if self.delegate.getViewport(name) is not None:
            raise ValueError("there is a view \"%s\" already: give this one another name" % name)
        try:
            view = View(self, windowId, width, height, name, cameraPlugin)
        except Exception:
            self.delegate.removeViewport(name)
            raise
        self._views[name] = view
        return view

    def addOffscreenView(self, width, height, name="picture", cameraPlugin="PerspectiveCamera"):
        """A View of this size in pixels that shows on no screen, for pictures."""
        windowId = PyWindowSystem.createOffscreen(width, height)
        try:
            view = self.addView(windowId, width, height, name, cameraPlugin)
        except Exception:
            PyWindowSystem.destroyOffscreen(windowId)
            raise
        self._windowIds.append(windowId)
        return view
