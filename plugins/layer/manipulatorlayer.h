#pragma once

#include "viewer_api/plugin/ManipulatorHost.h"
#include "viewer_api/plugin/ViewportEvent.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <string>

namespace Bundled {

/// "ManipulatorLayer": draws the viewport's active manipulators over the layers before it, and
/// brings the mouse to them. What the pointer is over is marked: the handle by its flag. A press on
/// a manipulator goes to it, and when that takes it, everything up to the release does. A layer
/// that ends before that has it cancelled, by the key Escape.
///
/// A release that arrives from within the manipulator's own calls reaches it after them. One that
/// never arrives is made up for where the pointer was last, as soon as that moves without the
/// button.
///
/// It keeps a picture of what stands at each pixel. A manipulator's pickerDraw gets an id, and may
/// draw its handle of index i in the id + 1 + i: then the handle is known by itself. Objects are
/// groups of `manipulator`, the plug-in's name, and for handles `handle`, its name. Picks of the
/// viewport pass the layer over: they see through manipulators.
class ManipulatorLayer final : public ViewerPlugin::ViewportLayerPlugin {
public:
    using ViewportLayerPlugin::ViewportLayerPlugin;
    ~ManipulatorLayer() override;

    bool event(const GroupAttribute& event) override;
    void draw() override;
    void hover(bool isHovering, int x, int y) override;
    void pickerDraw(const ViewerPlugin::PickRegion& region,
                    const GroupAttribute& excluded) override;
    bool usesPickingCache() override { return true; }

private:
    /// A manipulator by its plug-in's name, and one of its handles by its own; "" for none.
    struct Place {
        std::string manipulator;
        std::string handle;

        friend bool operator==(const Place&, const Place&) = default;
    };

    [[nodiscard]] Place find(int x, int y) const;
    /// Marks what the pointer is over now, and nothing else.
    void setHovered(const Place& place);
    void setMarked(const Place& place, bool isMarked) const;
    bool press(const GroupAttribute& event, const ViewerPlugin::ViewportEvent& press);
    /// Tells a manipulator by its plug-in's name.
    bool passOn(const std::string& manipulator, const GroupAttribute& event);
    /// Brings a release that is late to the holder.
    void catchUp();

    Place hovered;
    /// The manipulator that has the mouse, and the button that it was given it with.
    std::string holder;
    ViewerPlugin::ViewportEvent::Button heldButton = ViewerPlugin::ViewportEvent::Button::None;
    /// What the holder was told last of the pointer.
    GroupAttribute lastOfPointer;
    /// A release of the held button that the holder is yet to be told of; null without one.
    GroupAttribute lateRelease;
    bool isPassingOn = false;
};

} // namespace Bundled
