#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <optional>

namespace ViewerPlugin {

/// A rectangle of pixels; the origin is the window's top left, y points down.
struct PickRegion {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const PickRegion&, const PickRegion&) = default;
};

/// What a plug-in that picks by itself found.
struct PickResult {
    /// Id in decimal to picked attribute.
    VlAttribute::GroupAttribute picked;
    /// Window depth, 0 (near) to 1 (far), of a region of one pixel.
    std::optional<float> depth;
};

/// A pick's result in the form of the tables' customPick entries.
inline int writePickResult(std::optional<PickResult> result, VlAttributeStruct** picked,
                           float* depth) {
    if (!result) {
        return 0;
    }
    *picked = result->picked.detach();
    if (depth && result->depth) {
        *depth = *result->depth;
    }
    return 1;
}

} // namespace ViewerPlugin
