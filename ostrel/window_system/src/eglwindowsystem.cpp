#include "eglwindowsystem.h"

#include "VlLogging/VlLoggerGlue.h"
#include "bootstrapcontext.h"
#include "framebufferreader.h"
#include "pixelformat.h"

#include <GL/glew.h>

#include <string>
#include <utility>
#include <vector>

namespace {

// Callers log failures in their own words; these lines say what EGL thought.
void logDebug(std::string_view text, int line) {
    static const auto* const logger = new VlLoggerGlue("VlWindowSystem");
    if (logger->debugEnabled()) {
        logger->debug(text, "ostrel/window_system/src/eglwindowsystem", line);
    }
}

std::vector<EGLint> contextAttributes(const int* attributes, bool& areKnown) {
    std::vector<EGLint> result;
    areKnown = true;
    for (; attributes && *attributes; attributes += 2) {
        switch (attributes[0]) {
        case kContextMajorVersion:
            result.push_back(EGL_CONTEXT_MAJOR_VERSION);
            break;
        case kContextMinorVersion:
            result.push_back(EGL_CONTEXT_MINOR_VERSION);
            break;
        case kContextProfileMask:
            // The bits have the same values in both.
            static_assert(kContextCoreProfileBit == EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT);
            static_assert(kContextCompatibilityProfileBit ==
                          EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT);
            result.push_back(EGL_CONTEXT_OPENGL_PROFILE_MASK);
            break;
        default:
            areKnown = false;
            continue;
        }
        result.push_back(attributes[1]);
    }
    result.push_back(EGL_NONE);
    return result;
}

// Loads the entry points by a context on the display, which may be null, unless one is current.
int loadEntryPoints(const EglDisplay* display) {
    BootstrapContext bootstrap;
    eglBindAPI(EGL_OPENGL_API);
    if (eglGetCurrentContext() == EGL_NO_CONTEXT) {
        bootstrap.bind(display);
    }
    glewExperimental = GL_TRUE;
    const GLenum error = ::glewInit();
    // GLEW loads everything, then looks for GLX, which an EGL context doesn't have.
    return error == GLEW_ERROR_NO_GLX_DISPLAY ? 0 : static_cast<int>(error);
}

} // namespace

EglWindowSystem& EglWindowSystem::get() {
    static auto* const system = new EglWindowSystem;
    return *system;
}

EglWindowSystem::Binding EglWindowSystem::Binding::current() {
    // A thread binds one context per client API; only OpenGL's counts here.
    eglBindAPI(EGL_OPENGL_API);
    return {eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), eglGetCurrentSurface(EGL_READ),
            eglGetCurrentContext()};
}

bool EglWindowSystem::Binding::bind() const {
    return display == EGL_NO_DISPLAY || eglMakeCurrent(display, draw, read, context);
}

int EglWindowSystem::glewInit() {
    if (opening.valid()) {
        Opened opened = opening.get();
        openedAhead = std::move(opened.display);
        return opened.loaderError;
    }
    // Made on the display in use, or else on one of its own, so that loading decides nothing.
    return loadEntryPoints(display.get());
}

const char* EglWindowSystem::glewGetErrorString(int error) {
    return reinterpret_cast<const char*>(::glewGetErrorString(static_cast<GLenum>(error)));
}

bool EglWindowSystem::decideDisplay(std::intptr_t windowId) {
    if (!display) {
        waitForOpening();
        display = windowId >= 0 ? EglDisplay::openX11()
                  : openedAhead ? std::move(openedAhead)
                                : EglDisplay::openOffscreen();
        if (!display) {
            logDebug(windowId < 0 ? "There is no EGL display for off-screen surfaces."
                                  : "There is no X server, or no EGL display on it.",
                     __LINE__);
        }
    }
    return display != nullptr;
}

bool EglWindowSystem::isWindow(std::intptr_t windowId) {
    if (windowId < 0) {
        return offscreen.find(windowId) != nullptr;
    }
    XConnection* const connection = display->getConnection();
    return connection && connection->windowVisual(windowId);
}

NativeDeviceContext EglWindowSystem::getDC(std::intptr_t windowId) {
    if (windowId == 0 || (windowId < 0 && !offscreen.find(windowId)) || !decideDisplay(windowId)) {
        return nullptr;
    }
    if (!isWindow(windowId)) {
        logDebug(display->getConnection()
                     ? "There is no window " + std::to_string(windowId) + "."
                     : "No windows here: the first device context was an off-screen one's.",
                 __LINE__);
        return nullptr;
    }
    for (auto& [handle, dc] : deviceContexts) {
        if (dc.windowId == windowId) {
            ++dc.references;
            return reinterpret_cast<NativeDeviceContext>(handle);
        }
    }
    lastHandle += 16;
    deviceContexts[lastHandle] = {windowId, 1};
    return reinterpret_cast<NativeDeviceContext>(lastHandle);
}

