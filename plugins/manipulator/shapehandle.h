#pragma once

#include "manipulator/handlepainter.h"
#include "viewer_api/plugin/ManipulatorHandlePlugin.h"

#include <memory>

namespace Bundled {

/// A handle that is a shape. Its colour tells which of the manipulator's axes its own x axis lies
/// along, and, by the flags of its host, that the pointer is over it (marked) or that it is being
/// dragged (engaged); grey where the manipulator may not edit.
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
    /// For a handle that is not an axis's, less than 0.
    [[nodiscard]] virtual int axis() const;
    [[nodiscard]] virtual float opacity() const { return 1.0f; }

private:
    std::shared_ptr<HandlePainter> painter;
};

} // namespace Bundled
