#pragma once

#include "gl/capabilityguard.h"
#include "viewer_api/plugin/PickRegion.h"

#include <algorithm>
#include <cstdint>

namespace Bundled {

/// Lets drawing and clearing be cut down to a part of the picture, and puts back what was before.
/// [gl-current]
class ScissorGuard {
public:
    ScissorGuard() {
        glGetIntegerv(GL_SCISSOR_BOX, box);
        glEnable(GL_SCISSOR_TEST);
    }
    ScissorGuard(const ScissorGuard&) = delete;
    ScissorGuard& operator=(const ScissorGuard&) = delete;
    ~ScissorGuard() { glScissor(box[0], box[1], box[2], box[3]); }

    /// In pixels from the top left of a window of this height. A region of no size lets nothing
    /// through.
    void cutTo(const ViewerPlugin::PickRegion& region, int windowHeight) const {
        // Farther than any window, and near enough for drivers to reckon with.
        static constexpr std::int64_t kFarthest = 1 << 20;
        const auto clamped = [](std::int64_t place) {
            return static_cast<GLint>(std::clamp(place, -kFarthest, kFarthest));
        };
        const GLint left = clamped(region.x);
        const GLint right = clamped(std::int64_t{region.x} + region.width);
        const GLint top = clamped(std::int64_t{windowHeight} - region.y);
        const GLint bottom = clamped(std::int64_t{windowHeight} - region.y - region.height);
        glScissor(left, bottom, std::max(0, right - left), std::max(0, top - bottom));
    }

private:
    const CapabilityGuard test{GL_SCISSOR_TEST};
    GLint box[4] = {};
};

} // namespace Bundled
