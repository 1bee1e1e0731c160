#include "sharedglcontext.h"

#include "VlLogging/VlLoggerGlue.h"

namespace ViewerAPI {

namespace {

constexpr const char* kLogSource = "viewer_api/src/vlviewporthost";

// Where a failure is reported: users' log filters and bug reports know these numbers, which
// therefore don't follow the text of this file.
enum LogLine {
    kReleaseDeviceContextLine = 102,
    kLoaderLine = 791,
    kDeviceContextLine = 801,
    kChoosePixelFormatLine = 824,
    kSetPixelFormatLine = 834,
    kCreateContextLine = 853
};

constexpr int kPixelFormatAttributes[] = {kPixelFormatDrawToWindow,
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

constexpr int kContextAttributes[] = {kContextMajorVersion,
                                      4,
                                      kContextMinorVersion,
                                      0,
                                      kContextProfileMask,
                                      kContextCompatibilityProfileBit,
                                      0};

const VlLoggerGlue& logger() {
    static const VlLoggerGlue glue("VlViewportHost");
    return glue;
}

bool fail(const char* text, LogLine line) {
    if (logger().errorEnabled()) {
        logger().error(text, kLogSource, line);
    }
    return false;
}

} // namespace

SharedGLContext& SharedGLContext::instance() {
    static SharedGLContext context;
    return context;
}

bool SharedGLContext::join(int32_t windowId, NativeDeviceContext& deviceContext) {
    WindowSystem& windows = windowSystem();
    if (!sharedGLContext) {
        const int error = windows.glewInit();
        if (error != 0) {
            if (logger().errorEnabled()) {
                logger().error(windows.glewGetErrorString(error), kLogSource, kLoaderLine);
            }
            return false;
        }
    }
    deviceContext = windows.getDC(intptr_t{windowId});
    if (!deviceContext) {
        return fail("Invalid display device.", kDeviceContextLine);
    }
    if (!sharedGLContext) {
        if (windows.choosePixelFormat(deviceContext, kPixelFormatAttributes, &sharedPixelFormat) ==
            0) {
            return fail("Failed to choose pixel format.", kChoosePixelFormatLine);
        }
        windows.describePixelFormat(deviceContext, sharedPixelFormat,
                                    sizeof sharedPixelFormatDescriptor,
                                    &sharedPixelFormatDescriptor);
    }
    if (windows.setPixelFormat(deviceContext, sharedPixelFormat, &sharedPixelFormatDescriptor) ==
        0) {
        return fail("Failed to set pixel format.", kSetPixelFormatLine);
    }
    if (!sharedGLContext) {
        sharedGLContext = windows.createContextAttribs(deviceContext, nullptr, kContextAttributes);
        if (!sharedGLContext) {
            return fail("Failed to create OpenGL context.", kCreateContextLine);
        }
    }
    return true;
}

bool SharedGLContext::makeCurrent(NativeDeviceContext deviceContext) const {
    if (!deviceContext || !sharedGLContext) {
        return false;
    }
    return windowSystem().makeCurrent(deviceContext, sharedGLContext) != 0;
}

bool SharedGLContext::doneCurrent(NativeDeviceContext deviceContext) const {
    if (!deviceContext || !sharedGLContext) {
        return true;
    }
    return windowSystem().makeCurrent(deviceContext, nullptr) != 0;
}

bool SharedGLContext::isCurrent() const {
    return sharedGLContext && windowSystem().getCurrentContext() == sharedGLContext;
}

bool SharedGLContext::isCurrent(NativeDeviceContext deviceContext) const {
    if (!deviceContext || !sharedGLContext) {
        return false;
    }
    return windowSystem().getCurrentDC() == deviceContext && isCurrent();
}

void SharedGLContext::releaseDeviceContext(int32_t windowId, NativeDeviceContext deviceContext) {
    if (!deviceContext) {
        return;
    }
    if (windowSystem().releaseDC(intptr_t{windowId}, deviceContext) != 1) {
        fail("Failed to release device context.", kReleaseDeviceContextLine);
    }
}

} // namespace ViewerAPI
