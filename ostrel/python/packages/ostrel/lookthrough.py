"""What it takes to look through a location."""
from PyVlAttribute import GroupBuilder, StringAttribute

_CHANNELS = {
    "cooked": "__LOOKTHROUGH_LOCATION_COOKED",
    "changed": "__LOOKTHROUGH_LOCATION_CHANGED",
    "gone": "__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST",
}


def register(delegate, getView):
    """Has the delegate tell its views what becomes of the locations that they look through.

    getView answers the View of a viewport's name, or None.
    """
    def listen(channel, tell):
        def callback(payload):
            view = getView(payload.getChildByName("viewport").getValue())
            if view is not None:
                tell(view, payload.getChildByName("location").getValue(),
                     payload.getChildByName("attrs"))
        delegate.registerCallback(_CHANNELS[channel], callback)

    listen("cooked", lambda view, path, attributes: view.showThrough(path, attributes))
    listen("gone", lambda view, path, attributes: view.showFreely())
    listen("changed", lambda view, path, attributes: None if path else view.showFreely())


def cameraPlugin(attributes):
    """The camera plug-in for a location with these attributes."""
    projection = attributes.getChildByName("geometry.projection")
    kind = attributes.getChildByName("light.kind")
    # The rays of a directional light are parallel.
    isOrthographic = (projection.getValue("") == "orthographic"
                      if isinstance(projection, StringAttribute) else
                      isinstance(kind, StringAttribute) and kind.getValue("") == "directional")
    return "OrthographicCamera" if isOrthographic else "PerspectiveCamera"


def cameraData(path, attributes):
    """What a bundled camera's setup() takes to be that location."""
    builder = GroupBuilder().set("locationPath", StringAttribute(path))
    for name in ("geometry", "light"):
        builder.set(name, attributes.getChildByName(name))
    return builder.build()
