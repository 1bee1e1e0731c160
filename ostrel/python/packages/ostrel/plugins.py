"""Finding the bundled plug-ins."""
import os

import PyVlAttribute
import PyVlPluginSystem

_loaded = set()


def pluginDirectory():
    """Where the bundled plug-ins are: OSTREL_PLUGINS, or "plugins" beside the modules' folder."""
    told = os.environ.get("OSTREL_PLUGINS")
    if told:
        return told
    modules = os.path.dirname(os.path.abspath(PyVlAttribute.__file__))
    return os.path.join(os.path.dirname(modules), "plugins")


def loadPlugins(directory=None):
    """Loads the plug-ins of a directory, the bundled ones by default, once per process.

    Raises RuntimeError when there are none.
    """
    directory = os.path.abspath(directory or pluginDirectory())
    if directory in _loaded:
        return
    if not PyVlPluginSystem.loadDirectory(directory):
        raise RuntimeError("no plug-ins in %s" % directory)
    _loaded.add(directory)