EglWindowSystem::DeviceContext* EglWindowSystem::find(NativeDeviceContext handle) {
    const auto found = deviceContexts.find(reinterpret_cast<std::uintptr_t>(handle));
    return found == deviceContexts.end() ? nullptr : &found->second;
}

int EglWindowSystem::releaseDC(std::intptr_t windowId, NativeDeviceContext deviceContext) {
    const auto found = deviceContexts.find(reinterpret_cast<std::uintptr_t>(deviceContext));
    if (found == deviceContexts.end() || found->second.windowId != windowId) {
        return 0;
    }
    if (--found->second.references == 0) {
        end(found);
    }
    return 1;
}

void EglWindowSystem::end(std::map<std::uintptr_t, DeviceContext>::iterator dc) {
    if (const EGLSurface surface = dc->second.surface; surface != EGL_NO_SURFACE) {
        const auto destroy = [&] { return eglDestroySurface(display->get(), surface) != 0; };
        // A surface that is bound lives on until it no longer is.
        if (XConnection* const connection = display->getConnection()) {
            connection->attempt(destroy);
        } else {
            destroy();
        }
    }
    deviceContexts.erase(dc);
}

std::optional<std::uint32_t> EglWindowSystem::visualOf(const DeviceContext& dc) {
    return dc.windowId < 0 ? std::nullopt : display->getConnection()->windowVisual(dc.windowId);
}

int EglWindowSystem::choosePixelFormat(NativeDeviceContext deviceContext, const int* attributes,
                                       int* format) {
    const DeviceContext* const dc = find(deviceContext);
    if (!dc || !format) {
        return 0;
    }
    const auto visual = visualOf(*dc);
    if (dc->windowId > 0 && !visual) {
        return 0;
    }
    const int chosen = ::choosePixelFormat(*display, visual, attributes);
    if (chosen == 0) {
        logDebug("No EGL config has what was asked for.", __LINE__);
        return 0;
    }
    *format = chosen;
    return 1;
}

int EglWindowSystem::describePixelFormat(NativeDeviceContext deviceContext, int format,
                                         unsigned size, PixelFormatDescriptor* descriptor) {
    if (!find(deviceContext) || !display->getConfig(format) || !descriptor ||
        size < sizeof(PixelFormatDescriptor)) {
        return 0;
    }
    *descriptor = ::describePixelFormat(*display, format);
    return display->getNumberOfFormats();
}

EGLSurface EglWindowSystem::createPbuffer(int format, int width, int height) {
    const EGLint attributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    return eglCreatePbufferSurface(display->get(), display->getConfig(format), attributes);
}

EGLSurface EglWindowSystem::createSurface(const DeviceContext& dc, int format) {
    if (dc.windowId < 0) {
        const auto* const target = offscreen.find(dc.windowId);
        return createPbuffer(format, target->width, target->height);
    }
    EGLSurface surface = EGL_NO_SURFACE;
    const bool isDone = display->getConnection()->attempt([&] {
        auto window = static_cast<unsigned long>(dc.windowId);
        surface = eglCreatePlatformWindowSurface(display->get(), display->getConfig(format),
                                                 &window, nullptr);
        return surface != EGL_NO_SURFACE;
    });
    return isDone ? surface : EGL_NO_SURFACE;
}

int EglWindowSystem::setPixelFormat(NativeDeviceContext deviceContext, int format,
                                    const PixelFormatDescriptor* descriptor) {
    DeviceContext* const dc = find(deviceContext);
    if (!dc || !descriptor) {
        return 0;
    }
    if (dc->format != 0) {
        return dc->format == format ? 1 : 0;
    }
    const auto visual = visualOf(*dc);
    if ((dc->windowId > 0 && !visual) || !display->supports(format, visual)) {
        logDebug("The pixel format isn't one for this window.", __LINE__);
        return 0;
    }
    const EGLSurface surface = createSurface(*dc, format);
    if (surface == EGL_NO_SURFACE) {
        logDebug("The surface can't be made: " + takeEglError() + ".", __LINE__);
        return 0;
    }
    dc->surface = surface;
    dc->format = format;
    return 1;
}

NativeGLContext EglWindowSystem::createContextAttribs(NativeDeviceContext deviceContext,
                                                      NativeGLContext share,
                                                      const int* attributes) {
    const DeviceContext* const dc = find(deviceContext);
    bool areKnown = false;
    const std::vector<EGLint> list = contextAttributes(attributes, areKnown);
    if (!dc || dc->format == 0 || !areKnown) {
        return nullptr;
    }
    eglBindAPI(EGL_OPENGL_API);
    const EGLContext context =
        eglCreateContext(display->get(), display->getConfig(dc->format), share, list.data());
    if (context == EGL_NO_CONTEXT) {
        logDebug("The context can't be made: " + takeEglError() + ".", __LINE__);
    }
    return context;
}

