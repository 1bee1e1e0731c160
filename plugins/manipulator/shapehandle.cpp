#include "manipulator/shapehandle.h"

#include "gl/glcontext.h"
#include "manipulator/matrices.h"
#include "manipulator/pictureof.h"
#include "manipulator/presence.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

namespace {

using Color = std::array<float, 4>;

constexpr Color kAxisColors[] = {
    {0.78f, 0.055f, 0.065f, 1.0f}, {0.18f, 0.50f, 0.04f, 1.0f}, {0.09f, 0.24f, 0.95f, 1.0f}};
constexpr Color kPlainColor = {0.70f, 0.70f, 0.72f, 1.0f};
constexpr Color kMarkedColor = {1.0f, 0.62f, 0.05f, 1.0f};
constexpr Color kEngagedColor = {1.0f, 0.85f, 0.30f, 1.0f};
constexpr Color kReadOnlyColor = {0.20f, 0.20f, 0.21f, 1.0f};

} // namespace

int ShapeHandle::axis() const {
    const auto xform = host.getLocalXform();
    if (!xform) {
        return -1;
    }
    const Imath::M44d local = toMatrix(xform);
    const double* row = local[0];
    return static_cast<int>(
        std::max_element(row, row + 3,
                         [](double a, double b) { return std::abs(a) < std::abs(b); }) -
        row);
}

Imath::M44d ShapeHandle::shapeToWorld() const {
    return toMatrix(host.getCombinedXform());
}

HandlePainter& ShapeHandle::painting() {
    if (!painter) {
        painter = HandlePainter::share();
    }
    return *painter;
}

void ShapeHandle::draw() {
    if (!isGLReady()) {
        return;
    }
    const ViewerPlugin::ManipulatorHost owner = manipulator();
    const ViewerPlugin::ViewportHost viewport(owner.getViewport().host);
    const Imath::M44d matrix = shapeToWorld();
    const double present = host.isEngaged() ? 1.0 : presence(pictureOf(viewport), matrix);
    if (present <= 0.0) {
        return;
    }
    const int which = axis();
    Color color = !owner.isEditable() ? kReadOnlyColor
                  : host.isEngaged()  ? kEngagedColor
                  : host.isMarked()   ? kMarkedColor
                  : which < 0         ? kPlainColor
                                      : kAxisColors[which];
    color[3] = host.isEngaged() || host.isMarked() ? std::max(opacity(), 0.8f) : opacity();
    color[3] *= static_cast<float>(present);
    painting().draw(shape(), matrix, viewport, color, opacityBehind());
}

void ShapeHandle::pickerDraw(std::uint64_t pickerId) {
    if (!isGLReady()) {
        return;
    }
    const ViewerPlugin::ViewportHost viewport(manipulator().getViewport().host);
    const Imath::M44d matrix = shapeToWorld();
    if (presence(pictureOf(viewport), matrix) >= kGraspedPresence) {
        painting().drawId(graspedShape(), matrix, viewport, pickerId, opacityBehind() == 1.0f);
    }
}

} // namespace Bundled
