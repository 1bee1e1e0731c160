#include "support/offscreencontext.h"

#include "VlWindowSystem/Offscreen.h"

#include <GL/glew.h>

namespace {

/// The one context of the process, as viewports share one. It lives on.
NativeGLContext sharedContext(NativeDeviceContext deviceContext) {
    static NativeGLContext context = nullptr;
    if (!context) {
        const int attributes[] = {kContextMajorVersion,
                                  4,
                                  kContextMinorVersion,
                                  0,
                                  kContextProfileMask,
                                  kContextCompatibilityProfileBit,
                                  0};
        context = windowSystem().createContextAttribs(deviceContext, nullptr, attributes);
    }
    return context;
}

} // namespace

OffscreenContext::OffscreenContext(int width, int height)
    : surface(createOffscreen(width, height)), deviceContext(windowSystem().getDC(surface)) {
    const int wanted[] = {kPixelFormatSupportOpenGL,
                          1,
                          kPixelFormatDoubleBuffer,
                          1,
                          kPixelFormatColorBits,
                          32,
                          kPixelFormatDepthBits,
                          24,
                          kPixelFormatStencilBits,
                          8,
                          0};
    int format = 0;
    PixelFormatDescriptor description{};
    WindowSystem& windows = windowSystem();
    if (!deviceContext || windows.choosePixelFormat(deviceContext, wanted, &format) == 0 ||
        windows.describePixelFormat(deviceContext, format, sizeof(description), &description) ==
            0 ||
        windows.setPixelFormat(deviceContext, format, &description) == 0) {
        return;
    }
    NativeGLContext shared = sharedContext(deviceContext);
    if (shared && windows.makeCurrent(deviceContext, shared) != 0 && windows.glewInit() == 0) {
        context = shared;
        glViewport(0, 0, width, height);
    }
}

OffscreenContext::~OffscreenContext() {
    if (deviceContext) {
        windowSystem().makeCurrent(deviceContext, nullptr);
        windowSystem().releaseDC(surface, deviceContext);
    }
    destroyOffscreen(surface);
}

Pixels Pixels::read(int width, int height) {
    Pixels pixels;
    pixels.width = width;
    pixels.height = height;
    pixels.rgba.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.rgba.data());
    return pixels;
}

Pixels::Color Pixels::at(int x, int y) const {
    const auto place = static_cast<std::size_t>(((height - 1 - y) * width + x) * 4);
    return {rgba[place], rgba[place + 1], rgba[place + 2]};
}

int Pixels::brightness(int x, int y) const {
    const Color color = at(x, y);
    return color[0] + color[1] + color[2];
}
