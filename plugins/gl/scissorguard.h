#pragma once

#include "gl/capabilityguard.h"
#include "viewer_api/plugin/PickRegion.h"

#include <algorithm>

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
        glScissor(region.x, windowHeight - region.y - region.height, std::max(0, region.width),
                  std::max(0, region.height));
    }

private:
    const CapabilityGuard test{GL_SCISSOR_TEST};
    GLint box[4] = {};
};

} // namespace Bundled
