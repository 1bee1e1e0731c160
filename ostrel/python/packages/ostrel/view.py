"""A viewport with everything that a picture needs."""
from __future__ import division

import PyWindowSystem
from PyVlAttribute import IntAttribute

from ostrel.orbit import Orbit

#: The vertical angle of the picture, in degrees: a little tele, as things are photographed.
_FOV = 32.0


class View(object):
    """A viewport that shows a session's scene. Made by Session.addView and addOffscreenView.

    viewport  the ViewerAPI.Viewport
    camera    its ViewerAPI.ViewportCamera
    orbit     where the camera stands; call updateCamera() after changing it
    """

    def __init__(self, session, windowId, width, height, name, cameraPlugin):
        self._session = session
        self._windowId = windowId
        self.width, self.height = width, height
        self.orbit = Orbit()
        self.viewport = session.delegate.addViewport("SceneViewport", name)
        self.viewport.setup(windowId)
        # The grid first: so it stays behind the model and never cuts through it.
        self.viewport.addLayer("GridLayer", "grid")
        self.viewport.addLayer("MeshLayer", "meshes")
        self.camera = self.viewport.addCamera(cameraPlugin, "main")
        self.viewport.setActiveCamera(self.camera)
        self.camera.setFOV(_FOV)
        self.resize(width, height)

    @property
    def aspect(self):
        """Width by height."""
        return float(self.width) / max(1, self.height)

    def resize(self, width, height):
        """The window has this size in pixels."""
        self.width, self.height = width, height
        if self._windowId < 0:
            PyWindowSystem.resizeOffscreen(self._windowId, width, height)
        self.viewport.resize(width, height)
        self.updateCamera()

    def frame(self, bounds=None):
        """Brings the scene, or the given bounds, into the picture without turning the camera."""
        if bounds is None:
            bounds = self._session.getBounds()
        self.orbit.frame(bounds, self.camera.getFOV(), self.aspect)
        self.updateCamera()

    def updateCamera(self):
        """Puts the camera where the orbit is."""
        self.orbit.apply(self.camera, self.aspect)
        self.viewport.setDirty(True)

    def draw(self):
        """Draws what the delegate knows by now."""
        self.viewport.draw()
        self.viewport.setDirty(False)

    def pick(self, x, y, width=1, height=1, deep=False):
        """The paths of the locations that a region of the picture shows, sorted; with deep also of
        those hidden behind them. In pixels, from the top left."""
        self.viewport.setOptionByName(
            "pickRegion", IntAttribute([x, y, width, height, 1 if deep else 0]))
        return sorted(set(self.viewport.getOptionByName("picked").getNearestSample(0.0)))

    def readPixels(self):
        """Draws, and gives (width, height, bytes): RGBA, top row first. Off-screen views only."""
        self.draw()
        return PyWindowSystem.readPixels(self._windowId)

    def savePicture(self, path):
        """Draws, and writes a PNG file. Off-screen views only. Raises IOError, with the path and
        the reason in its text, when the file can't be written."""
        self.draw()
        PyWindowSystem.writePng(self._windowId, path)
