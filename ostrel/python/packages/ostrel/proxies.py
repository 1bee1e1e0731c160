"""How the files are loaded that stand for locations while these show no children: proxies."""
from PyVlAttribute import GroupAttribute, StringAttribute

#: The channel by which a viewer asks.
LOADER_CHANNEL = "getViewerProxyLoaderOp"


def proxyLoaderOp(question):
    """The op that loads the file of a location's "proxies.viewer": whatever can be imported.

    The question is a group of filePath and frameTime. The frame need not be passed on: an op finds
    it in the system args that the viewer adds.
    """
    return GroupAttribute(("opType", StringAttribute("Geometry.Import")),
                          ("opArgs.filePath", question.getChildByName("filePath")))
