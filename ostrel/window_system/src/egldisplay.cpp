#include "egldisplay.h"

#include <EGL/eglext.h>

#include <iterator>
#include <string_view>
#include <utility>

namespace {

bool hasClientExtension(std::string_view name) {
    const char* const extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const std::string list = " " + std::string(extensions ? extensions : "") + " ";
    return list.find(" " + std::string(name) + " ") != std::string::npos;
}

} // namespace

EglDisplay::EglDisplay(EGLDisplay eglDisplay, std::unique_ptr<XConnection> xConnection)
    : display(eglDisplay), connection(std::move(xConnection)) {
    EGLint count = 0;
    if (eglGetConfigs(display, nullptr, 0, &count)) {
        configs.resize(static_cast<std::size_t>(count));
        eglGetConfigs(display, configs.data(), count, &count);
    }
}

bool EglDisplay::initialise(EGLDisplay display) {
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) &&
           eglBindAPI(EGL_OPENGL_API);
}

std::unique_ptr<EglDisplay> EglDisplay::openX11() {
    auto connection = XConnection::open();
    EGLDisplay display = EGL_NO_DISPLAY;
    const bool isDone = connection && connection->attempt([&] {
        display = eglGetPlatformDisplay(EGL_PLATFORM_X11_KHR, connection->getDisplay(), nullptr);
        return initialise(display);
    });
    return isDone ? std::unique_ptr<EglDisplay>(new EglDisplay(display, std::move(connection)))
                  : nullptr;
}

std::unique_ptr<EglDisplay> EglDisplay::openOffscreen() {
    // The first that is there: no window system at all; a graphics device; what EGL prefers.
    std::vector<EGLDisplay> candidates;
    if (hasClientExtension("EGL_MESA_platform_surfaceless")) {
        candidates.push_back(
            eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    }
    const auto queryDevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLint count = 0;
    if (queryDevices && hasClientExtension("EGL_EXT_platform_device") &&
        queryDevices(0, nullptr, &count)) {
        std::vector<EGLDeviceEXT> devices(static_cast<std::size_t>(count));
        queryDevices(count, devices.data(), &count);
        for (EGLDeviceEXT device : devices) {
            candidates.push_back(eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr));
        }
    }
    candidates.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    for (EGLDisplay candidate : candidates) {
        if (initialise(candidate)) {
            return std::unique_ptr<EglDisplay>(new EglDisplay(candidate));
        }
    }
    return nullptr;
}

EGLConfig EglDisplay::getConfig(int format) const noexcept {
    return format >= 1 && format <= getNumberOfFormats()
               ? configs[static_cast<std::size_t>(format - 1)]
               : nullptr;
}

EGLint EglDisplay::getAttribute(int format, EGLint attribute) const noexcept {
    EGLint value = 0;
    eglGetConfigAttrib(display, getConfig(format), attribute, &value);
    return value;
}

bool EglDisplay::supports(int format, std::optional<std::uint32_t> visual) const noexcept {
    if (!getConfig(format) || !(getAttribute(format, EGL_RENDERABLE_TYPE) & EGL_OPENGL_BIT)) {
        return false;
    }
    const EGLint surfaces = getAttribute(format, EGL_SURFACE_TYPE);
    if (!visual) {
        return surfaces & EGL_PBUFFER_BIT;
    }
    // The server refuses to show a surface whose colours are laid out unlike the window's.
    return (surfaces & EGL_WINDOW_BIT) && connection &&
           connection->areAlike(
               static_cast<std::uint32_t>(getAttribute(format, EGL_NATIVE_VISUAL_ID)), *visual);
}

std::string takeEglError() {
    static constexpr const char* kNames[] = {
        "EGL_SUCCESS",       "EGL_NOT_INITIALIZED",     "EGL_BAD_ACCESS",
        "EGL_BAD_ALLOC",     "EGL_BAD_ATTRIBUTE",       "EGL_BAD_CONFIG",
        "EGL_BAD_CONTEXT",   "EGL_BAD_CURRENT_SURFACE", "EGL_BAD_DISPLAY",
        "EGL_BAD_MATCH",     "EGL_BAD_NATIVE_PIXMAP",   "EGL_BAD_NATIVE_WINDOW",
        "EGL_BAD_PARAMETER", "EGL_BAD_SURFACE",         "EGL_CONTEXT_LOST"};
    const EGLint error = eglGetError() - EGL_SUCCESS;
    return error >= 0 && static_cast<std::size_t>(error) < std::size(kNames) ? kNames[error]
                                                                             : "unknown error";
}
