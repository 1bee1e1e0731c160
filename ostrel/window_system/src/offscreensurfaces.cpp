#include "offscreensurfaces.h"

int OffscreenSurfaces::add(int width, int height) {
    surfaces[--lastId] = {width, height, {}};
    return lastId;
}

OffscreenSurfaces::Surface* OffscreenSurfaces::find(std::intptr_t id) {
    const auto found = surfaces.find(id);
    return found == surfaces.end() ? nullptr : &found->second;
}
