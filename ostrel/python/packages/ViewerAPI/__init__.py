"""The viewer: delegates, viewports, cameras and layers, and the bridge to the application.

Everything of the extension module ViewerAPI_cmodule is here under its own name:

    import ViewerAPI
    delegate = ViewerAPI.CreateViewerDelegate("SceneDelegate")
    delegate.setup()
    viewport = delegate.addViewport("SceneViewport", "main")

Besides, there is the class ManipulatorBridge, by which values that are set in the viewer reach the
application. An application takes them by op, with ViewerAPI.setEditor(opId, editor); ostrel.Session
does so for its scene. Each delegate makes an instance of whatever class stands under that name when
it is created, so one that wants to hear of everything itself replaces the class first:

    class NodeGraphBridge(ViewerAPI.ManipulatorBridge):
        def setValue(self, locationPath, attributeName, attribute, isFinal):
            ...

    ViewerAPI.ManipulatorBridge = NodeGraphBridge

The package "ostrel" puts scene and viewer together for scripts.

What the methods' own texts leave open:

- Matrices are 16 numbers for row vectors, row after row; boxes 6: xmin, xmax, ymin, ymax, zmin, zmax.
  What is absent is None. Several paths have to stand in a list: tuples are refused.
- Viewport.setup(winId) readies a viewport to draw in a window: an X11 id, or one of PyWindowSystem.
  Call resize(width, height), in pixels, then and whenever the window's size changes.
- Viewport.setZoom, setHorizontalOffset and setVerticalOffset take one float, setPanAndZoomActive
  a bool.
- ViewportCamera.getProjectionMatrix and setProjectionMatrix are about the projection, camera to clip
  space; getViewMatrix and setViewMatrix about world to camera.
- getCompatibleManipulatorsInfo names each manipulator that fits at least one of the locations.
- What setActiveManipulatorsChangedCallback takes is called with a group of the two strings
  viewportName and manipulatorName. docs/scripting.md lists all that is told by callbacks.
- The objects that a delegate makes end with it, or when they are removed: RuntimeError afterwards.
"""
import ViewerAPI_cmodule as _module
from ViewerAPI_cmodule import *  # noqa: F401,F403

from ViewerAPI.manipulatorbridge import ManipulatorBridge, setEditor

# help() passes over what comes from elsewhere and is not listed.
__all__ = ["ManipulatorBridge", "setEditor"] + [name for name in dir(_module)
                                                if not name.startswith("_")]

# Neither is there under -OO.
__doc__ = "\n".join(text for text in (__doc__, _module.__doc__) if text)
