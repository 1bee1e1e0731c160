#pragma once

#include "gl/glname.h"

namespace Bundled {

/// A rectangle of pixels, in GL's window coordinates.
struct PixelBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Two values a pixel, beside the framebuffer that is bound: with as many samples as that has, and
/// its very depths, so that what was drawn there hides what is drawn here. Grows with the largest
/// picture. [gl-current]
class MaskTarget {
public:
    /// Binds the target, black within `box`, and confines drawing to it. False when the driver
    /// can't: then nothing has changed.
    bool begin(const PixelBox& box);
    /// Whether there are depths to test against.
    [[nodiscard]] bool hasDepth() const noexcept { return depth != 0; }
    /// Averages the samples within the box, and binds what was bound at `begin`.
    void finish();
    /// What was drawn, in red and green, where the box is.
    [[nodiscard]] GLuint getPicture() const noexcept { return picture.get(); }

private:
    bool allocate(int newWidth, int newHeight, int newSamples);
    /// To the bound framebuffer, 0 for none. False when the two don't go together.
    static bool attachDepth(GLuint renderbuffer);

    PixelBox region;
    int width = 0;
    int height = 0;
    /// Of the buffer, which is there once it is needed.
    int samples = 0;
    GLint outerSamples = 0;
    GLint outer = 0;
    GLuint depth = 0;
    GLFramebuffer multisampled;
    GLRenderbuffer color;
    GLFramebuffer resolved;
    GLTexture picture;
};

} // namespace Bundled
