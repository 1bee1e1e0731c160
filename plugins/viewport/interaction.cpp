#include "viewport/interaction.h"

#include "delegate/scenedelegate.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace Bundled {

namespace {

/// A hand that clicks shakes.
constexpr int kClickPx = 3;
/// Dolly factor of a notch of the wheel, and of a drag over the height of the window.
constexpr double kWheelDolly = 1.15;
constexpr double kDragDolly = 8.0;

Imath::V2i pixelOf(const ViewerPlugin::ViewportEvent& event) {
    return {event.x, event.y};
}

bool isHeld(const ViewerPlugin::ViewportEvent::Buttons& buttons,
            ViewerPlugin::ViewportEvent::Button button) {
    using Button = ViewerPlugin::ViewportEvent::Button;
    return button == Button::Left     ? buttons.left
           : button == Button::Middle ? buttons.middle
                                      : buttons.right;
}

Imath::Box3d boxOf(const VlAttribute::DoubleAttribute& bounds) {
    const auto values = bounds.getNearestSample(0.0f);
    Imath::Box3d box;
    if (values.size() == 6 &&
        std::all_of(values.begin(), values.end(), [](double v) { return std::abs(v) < 1e300; })) {
        box = {{values[0], values[2], values[4]}, {values[1], values[3], values[5]}};
    }
    return box;
}

} // namespace

bool Interaction::event(const Event& event) {
    switch (event.type) {
    case Event::Type::MousePress:
        press(event);
        return true;
    case Event::Type::MouseMove:
        if (hold && !isHeld(event.buttons, hold->press.button)) {
            hold.reset(); // released where nobody told
        }
        move(event);
        return hold.has_value();
    case Event::Type::MouseRelease:
        return release(event);
    case Event::Type::Wheel:
        camera.dolly(pixelOf(event), std::pow(kWheelDolly, event.delta));
        return true;
    case Event::Type::KeyPress:
        if (event.key == "f" && event.modifiers == Event::Modifiers{}) {
            frame();
            return true;
        }
        return false;
    case Event::Type::KeyRelease:
        break;
    }
    return false;
}

Interaction::Drag Interaction::dragOf(const Event& press) {
    if (press.button == Event::Button::Right) {
        return Drag::Dolly;
    }
    if (press.button == Event::Button::Left && press.modifiers.control) {
        return Drag::Rectangle;
    }
    return press.button == Event::Button::Middle || press.modifiers.shift ? Drag::Pan : Drag::Orbit;
}

void Interaction::press(const Event& event) {
    // A second button during a drag changes nothing; the same one begins anew, as its release went
    // to another window.
    if (!hold || hold->press.button == event.button) {
        hold = Hold{event, pixelOf(event)};
    }
}

void Interaction::move(const Event& event) {
    if (!hold) {
        return;
    }
    const Imath::V2i begin = pixelOf(hold->press);
    const Imath::V2i now = pixelOf(event);
    if (!hold->isDrag &&
        std::max(std::abs(now.x - begin.x), std::abs(now.y - begin.y)) <= kClickPx) {
        return;
    }
    hold->isDrag = true;
    const Imath::V2i last = std::exchange(hold->last, now);
    switch (dragOf(hold->press)) {
    case Drag::Orbit:
        camera.orbit(last, now);
        break;
    case Drag::Pan:
        camera.pan(last, now);
        break;
    case Drag::Dolly: {
        const double heights = static_cast<double>((now.x - last.x) - (now.y - last.y)) /
                               std::max(1, host.getHeight());
        camera.dolly(begin, std::pow(kDragDolly, heights));
        break;
    }
    case Drag::Rectangle:
        host.setDirty(true);
        break;
    }
}

bool Interaction::release(const Event& event) {
    if (!hold || event.button != hold->press.button) {
        return hold.has_value();
    }
    move(event);
    const auto rectangle = getRectangle();
    const Hold ended = *hold;
    hold.reset();
    const Event::Modifiers& modifiers = ended.press.modifiers;
    if (rectangle) {
        selector.select(*rectangle,
                        modifiers.shift ? Selector::Mode::Add : Selector::Mode::Replace);
    } else if (!ended.isDrag && ended.press.button == Event::Button::Left) {
        selector.select({ended.press.x, ended.press.y, 1, 1},
                        modifiers.control ? Selector::Mode::Toggle
                        : modifiers.shift ? Selector::Mode::Add
                                          : Selector::Mode::Replace);
    }
    return true;
}

std::optional<ViewerPlugin::PickRegion> Interaction::getRectangle() const {
    if (!hold || !hold->isDrag || dragOf(hold->press) != Drag::Rectangle) {
        return std::nullopt;
    }
    // The host keeps any size that it is told.
    const int width = std::max(0, host.getWidth());
    const int height = std::max(0, host.getHeight());
    const int left = std::clamp(std::min(hold->press.x, hold->last.x), 0, width);
    const int right = std::clamp(std::max(hold->press.x, hold->last.x) + 1, 0, width);
    const int top = std::clamp(std::min(hold->press.y, hold->last.y), 0, height);
    const int bottom = std::clamp(std::max(hold->press.y, hold->last.y) + 1, 0, height);
    return ViewerPlugin::PickRegion{left, top, right - left, bottom - top};
}

void Interaction::frame() const {
    const ViewerPlugin::ViewerDelegateHost delegate(host.getViewerDelegate().host);
    std::vector<std::string> paths;
    const VlAttribute::StringAttribute selected = delegate.getSelectedLocations();
    for (const std::string_view path : selected.getNearestSample(0.0f)) {
        paths.emplace_back(path);
    }
    Imath::Box3d box = paths.empty() ? Imath::Box3d() : boxOf(delegate.computeMergedExtent(paths));
    camera.frame(box.isEmpty() ? getSceneBounds() : box);
}

Imath::Box3d Interaction::getSceneBounds() const {
    const ViewerPlugin::Triple delegate = host.getViewerDelegate();
    Imath::Box3d box;
    if (auto* scene = ViewerPlugin::pluginCast<SceneDelegate>(delegate)) {
        scene->getMirror().update();
        box = scene->getMirror().getBounds();
    }
    const std::vector<std::string> root{"/root"};
    return box.isEmpty()
               ? boxOf(ViewerPlugin::ViewerDelegateHost(delegate.host).computeMergedExtent(root))
               : box;
}

} // namespace Bundled
