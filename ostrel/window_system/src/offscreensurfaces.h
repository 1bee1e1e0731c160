#pragma once

#include "VlWindowSystem/Image.h"

#include <cstdint>
#include <map>

/// The off-screen surfaces: sizes, and the pictures that were shown.
class OffscreenSurfaces {
public:
    struct Surface {
        int width = 0;
        int height = 0;
        Image shown; ///< empty until the first swap of this size, or until it is asked for
    };

    int add(int width, int height);
    bool remove(int id) { return surfaces.erase(id) != 0; }
    /// Null when there is none of that id; valid until it is removed.
    [[nodiscard]] Surface* find(std::intptr_t id);

private:
    std::map<std::intptr_t, Surface> surfaces;
    int lastId = 0;
};
