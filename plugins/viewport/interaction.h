#pragma once

#include "viewer_api/plugin/ViewportEvent.h"
#include "viewport/cameracontroller.h"
#include "viewport/selector.h"

#include <optional>

namespace Bundled {

/// What mouse and keys do in a viewport where no layer takes them:
///
/// - left drag: orbit; with shift, or the middle button: pan; right drag: dolly to where it began
/// - wheel: dolly to the cursor
/// - left click: select; with shift: add; with control: toggle
/// - left drag with control: select what is in the rectangle; with shift as well: add it
/// - "f": frame the selection, or everything without one
///
/// [ui-thread]
class Interaction {
public:
    explicit Interaction(ViewerPlugin::ViewportHost viewportHost)
        : host(viewportHost), camera(viewportHost), selector(viewportHost) {}

    /// True when the event meant something here.
    bool event(const ViewerPlugin::ViewportEvent& event);

    /// The rectangle that the user is drawing up, in pixels, while that is so.
    [[nodiscard]] std::optional<ViewerPlugin::PickRegion> getRectangle() const;

private:
    using Event = ViewerPlugin::ViewportEvent;
    enum class Drag { Orbit, Pan, Dolly, Rectangle };
    /// A button is held.
    struct Hold {
        Event press;
        Imath::V2i last;
        /// It was moved so far that it is no click any more.
        bool isDrag = false;
    };

    static Drag dragOf(const Event& press);
    void press(const Event& event);
    void move(const Event& event);
    bool release(const Event& event);
    void frame() const;
    /// Around what is drawn, or else around what locations tell of themselves.
    [[nodiscard]] Imath::Box3d getSceneBounds() const;

    const ViewerPlugin::ViewportHost host;
    const CameraController camera;
    const Selector selector;
    std::optional<Hold> hold;
};

} // namespace Bundled
