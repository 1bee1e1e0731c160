#include "layer/manipulatorlayer.h"

#include "gl/capabilityguard.h"
#include "gl/glcontext.h"
#include "scene/raisedflag.h"
#include "viewer_api/plugin/ManipulatorHandleHost.h"
#include "viewport/sceneviewport.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <GL/glew.h>

#include <utility>

namespace Bundled {

namespace {

using ViewerPlugin::ManipulatorHost;
using ViewerPlugin::Triple;
using ViewerPlugin::ViewportEvent;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

/// What lies nearer than the nearest that is drawn, or farther than the farthest, shows all the
/// same: the range of depth fits the scene, not the gizmos.
class DepthClamp {
public:
    DepthClamp() { glEnable(GL_DEPTH_CLAMP); }

private:
    const CapabilityGuard guard{GL_DEPTH_CLAMP};
};

bool isHeld(const ViewportEvent::Buttons& buttons, ViewportEvent::Button button) {
    switch (button) {
    case ViewportEvent::Button::Left:
        return buttons.left;
    case ViewportEvent::Button::Middle:
        return buttons.middle;
    case ViewportEvent::Button::Right:
        return buttons.right;
    case ViewportEvent::Button::None:
        break;
    }
    return false;
}

/// The release of a button where the pointer was at an event, with those that are held afterwards.
GroupAttribute releaseAt(const GroupAttribute& event, ViewportEvent::Button button,
                         const VlAttribute::Attribute& heldAfterwards) {
    const char* const name = button == ViewportEvent::Button::Left     ? "left"
                             : button == ViewportEvent::Button::Middle ? "middle"
                                                                       : "right";
    return VlAttribute::GroupBuilder()
        .update(event)
        .set("type", StringAttribute("mouseRelease"))
        .set("button", StringAttribute(name))
        .set("buttons", heldAfterwards)
        .build();
}

} // namespace

ManipulatorLayer::~ManipulatorLayer() {
    if (holder.empty()) {
        return;
    }
    // Nobody would tell the manipulator of the release.
    try {
        passOn(holder, {{"type", StringAttribute("keyPress")}, {"key", StringAttribute("Escape")}});
    } catch (...) {
        // What hears of the end may fail; there is nobody to tell it to.
    }
}

void ManipulatorLayer::draw() {
    const ViewerPlugin::ViewportHost view = viewport();
    if (!isGLReady() || view.getNumberOfActiveManipulators() == 0) {
        return;
    }
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
    const DepthClamp clamp;
    for (std::uint32_t i = 0; i < view.getNumberOfActiveManipulators(); ++i) {
        ManipulatorHost(view.getActiveManipulatorByIndex(i).host).draw();
    }
}

void ManipulatorLayer::pickerDraw(const ViewerPlugin::PickRegion& /*region*/,
                                  const GroupAttribute& /*excluded*/) {
    const ViewerPlugin::ViewportHost view = viewport();
    const auto* sceneViewport = ViewerPlugin::pluginCast<SceneViewport>(host.getViewport());
    if (!isGLReady() || (sceneViewport && sceneViewport->isBeingPicked())) {
        return;
    }
    const DepthClamp clamp;
    for (std::uint32_t i = 0; i < view.getNumberOfActiveManipulators(); ++i) {
        const ManipulatorHost manipulator(view.getActiveManipulatorByIndex(i).host);
        const StringAttribute name(manipulator.getPluginName());
        const std::uint64_t id = host.addPickableObject(GroupAttribute{{"manipulator", name}});
        for (std::uint32_t j = 0; j < manipulator.getNumberOfManipulatorHandles(); ++j) {
            host.addPickableObject(GroupAttribute{
                {"manipulator", name},
                {"handle", StringAttribute(manipulator.getManipulatorHandleName(j))}});
        }
        manipulator.pickerDraw(id);
    }
}

ManipulatorLayer::Place ManipulatorLayer::find(int x, int y) const {
    const ViewerPlugin::ViewportHost view = viewport();
    if (view.getNumberOfActiveManipulators() == 0 || x < 0 || y < 0 || x >= view.getWidth() ||
        y >= view.getHeight()) {
        return {};
    }
    const GroupAttribute picked = host.getPickedObjects({x, y, 1, 1}, false);
    if (picked.getNumberOfChildren() == 0) {
        return {};
    }
    const GroupAttribute object(picked.getChildByIndex(0));
    return {StringAttribute(object.getChildByName("manipulator")).getValue(""),
            StringAttribute(object.getChildByName("handle")).getValue("")};
}

void ManipulatorLayer::setMarked(const Place& place, bool isMarked) const {
    const Triple manipulator = viewport().getActiveManipulator(place.manipulator);
    if (!manipulator) {
        return;
    }
    if (const Triple handle =
            ManipulatorHost(manipulator.host).getManipulatorHandle(place.handle)) {
        ViewerPlugin::ManipulatorHandleHost(handle.host).setMarked(isMarked);
    }
}

void ManipulatorLayer::setHovered(const Place& place) {
    if (place != hovered) {
        setMarked(std::exchange(hovered, place), false);
        viewport().setDirty(true);
    }
    // Also the same one again: it may be another object of that name by now.
    setMarked(hovered, true);
}

void ManipulatorLayer::hover(bool isHovering, int x, int y) {
    if (holder.empty()) {
        setHovered(isHovering ? find(x, y) : Place{});
    }
}

bool ManipulatorLayer::event(const GroupAttribute& group) {
    const auto event = ViewportEvent::parse(group);
    if (!event) {
        return false;
    }
    const bool isRelease =
        event->type == ViewportEvent::Type::MouseRelease && event->button == heldButton;
    if (isPassingOn) {
        // From within what the manipulator does, which has no use for another one now.
        if (isRelease && !holder.empty()) {
            lateRelease = group;
        }
        return !event->isKey();
    }
    if (!holder.empty() && !lateRelease && event->type == ViewportEvent::Type::MouseMove &&
        !isHeld(event->buttons, heldButton)) {
        lateRelease = releaseAt(lastOfPointer, heldButton, group.getChildByName("buttons"));
    }
    catchUp();
    if (holder.empty()) {
        return event->type == ViewportEvent::Type::MousePress && press(group, *event);
    }
    if (!event->isKey()) {
        lastOfPointer = group;
    }
    const bool isHandled = passOn(isRelease ? std::exchange(holder, "") : holder, group);
    catchUp();
    // The mouse is the manipulator's, also where it has no use for it.
    return isHandled || !event->isKey();
}

bool ManipulatorLayer::press(const GroupAttribute& group, const ViewportEvent& press) {
    setHovered(find(press.x, press.y));
    if (hovered.manipulator.empty()) {
        return false;
    }
    holder = hovered.manipulator;
    heldButton = press.button;
    lastOfPointer = group;
    if (!passOn(holder, group)) {
        holder.clear();
        lateRelease = {};
        return false;
    }
    catchUp();
    return true;
}

bool ManipulatorLayer::passOn(const std::string& manipulator, const GroupAttribute& group) {
    const RaisedFlag passingOn(isPassingOn);
    const Triple found = viewport().getActiveManipulator(manipulator);
    return found && ManipulatorHost(found.host).event(group);
}

void ManipulatorLayer::catchUp() {
    if (lateRelease) {
        const GroupAttribute release = std::exchange(lateRelease, {});
        passOn(std::exchange(holder, ""), release);
    }
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::ManipulatorLayer, "ManipulatorLayer");
