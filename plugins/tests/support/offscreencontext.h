#pragma once

#include "VlWindowSystem/WindowSystem.h"

#include <array>
#include <cstdint>
#include <vector>

/// A context on an off-screen surface, current while the object lives. Where the machine can't make
/// one, `isValid` is false and the test has to be skipped.
class OffscreenContext {
public:
    OffscreenContext(int width, int height);
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;
    ~OffscreenContext();

    [[nodiscard]] bool isValid() const noexcept { return context != nullptr; }

private:
    int surface = 0;
    NativeDeviceContext deviceContext = nullptr;
    NativeGLContext context = nullptr;
};

/// What stands in the bound framebuffer.
class Pixels {
public:
    using Color = std::array<int, 3>;

    static Pixels read(int width, int height);

    /// The origin is the top left.
    [[nodiscard]] Color at(int x, int y) const;
    /// The sum of the three, 0 to 765.
    [[nodiscard]] int brightness(int x, int y) const;

    friend bool operator==(const Pixels&, const Pixels&) = default;

private:
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};
