#pragma once

#include "gl/glname.h"
#include "gl/picturefile.h"

#include <string>

namespace Bundled {

/// A picture file in the graphics card's memory: sRGB, filtered over mip levels, repeating, its
/// first row at the top. [gl-current]
class GpuTexture {
public:
    /// A file that can't be read leaves no texture; `getError` says why.
    explicit GpuTexture(const std::string& file);
    /// A picture that is read already.
    explicit GpuTexture(const Picture& picture);

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(texture); }
    [[nodiscard]] GLuint get() const noexcept { return texture.get(); }
    /// Whether some of the picture is not opaque.
    [[nodiscard]] bool hasAlpha() const noexcept { return alpha; }
    [[nodiscard]] const std::string& getError() const noexcept { return error; }

private:
    GLTexture texture;
    bool alpha = false;
    std::string error;
};

} // namespace Bundled
