#include "manipulator/gizmo.h"

#include "camera/camerapose.h"
#include "manipulator/dragmath.h"
#include "manipulator/matrices.h"
#include "manipulator/pictureof.h"
#include "scene/raisedflag.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace Bundled {

namespace {

constexpr double kLengthPx = 100.0;
/// How many steps there are, at most, in the gizmo's length.
constexpr double kStepsInLength = 5.0;
/// An axis is of no use that points so nearly at the camera, nor a plane that is seen so nearly
/// from its edge: cosines of the angle to where the camera looks.
constexpr double kHeadOn = 0.985;
constexpr double kEdgeOn = 0.10;

/// Turns x to the axis, and keeps the order of the others.
Imath::M44d turnToAxis(int axis) {
    Imath::M44d matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            matrix[row][column] = column == (axis + row) % 3 ? 1.0 : 0.0;
        }
    }
    return matrix;
}

} // namespace

Gizmo::Gizmo(ViewerPlugin::ManipulatorHost manipulatorHost, std::span<const GizmoPart> gizmoParts)
    : ManipulatorPlugin(manipulatorHost), axesId(ViewerPlugin::optionId("axes")),
      snapStepId(ViewerPlugin::optionId("snapStep")), readoutId(ViewerPlugin::optionId("readout")),
      parts(gizmoParts) {
    for (const GizmoPart& part : parts) {
        const ViewerPlugin::Triple added = host.addManipulatorHandle(part.handlePlugin, part.name);
        if (part.axis >= 0) {
            ViewerPlugin::ManipulatorHandleHost(added.host)
                .setLocalXform(toAttribute(turnToAxis(part.axis)));
        }
    }
}

bool Gizmo::matches(const GroupAttribute& locationAttributes) {
    const std::string type =
        VlAttribute::StringAttribute(locationAttributes.getChildByName("type")).getValue();
    return type != "error" && type != "warning" &&
           (!type.empty() || GroupAttribute(locationAttributes.getChildByName("xform")));
}

ViewerPlugin::ManipulatorHandleHost Gizmo::handle(std::size_t index) const {
    return ViewerPlugin::ManipulatorHandleHost(
        host.getManipulatorHandleByIndex(static_cast<std::uint32_t>(index)).host);
}

std::string Gizmo::firstLocation() const {
    return host.getLocationPaths().getValue("");
}

Imath::M44d Gizmo::firstPose() const {
    const ViewerPlugin::ViewerDelegateHost delegate(viewport().getViewerDelegate().host);
    return CameraPose::rigid(toMatrix(delegate.getWorldXform(firstLocation())));
}

Imath::V3d Gizmo::centre() const {
    return toMatrix(host.calculateXform()).translation();
}

Imath::M44d Gizmo::axes() const {
    Imath::M44d matrix;
    if (isLocal) {
        matrix = firstPose();
        matrix[3][0] = matrix[3][1] = matrix[3][2] = 0.0;
    }
    return matrix;
}

double Gizmo::usualStep(double length) const {
    return roundStep(length / kStepsInLength);
}

GizmoPlace Gizmo::place(const PictureSpace& space) const {
    const Imath::V3d middle = centre();
    return {middle, axes(), kLengthPx * space.pixelLengthAt(middle)};
}

bool Gizmo::isUsable(const GizmoPart& part, const GizmoPlace& place, const PictureSpace& space) {
    const Imath::V3d sight = space.sightTo(place.centre);
    switch (part.motion) {
    case Motion::Axis:
        return std::abs(sight.dot(place.axis(part.axis))) < kHeadOn;
    case Motion::Plane:
        return std::abs(sight.dot(place.normal(part.axis))) > kEdgeOn;
    case Motion::Ring:
    case Motion::Picture:
        break;
    }
    return true;
}

