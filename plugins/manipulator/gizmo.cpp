#include "manipulator/gizmo.h"

#include "camera/camerapose.h"
#include "gl/glcontext.h"
#include "manipulator/dragmath.h"
#include "manipulator/matrices.h"
#include "manipulator/pictureof.h"
#include "manipulator/presence.h"
#include "manipulator/text.h"
#include "scene/number.h"
#include "scene/raisedflag.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace Bundled {

namespace {

constexpr double kLengthPx = 100.0;
/// How many steps there are, at most, in the gizmo's length.
constexpr double kStepsInLength = 5.0;

/// Of the text beside the pointer: the height of its digits, how far it is from the pointer, and
/// the dark edge around its strokes, in heights.
constexpr int kTextPx = 13;
constexpr int kTextOffsetPx = 14;
constexpr int kTextMarginPx = 5;
constexpr float kTextEdge = 0.11f;
constexpr std::array<float, 4> kTextColor = {0.95f, 0.95f, 0.92f, 1.0f};
constexpr std::array<float, 4> kTextEdgeColor = {0.012f, 0.012f, 0.015f, 1.0f};

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

/// What is written of a drag's readout: along axes, only the numbers that the part can change.
std::vector<double> numbersOf(const GizmoPart& part, const VlAttribute::DoubleAttribute& readout) {
    const auto all = readout.getNearestSample(0.0f);
    std::vector<double> numbers;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool isPartsAxis = static_cast<int>(i) == part.axis;
        if (all.size() != 3 || (part.motion == Motion::Axis && isPartsAxis) ||
            (part.motion == Motion::Plane && !isPartsAxis) || part.motion == Motion::Picture) {
            numbers.push_back(all[i]);
        }
    }
    return numbers;
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
    if (current ? isEngagedLocal : isLocal) {
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

double Gizmo::presence(const GizmoPart& part, const GizmoPlace& place, const PictureSpace& space) {
    switch (part.motion) {
    case Motion::Axis:
        return axisPresence(space, place.centre, place.axis(part.axis));
    case Motion::Plane:
        return planePresence(space, place.centre, place.normal(part.axis));
    case Motion::Ring:
    case Motion::Picture:
        break;
    }
    return 1.0;
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
    // What fades comes last: one sees the others through it.
    for (const bool isFading : {false, true}) {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if ((presence(parts[i], now, space) < 1.0) == isFading) {
                use(handle(i), i);
            }
        }
    }
}

void Gizmo::draw() {
    const bool isDragShown = current && isGLReady();
    // The handles hold it too.
    const auto painter = isDragShown ? HandlePainter::share() : nullptr;
    if (isDragShown) {
        current->draw(*painter, viewport());
    }
    eachHandle([](const ViewerPlugin::ManipulatorHandleHost& each, std::size_t) { each.draw(); });
    if (isDragShown) {
        drawReadout(*painter);
    }
}

void Gizmo::drawReadout(HandlePainter& painter) const {
    const std::string text =
        readoutText(numbersOf(parts[engaged], VlAttribute::DoubleAttribute(current->getReadout())),
                    current->unit());
    const PictureSpace space = pictureOf(viewport());
    // Above the pointer, to the right, and within the picture.
    const ViewerPlugin::ViewportHost view = viewport();
    const int widthPx = static_cast<int>(std::ceil(kTextPx * textWidth(text)));
    const auto within = [](int value, int least, int most) {
        return std::max(least, std::min(value, most));
    };
    const Imath::V2i corner(
        within(last.x + kTextOffsetPx, kTextMarginPx, view.getWidth() - widthPx - kTextMarginPx),
        within(last.y - kTextOffsetPx, kTextMarginPx + kTextPx, view.getHeight() - kTextMarginPx));
    const auto origin = onPlane(space.rayAt(corner), place(space).centre, space.forward());
    if (!origin) {
        return;
    }
    const double height = kTextPx * space.pixelLengthAt(*origin);
    Imath::M44d matrix = Imath::M44d().setTranslation(*origin);
    for (int i = 0; i < 3; ++i) {
        matrix[0][i] = height * space.right()[i];
        matrix[1][i] = height * space.up()[i];
    }
    painter.drawOver(textShape(text, kTextEdge), matrix, view, kTextEdgeColor);
    painter.drawOver(textShape(text), matrix, view, kTextColor);
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
        if (now.length <= 0.0 || presence(parts[i], now, space) < kGraspedPresence) {
            return false; // nobody sees it
        }
        auto begun = beginDrag({parts[i], now, space.rayAt({event.x, event.y}), space});
        if (!begun) {
            return false;
        }
        current = std::move(begun);
        isEngagedLocal = isLocal;
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
        const double step = number(value).value_or(0.0);
        snapStep = std::isfinite(step) ? std::max(0.0, step) : 0.0;
    }
}

VlAttribute::Attribute Gizmo::getOption(std::uint64_t optionId) {
    if (optionId == axesId) {
        return VlAttribute::StringAttribute(isLocal ? "local" : "world");
    }
    if (optionId == snapStepId) {
        return VlAttribute::DoubleAttribute(snapStep);
    }
    return optionId == readoutId && current ? current->getReadout() : Attribute();
}

} // namespace Bundled