int EglWindowSystem::makeCurrent(NativeDeviceContext deviceContext, NativeGLContext context) {
    const Binding before = Binding::current();
    if (!context) {
        return Binding{before.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT}.bind();
    }
    DeviceContext* const dc = find(deviceContext);
    if (!dc || dc->surface == EGL_NO_SURFACE) {
        return 0;
    }
    if (!Binding{display->get(), dc->surface, dc->surface, context}.bind()) {
        logDebug("The context can't be made current: " + takeEglError() + ".", __LINE__);
        return 0;
    }
    dc->lastContext = context;
    return 1;
}

NativeDeviceContext EglWindowSystem::getCurrentDC() {
    const EGLSurface surface = Binding::current().draw;
    if (surface != EGL_NO_SURFACE) {
        for (const auto& [handle, dc] : deviceContexts) {
            if (dc.surface == surface) {
                return reinterpret_cast<NativeDeviceContext>(handle);
            }
        }
    }
    return nullptr;
}

NativeGLContext EglWindowSystem::getCurrentContext() {
    return Binding::current().context;
}

int EglWindowSystem::swapBuffers(NativeDeviceContext deviceContext) {
    DeviceContext* const dc = find(deviceContext);
    if (!dc || dc->surface == EGL_NO_SURFACE) {
        return 0;
    }
    const Binding before = Binding::current();
    if (before.draw == dc->surface) {
        return present(*dc);
    }
    // EGL swaps only what is bound; the caller need not have left it so.
    if (dc->lastContext == EGL_NO_CONTEXT ||
        !Binding{display->get(), dc->surface, dc->surface, dc->lastContext}.bind()) {
        return 0;
    }
    const int result = present(*dc);
    if (before.context != EGL_NO_CONTEXT) {
        before.bind();
    } else {
        Binding{display->get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT}.bind();
    }
    return result;
}

int EglWindowSystem::present(DeviceContext& dc) {
    if (dc.windowId < 0) {
        auto* const target = offscreen.find(dc.windowId);
        readDefaultFramebuffer(target->width, target->height, target->shown);
        return 1;
    }
    // Drivers count a frame for a window that is gone as shown.
    XConnection& connection = *display->getConnection();
    const bool isDone = connection.attempt([&] {
        return connection.hasWindow(dc.windowId) && eglSwapBuffers(display->get(), dc.surface);
    });
    return isDone ? 1 : 0;
}

void EglWindowSystem::openOffscreenAhead() {
    if (display || openedAhead || opening.valid()) {
        return;
    }
    opening = std::async(std::launch::async, [] {
        auto offscreenDisplay = EglDisplay::openOffscreen();
        const int loaderError = loadEntryPoints(offscreenDisplay.get());
        return Opened{std::move(offscreenDisplay), loaderError};
    });
}

void EglWindowSystem::waitForOpening() {
    if (opening.valid()) {
        openedAhead = opening.get().display;
    }
}

int EglWindowSystem::createOffscreen(int width, int height) {
    return offscreen.add(width, height);
}

bool EglWindowSystem::resizeOffscreen(int id, int width, int height) {
    OffscreenSurfaces::Surface resized{width, height, {}};
    for (auto& [handle, dc] : deviceContexts) {
        if (dc.windowId != id || dc.surface == EGL_NO_SURFACE) {
            continue;
        }
        const EGLSurface surface = createPbuffer(dc.format, width, height);
        if (surface == EGL_NO_SURFACE) {
            logDebug("The surface can't be made: " + takeEglError() + ".", __LINE__);
            return false;
        }
        Binding binding = Binding::current();
        if (binding.draw == dc.surface) {
            binding.draw = binding.read = surface;
            if (!binding.bind()) {
                eglDestroySurface(display->get(), surface);
                return false;
            }
        }
        eglDestroySurface(display->get(), std::exchange(dc.surface, surface));
    }
    *offscreen.find(id) = std::move(resized);
    return true;
}

void EglWindowSystem::destroyOffscreen(int id) {
    for (auto dc = deviceContexts.begin(); dc != deviceContexts.end(); ++dc) {
        if (dc->second.windowId != id) {
            continue;
        }
        const Binding bound = Binding::current();
        if (dc->second.surface != EGL_NO_SURFACE && bound.draw == dc->second.surface) {
            Binding{bound.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT}.bind();
        }
        end(dc);
        break;
    }
    offscreen.remove(id);
}