template <typename Use>
void Gizmo::eachHandle(Use use) const {
    const PictureSpace space = pictureOf(viewport());
    const GizmoPlace now = place(space);
    if (now.length <= 0.0) {
        return;
    }
    Imath::M44d matrix;
    matrix.setScale(now.length);
    matrix *= now.axes;
    matrix *= Imath::M44d().setTranslation(now.centre);
    host.setXform(toAttribute(matrix));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (isUsable(parts[i], now, space)) {
            use(handle(i), i);
        }
    }
}

void Gizmo::draw() {
    if (current) {
        current->draw(viewport());
    }
    eachHandle([](const ViewerPlugin::ManipulatorHandleHost& each, std::size_t) { each.draw(); });
}

void Gizmo::pickerDraw(std::uint64_t pickerId) {
    eachHandle([pickerId](const ViewerPlugin::ManipulatorHandleHost& each, std::size_t index) {
        each.pickerDraw(pickerId + 1 + index);
    });
}

bool Gizmo::event(const GroupAttribute& group) {
    const auto event = Event::parse(group);
    // What hears of a value may bring the next event before this one is through: the drag that it
    // would move or end is in use.
    if (!event || isResponding) {
        return false;
    }
    const RaisedFlag responding(isResponding);
    return respond(*event);
}

bool Gizmo::respond(const Event& event) {
    const bool isLeft = event.button == Event::Button::Left;
    if (!current) {
        return event.type == Event::Type::MousePress && isLeft && press(event);
    }
    if (event.type == Event::Type::MouseMove) {
        moveTo(event);
    } else if (event.type == Event::Type::MouseRelease && isLeft) {
        // A click that goes nowhere is no edit.
        if (Imath::V2i(event.x, event.y) != last) {
            moveTo(event);
        }
        if (current) {
            end(host.isEditable());
        }
    } else if (event.type == Event::Type::KeyPress && event.key == "Escape") {
        end(false);
    } else if (event.isKey()) {
        return false;
    }
    return true;
}

bool Gizmo::press(const Event& event) {
    if (!host.isEditable()) {
        return false;
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const ViewerPlugin::ManipulatorHandleHost each = handle(i);
        if (!each.isMarked()) {
            continue;
        }
        const PictureSpace space = pictureOf(viewport());
        const GizmoPlace now = place(space);
        current = beginDrag({parts[i], now, space.rayAt({event.x, event.y}), space});
        if (!current) {
            return false;
        }
        engaged = i;
        engagedLength = now.length;
        last = {event.x, event.y};
        each.setEngaged(true);
        viewport().setDirty(true);
        return true;
    }
    return false;
}

void Gizmo::moveTo(const Event& event) {
    const double step = !event.modifiers.control ? 0.0
                        : snapStep > 0.0         ? snapStep
                                                 : usualStep(engagedLength);
    last = {event.x, event.y};
    if (!host.isEditable() || !current->moveTo(pictureOf(viewport()).rayAt(last), step)) {
        end(false);
    }
    viewport().setDirty(true);
}

void Gizmo::end(bool isKept) {
    handle(engaged).setEngaged(false);
    viewport().setDirty(true);
    const std::unique_ptr<Drag> ended = std::move(current);
    if (isKept) {
        ended->finish();
    }
}

void Gizmo::setOption(std::uint64_t optionId, const Attribute& value) {
    if (optionId == axesId) {
        isLocal = VlAttribute::StringAttribute(value).getValue() == "local";
        viewport().setDirty(true);
    } else if (optionId == snapStepId) {
        snapStep = VlAttribute::FloatAttribute(value).getValue(0.0f);
    }
}

VlAttribute::Attribute Gizmo::getOption(std::uint64_t optionId) {
    if (optionId == axesId) {
        return VlAttribute::StringAttribute(isLocal ? "local" : "world");
    }
    if (optionId == snapStepId) {
        return VlAttribute::FloatAttribute(static_cast<float>(snapStep));
    }
    return optionId == readoutId && current ? current->getReadout() : Attribute();
}

} // namespace Bundled
