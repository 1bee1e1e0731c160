"""Scenes and pictures from a script.

    import ostrel

    with ostrel.Session() as session:
        session.importModel("duck.dae")
        view = session.addOffscreenView(1280, 720)
        session.pump()                    # until everything is cooked and known to the viewer
        view.frame()
        view.savePicture("duck.png")

Session   a scene with edits that can be undone, and a viewer delegate that shows it
View      a viewport of that delegate with layers, a camera and an orbit around the scene
Orbit     where a camera stands: target, distance, yaw and pitch; frames bounds
events    what users do in a view's window, for its viewport's event()

Below are plain parts for everything else: PyScenelib edits the op graph, PyVlAttribute has the
values, ViewerAPI the delegate and its viewports, PyWindowSystem the off-screen windows.
"""
from ostrel import events
from ostrel.orbit import Orbit
from ostrel.plugins import loadPlugins
from ostrel.session import Session
from ostrel.view import View

__all__ = ["Orbit", "Session", "View", "events", "loadPlugins"]
