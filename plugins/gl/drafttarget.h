#pragma once

#include "gl/glname.h"

namespace Bundled {

/// What layers draw a draft into: one sample a pixel, encoded as sRGB by the driver as it is
/// written, so that layers write linear light here as well. [gl-current]
class DraftTarget {
public:
    /// Binds the target, in this size, filled with the stored backdrop. False when the driver
    /// can't: then nothing has changed.
    bool begin(int width, int height);

    /// Whether no backdrop is stored in this size: draw it then, and store it.
    [[nodiscard]] bool needsBackdrop() const noexcept { return !hasBackdrop; }
    void storeBackdrop();

    /// Copies the picture to the framebuffer that was bound at `begin`, and binds that again.
    void finish();

    /// Releases everything.
    void reset();

private:
    bool allocate(int newWidth, int newHeight);

    int width = 0;
    int height = 0;
    bool isUsable = false;
    bool hasBackdrop = false;
    GLint outer = 0;
    GLFramebuffer framebuffer;
    GLRenderbuffer color;
    GLRenderbuffer depth;
    GLFramebuffer backdropFramebuffer;
    GLRenderbuffer backdrop;
};

} // namespace Bundled
