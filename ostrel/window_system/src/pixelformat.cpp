#include "pixelformat.h"

#include <cstdlib>
#include <cstring>
#include <tuple>

namespace {

struct WantedFormat {
    bool mustBeFast = false;
    int colorBits = 0;
    int depthBits = 0;
    int stencilBits = 0;
};

std::optional<WantedFormat> parse(const int* attributes) {
    WantedFormat wanted;
    for (; attributes && *attributes; attributes += 2) {
        const int value = attributes[1];
        switch (attributes[0]) {
        case kPixelFormatDrawToWindow:
        case kPixelFormatSupportOpenGL:
        case kPixelFormatDoubleBuffer:
            break; // of every format
        case kPixelFormatAcceleration:
            wanted.mustBeFast = value == kPixelFormatFullAcceleration;
            break;
        case kPixelFormatPixelType:
            if (value != kPixelFormatTypeRgba) {
                return std::nullopt;
            }
            break;
        case kPixelFormatColorBits:
            wanted.colorBits = value;
            break;
        case kPixelFormatDepthBits:
            wanted.depthBits = value;
            break;
        case kPixelFormatStencilBits:
            wanted.stencilBits = value;
            break;
        default:
            return std::nullopt;
        }
    }
    return wanted;
}

} // namespace

int choosePixelFormat(const EglDisplay& display, std::optional<std::uint32_t> visual,
                      const int* attributes) {
    const auto wanted = parse(attributes);
    if (!wanted) {
        return 0;
    }
    // Smaller is better. Software rendering is no reason to refuse: acceleration is a preference.
    using Rank = std::tuple<bool, int, int, int, int, int>;
    std::optional<Rank> best;
    int chosen = 0;
    for (int format = 1; format <= display.getNumberOfFormats(); ++format) {
        if (!display.supports(format, visual)) {
            continue;
        }
        const auto get = [&](EGLint attribute) { return display.getAttribute(format, attribute); };
        const int red = get(EGL_RED_SIZE);
        const int green = get(EGL_GREEN_SIZE);
        const int blue = get(EGL_BLUE_SIZE);
        const int alpha = get(EGL_ALPHA_SIZE);
        const int depth = get(EGL_DEPTH_SIZE);
        const int stencil = get(EGL_STENCIL_SIZE);
        // A window's visual often has no alpha: its 32 bits are 24 and padding.
        const int missing = wanted->colorBits - (red + green + blue + alpha);
        if (missing > wanted->colorBits / 4 || depth < wanted->depthBits ||
            stencil < wanted->stencilBits) {
            continue;
        }
        const bool isSlow = wanted->mustBeFast && get(EGL_CONFIG_CAVEAT) != EGL_NONE;
        const int unevenness =
            std::abs(red - green) + std::abs(green - blue) + (alpha ? std::abs(blue - alpha) : 0);
        const Rank rank(isSlow, get(EGL_SAMPLES), unevenness, std::abs(missing),
                        depth - wanted->depthBits, stencil - wanted->stencilBits);
        if (!best || rank < *best) {
            best = rank;
            chosen = format;
        }
    }
    return chosen;
}

PixelFormatDescriptor describePixelFormat(const EglDisplay& display, int format) {
    struct Layout {
        std::uint16_t size, version;
        std::uint32_t flags;
        std::uint8_t pixelType, colorBits;
        std::uint8_t redBits, redShift, greenBits, greenShift, blueBits, blueShift, alphaBits,
            alphaShift;
        std::uint8_t accumBits, accumRedBits, accumGreenBits, accumBlueBits, accumAlphaBits;
        std::uint8_t depthBits, stencilBits, auxBuffers;
        std::uint8_t layerType, reserved;
        std::uint32_t layerMask, visibleMask, damageMask;
    };
    static_assert(sizeof(Layout) == sizeof(PixelFormatDescriptor));
    constexpr std::uint32_t kDoubleBuffer = 0x1;
    constexpr std::uint32_t kDrawToWindow = 0x4;
    constexpr std::uint32_t kSupportOpenGL = 0x20;

    const auto get = [&](EGLint attribute) {
        return static_cast<std::uint8_t>(display.getAttribute(format, attribute));
    };
    Layout layout{};
    layout.size = sizeof(Layout);
    layout.version = 1;
    layout.flags = kDoubleBuffer | kDrawToWindow | kSupportOpenGL;
    layout.redBits = get(EGL_RED_SIZE);
    layout.greenBits = get(EGL_GREEN_SIZE);
    layout.blueBits = get(EGL_BLUE_SIZE);
    layout.alphaBits = get(EGL_ALPHA_SIZE);
    layout.colorBits = get(EGL_BUFFER_SIZE);
    layout.greenShift = layout.blueBits;
    layout.redShift = static_cast<std::uint8_t>(layout.blueBits + layout.greenBits);
    layout.alphaShift = static_cast<std::uint8_t>(layout.redShift + layout.redBits);
    layout.depthBits = get(EGL_DEPTH_SIZE);
    layout.stencilBits = get(EGL_STENCIL_SIZE);

    PixelFormatDescriptor descriptor;
    std::memcpy(descriptor.bytes, &layout, sizeof(layout));
    return descriptor;
}
