#include "VlWindowSystem/Offscreen.h"

#include "eglwindowsystem.h"

#include <stdexcept>
#include <string>

namespace {

void checkSize(int width, int height) {
    if (width < 1 || height < 1 || width > kMaximumOffscreenSize ||
        height > kMaximumOffscreenSize) {
        throw std::runtime_error("An off-screen surface can't be " + std::to_string(width) + "x" +
                                 std::to_string(height) + " pixels: each must be from 1 to " +
                                 std::to_string(kMaximumOffscreenSize));
    }
}

OffscreenSurfaces::Surface& findSurface(int id) {
    auto* const surface = EglWindowSystem::get().findOffscreen(id);
    if (!surface) {
        throw std::runtime_error("There is no off-screen surface " + std::to_string(id));
    }
    return *surface;
}

} // namespace

void openOffscreenAhead() {
    EglWindowSystem::get().openOffscreenAhead();
}

void waitForOffscreenOpening() {
    EglWindowSystem::get().waitForOpening();
}

int createOffscreen(int width, int height) {
    checkSize(width, height);
    return EglWindowSystem::get().createOffscreen(width, height);
}

void resizeOffscreen(int id, int width, int height) {
    const OffscreenSurfaces::Surface& surface = findSurface(id);
    checkSize(width, height);
    if (surface.width == width && surface.height == height) {
        return;
    }
    if (!EglWindowSystem::get().resizeOffscreen(id, width, height)) {
        throw std::runtime_error("Off-screen surface " + std::to_string(id) + " can't be made " +
                                 std::to_string(width) + "x" + std::to_string(height) + " pixels");
    }
}

void destroyOffscreen(int id) {
    findSurface(id);
    EglWindowSystem::get().destroyOffscreen(id);
}

const Image& readPixels(int id) {
    OffscreenSurfaces::Surface& surface = findSurface(id);
    if (surface.shown.rgba.empty()) {
        surface.shown = {surface.width, surface.height,
                         std::vector<std::uint8_t>(static_cast<std::size_t>(surface.width) *
                                                   static_cast<std::size_t>(surface.height) * 4)};
    }
    return surface.shown;
}
