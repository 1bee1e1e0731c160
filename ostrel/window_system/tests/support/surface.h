#pragma once

#include "VlWindowSystem/WindowSystem.h"

/// What a viewport asks for.
inline constexpr int kFormatAttributes[] = {kPixelFormatDrawToWindow,
                                            1,
                                            kPixelFormatSupportOpenGL,
                                            1,
                                            kPixelFormatDoubleBuffer,
                                            1,
                                            kPixelFormatAcceleration,
                                            kPixelFormatFullAcceleration,
                                            kPixelFormatPixelType,
                                            kPixelFormatTypeRgba,
                                            kPixelFormatColorBits,
                                            32,
                                            kPixelFormatDepthBits,
                                            24,
                                            kPixelFormatStencilBits,
                                            8,
                                            0};
inline constexpr int kContextAttributes[] = {kContextMajorVersion,
                                             4,
                                             kContextMinorVersion,
                                             0,
                                             kContextProfileMask,
                                             kContextCompatibilityProfileBit,
                                             0};

/// A device context with its format, as a viewport gets it; null `dc` when a step failed.
struct TestSurface {
    NativeDeviceContext dc = nullptr;
    int format = 0;
    PixelFormatDescriptor descriptor{};

    /// Chooses the format by itself.
    explicit TestSurface(std::intptr_t windowId) {
        WindowSystem& system = windowSystem();
        const NativeDeviceContext got = system.getDC(windowId);
        if (got && system.choosePixelFormat(got, kFormatAttributes, &format) &&
            system.describePixelFormat(got, format, sizeof(descriptor), &descriptor) &&
            system.setPixelFormat(got, format, &descriptor)) {
            dc = got;
        }
    }

    /// Takes the format of another.
    TestSurface(std::intptr_t windowId, const TestSurface& other)
        : format(other.format), descriptor(other.descriptor) {
        WindowSystem& system = windowSystem();
        const NativeDeviceContext got = system.getDC(windowId);
        if (got && system.setPixelFormat(got, format, &descriptor)) {
            dc = got;
        }
    }

    [[nodiscard]] NativeGLContext createContext() const {
        return windowSystem().createContextAttribs(dc, nullptr, kContextAttributes);
    }
};
