#pragma once

#include "gl/glname.h"
#include "gl/shaderprogram.h"

namespace Bundled {

/// The picture that layers draw into: linear light in half floats, several samples a pixel. It is
/// brought to the window's framebuffer at the end, averaged and encoded as sRGB. [gl-current]
class RenderTarget {
public:
    /// Binds the target, in this size; makes or remakes it when needed. False when the driver
    /// can't: then the framebuffer that was bound stays so, and colours are not encoded.
    bool begin(int width, int height);

    /// Writes the picture to the framebuffer that was bound at `begin`, and binds that again.
    void finish();

    /// Releases everything.
    void reset();

private:
    bool allocate(int newWidth, int newHeight, int newSamples);

    int width = 0;
    int height = 0;
    bool isUsable = false;
    GLint outer = 0;
    GLint samples = 0; ///< that `encode` is made for
    GLFramebuffer multisampled;
    GLTexture color;
    GLRenderbuffer depth;
    GLVertexArray corners;
    ShaderProgram encode;
};

} // namespace Bundled
