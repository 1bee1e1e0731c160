#pragma once

#include "gl/glname.h"
#include "viewer_api/plugin/PickRegion.h"

#include <algorithm>

namespace Bundled {

/// Lets drawing and clearing be cut down to regions of the window, and puts back what was before.
/// [gl-current]
class ScissorGuard {
public:
    explicit ScissorGuard(int windowHeight) : height(windowHeight) {
        glGetIntegerv(GL_SCISSOR_BOX, box);
        wasEnabled = glIsEnabled(GL_SCISSOR_TEST);
        glEnable(GL_SCISSOR_TEST);
    }
    ScissorGuard(const ScissorGuard&) = delete;
    ScissorGuard& operator=(const ScissorGuard&) = delete;
    ~ScissorGuard() {
        glScissor(box[0], box[1], box[2], box[3]);
        if (!wasEnabled) {
            glDisable(GL_SCISSOR_TEST);
        }
    }

    /// In pixels from the top left. A region of no size lets nothing through.
    void cutTo(const ViewerPlugin::PickRegion& region) const {
        glScissor(region.x, height - region.y - region.height, std::max(0, region.width),
                  std::max(0, region.height));
    }

private:
    const int height;
    GLint box[4] = {};
    GLboolean wasEnabled = GL_FALSE;
};

} // namespace Bundled
