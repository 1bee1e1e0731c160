"""What a viewer delegate asks of the application while locations are edited in the viewer."""
import weakref

_editors = weakref.WeakValueDictionary()


def setEditor(opId, editor):
    """Sends what is edited in delegates that view this op to an editor; None ends that.

    The op is the one that the editor writes to, so that what it commits shows in the delegate. The
    editor is not kept alive by this. It has these methods, all called on the delegate's thread:

    isNodeEditable(nodeName)
        Whether the node that a location's "attributeEditor.exclusiveTo" names may be edited.
    isLocationEditable(locationPath)
        Whether edits of the location are taken.
    commitEdits(edits, dropped, lastCommit)
        Writes edits, a list of (location path, dotted attribute name, attribute), to the scene, as
        one step of undo: a new one, or, where lastCommit is not None, still that of lastCommit.
        dropped is a list of locations with values that were set and are not to be kept. The scene
        has to tell of all these locations again, also where nothing changes: that alone takes away
        what the viewer shows in place of the scene's own values. Returns the commit's id.
    isCommitCooked(commitId)
        Whether the viewer gets no data any more that is older than that commit.
    getEditedValue(locationPath, attributeName)
        The committed edit of an attribute, or None.
    """
    if editor is None:
        _editors.pop(opId, None)
    else:
        _editors[opId] = editor


class ManipulatorBridge(object):
    """Carries the values that manipulators set in the viewer to the application.

    A delegate makes one instance, without arguments, binds these eight methods once and calls them
    on its own thread. Edits go to the editor of the op that the delegate views, see setEditor();
    ostrel.Session is one. A delegate whose op has no editor is an application without a node graph:
    every node may be edited, values are remembered while the viewer shows them in place of cooked
    ones, and none of them reaches the scene.

    What belongs together is committed together, as one step of undo: a final value by itself, or
    all final values of locations whose manipulation groups are open at the same time, when the last
    of them closes. Values that are not final show in the viewer only, and are never committed.

    What a method raises is printed, and counts as a false answer or, for getManipulationCommitId,
    as a commit that has come. Only openManipulationGroup, closeManipulationGroup and
    cleanupLiveAttributes are not looked after: what they raise surfaces from the call of the viewer
    that led to them.
    """

    def __init__(self):
        self._opId = None
        self._values = {}  # attribute name to value, by location path
        self._openGroups = set()
        # Since the last commit: the final values that were taken, (path, name, attribute); whether
        # there was a final one at all; the locations of all values, final or not.
        self._edits = []
        self._isDue = False
        self._shown = set()
        self._commitId = 0
        self._isStepOpen = False  # what is committed next belongs to the last commit's step

    def _editor(self):
        return _editors.get(self._opId)

    def getValue(self, locationPath, attributeName):
        """The value that was last set on an attribute, or None.

        Manipulators never ask; it is here for the application's own panels.
        """
        value = self._values.get(locationPath, {}).get(attributeName)
        editor = self._editor()
        if value is None and editor is not None:
            value = editor.getEditedValue(locationPath, attributeName)
        return value

    def setValue(self, locationPath, attributeName, attribute, isFinal):
        """A manipulator set an attribute (dotted name) of a location.

        isFinal is 0 for the many values of a drag and 1 for the one that ends it: the one that is
        committed. Returns whether the value was taken; the viewer shows it in either case, and one
        that was not until the drag is over.
        """
        self._values.setdefault(locationPath, {})[attributeName] = attribute
        editor = self._editor()
        if editor is None:
            return True
        # Before the editor is asked: what it fails to answer for has to go from the viewer too.
        self._shown.add(locationPath)
        self._isDue = self._isDue or bool(isFinal)
        isTaken = editor.isLocationEditable(locationPath)
        if isFinal:
            if isTaken:
                self._edits.append((locationPath, attributeName, attribute))
            if locationPath not in self._openGroups:
                self._isStepOpen = False
                self._commitWhatIsDue()
        return isTaken

    def isNodeEditable(self, nodeName):
        """Whether the node that a location's "attributeEditor.exclusiveTo" names may be edited.

        Asked when a manipulator is shown; a false answer, or an exception, makes it read-only.
        """
        editor = self._editor()
        return editor is None or editor.isNodeEditable(nodeName)

    def updateOp(self, opId):
        """The delegate is about to view this op (also when it views it already).

        Edits go to the op's editor from now on.
        """
        if opId != self._opId:
            self._commitWhatIsDue()
            self._shown.clear()
            self._isStepOpen = False
            self._opId = opId

    def getManipulationCommitId(self):
        """The commit that holds the last final value, or -1 while the scene is older than that.

        After a final value the delegate holds back scene events, so that stale cooked data can't
        overwrite what the user just set, and asks again at each pump until the answer is not -1.
        A commit's id is not enough for that: an event that waits, or one that is cooked a moment
        later, may still be older. So the answer is -1 until all that the commit affects has been
        cooked. A group that is still open then is not waited for: what it has is committed, and
        what it gets later goes to the same step of undo.
        """
        self._commitWhatIsDue()
        editor = self._editor()
        if editor is None:
            return 0
        return self._commitId if editor.isCommitCooked(self._commitId) else -1

    def openManipulationGroup(self, locationPath):
        """Edits of this location up to closeManipulationGroup belong together, and with those of
        other locations whose groups are open meanwhile: one gesture, one step of undo."""
        self._isStepOpen = False
        self._openGroups.add(locationPath)

    def closeManipulationGroup(self, locationPath):
        """Ends what openManipulationGroup began. Groups of one location don't nest."""
        self._openGroups.discard(locationPath)
        if not self._openGroups:
            self._commitWhatIsDue()
            self._isStepOpen = False

    def cleanupLiveAttributes(self, locationPath):
        """The scene's own data has come for this location: values set on it are obsolete.

        Called for every location that is cooked, so it must be quick.
        """
        if self._values:
            self._values.pop(locationPath, None)

    def _commitWhatIsDue(self):
        editor = self._editor()
        if not self._isDue or editor is None:
            return
        # Forgotten first: what fails now would fail again at every pump.
        edits, self._edits, self._isDue = self._edits, [], False
        # A location whose group is open may yet get its final value.
        shown, self._shown = self._shown, self._shown & self._openGroups
        dropped = shown - self._openGroups - set(edit[0] for edit in edits)
        lastCommit = self._commitId if self._isStepOpen else None
        self._commitId = editor.commitEdits(edits, sorted(dropped), lastCommit)
        self._isStepOpen = bool(self._openGroups)
