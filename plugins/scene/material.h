#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <array>
#include <string>

namespace Bundled {

/// What a location's `material` group says about shading. Colours are linear.
struct Material {
    std::array<float, 3> baseColor{0.62f, 0.62f, 0.62f};
    /// 0 (invisible) to 1.
    float opacity = 1.0f;
    /// Whether polygons show their back sides as well.
    bool isDoubleSided = true;
    /// A picture file in sRGB, or a name that stands for `textureData`; empty for none.
    std::string texture;
    /// The content of a picture file; null for none. Equal contents have one name.
    VlAttribute::StringAttribute textureData;

    /// A null group, and what it does not say, gives the defaults: a neutral grey. With a texture
    /// the default base colour is white, so that the picture shows as it is.
    static Material fromAttributes(const VlAttribute::GroupAttribute& material);

    friend bool operator==(const Material&, const Material&) = default;
};

} // namespace Bundled
