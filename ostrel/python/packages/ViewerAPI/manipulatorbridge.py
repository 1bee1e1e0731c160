"""What a viewer delegate asks of the application while locations are edited in the viewer."""


class ManipulatorBridge(object):
    """Receives the values that manipulators set in the viewer.

    A delegate makes one instance, without arguments, binds these eight methods once and calls them
    on its own thread. This class is the application without a node graph: every node may be edited,
    values are remembered while the viewer shows them in place of cooked ones, and none of them
    reaches the scene. An application derives from it and writes them where they belong.

    What a method raises is printed, and counts as a false answer or, for getManipulationCommitId,
    as a commit that has come. Only openManipulationGroup, closeManipulationGroup and
    cleanupLiveAttributes are not looked after: what they raise surfaces from the call of the viewer
    that led to them.
    """

    def __init__(self):
        self._values = {}

    def getValue(self, locationPath, attributeName):
        """The value that was last set on an attribute and is not cleaned up yet, or None.

        Manipulators never ask; it is here for the application's own panels.
        """
        return self._values.get(locationPath, {}).get(attributeName)

    def setValue(self, locationPath, attributeName, attribute, isFinal):
        """A manipulator set an attribute (dotted name) of a location.

        isFinal is 0 for the many values of a drag and 1 for the one that ends it: the one that an
        application writes as an edit that can be undone. Returns whether the value was taken; the
        viewer shows it in either case.
        """
        self._values.setdefault(locationPath, {})[attributeName] = attribute
        return True

    def isNodeEditable(self, nodeName):
        """Whether the node that a location's "attributeEditor.exclusiveTo" names may be edited.

        Asked when a manipulator is shown; a false answer, or an exception, makes it read-only.
        """
        return True

    def updateOp(self, opId):
        """The delegate is about to view this op (also when it views it already).

        An application brings the op up to date with its node here.
        """

    def getManipulationCommitId(self):
        """The commit that holds the last final value, or -1 while there is none yet.

        After a final value the delegate holds back scene events, so that stale cooked data can't
        overwrite what the user just set, and asks again at each pump until the answer is not -1.
        Here there is nothing to wait for.
        """
        return 0

    def openManipulationGroup(self, locationPath):
        """Edits of this location up to closeManipulationGroup belong together, as one undo step."""

    def closeManipulationGroup(self, locationPath):
        """Ends what openManipulationGroup began."""

    def cleanupLiveAttributes(self, locationPath):
        """The scene's own data has come for this location: values set on it are obsolete.

        Called for every location that is cooked, so it must be quick.
        """
        self._values.pop(locationPath, None)
