#pragma once

#include "manipulator/handlepainter.h"
#include "manipulator/picturespace.h"
#include "viewer_api/plugin/ManipulatorHandlePlugin.h"

#include <memory>

namespace Bundled {

/// A handle that is a shape. Its colour tells which of the manipulator's axes its own x axis lies
/// along, by its local transform; one without has no axis, and no colour. By the flags of its host
/// it shows that the pointer is over it (marked) or that it is being dragged (engaged); it is grey
/// where the manipulator may not edit.
class ShapeHandle : public ViewerPlugin::ManipulatorHandlePlugin {
public:
    using ManipulatorHandlePlugin::ManipulatorHandlePlugin;

    void draw() override;
    void pickerDraw(std::uint64_t pickerId) override;

protected:
    /// In the handle's own space, in lengths of the gizmo.
    [[nodiscard]] virtual const Shape& shape() const = 0;
    /// What takes the mouse: more than is seen, as hands are not that exact.
    [[nodiscard]] virtual const Shape& graspedShape() const = 0;
    /// Where the shape is.
    [[nodiscard]] virtual Imath::M44d shapeToWorld() const;
    [[nodiscard]] virtual float opacity() const { return 1.0f; }
    /// Of that of the shape, what is left of it where it lies behind its own origin, seen from the
    /// camera. Where that is less than 1 it is not grasped.
    [[nodiscard]] virtual float opacityBehind() const { return 1.0f; }

    /// How far the handle is there as it is seen, its shape being where `shapeToWorld` has it; see
    /// presence.h. An engaged one is wholly there.
    [[nodiscard]] virtual double presence(const PictureSpace& /*picture*/,
                                          const Imath::M44d& /*shapeToWorld*/) const {
        return 1.0;
    }

    /// Of the manipulator's axes the one that the handle lies along, or less than 0.
    [[nodiscard]] int axis() const;

private:
    [[nodiscard]] HandlePainter& painting();

    std::shared_ptr<HandlePainter> painter;
};

} // namespace Bundled
