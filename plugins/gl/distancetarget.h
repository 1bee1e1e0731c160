#pragma once

#include "gl/glname.h"

namespace Bundled {

/// Four bytes a pixel beside the framebuffer that is bound, for what one pass over a picture leaves
/// to the next. Grows with the largest picture. [gl-current]
class DistanceTarget {
public:
    /// Binds the target, at least in this size. False when the driver can't: then nothing has
    /// changed.
    bool begin(int neededWidth, int neededHeight);
    /// Binds what was bound at `begin`.
    void finish() const;
    [[nodiscard]] GLuint getPicture() const noexcept { return picture.get(); }

private:
    int width = 0;
    int height = 0;
    GLint outer = 0;
    GLFramebuffer framebuffer;
    GLTexture picture;
};

} // namespace Bundled
