#pragma once

#include "xconnection.h"

#include <EGL/egl.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// An EGL display that can make desktop OpenGL contexts, and its configs. A pixel format is a
/// config's place among them, counted from 1. Never terminated.
class EglDisplay {
public:
    /// The display for windows of the X server, or the one for work without a screen; null when
    /// there is none.
    static std::unique_ptr<EglDisplay> openX11();
    static std::unique_ptr<EglDisplay> openOffscreen();

    [[nodiscard]] EGLDisplay get() const noexcept { return display; }
    /// Null unless this is the display for windows.
    [[nodiscard]] XConnection* getConnection() const noexcept { return connection.get(); }

    [[nodiscard]] int getNumberOfFormats() const noexcept {
        return static_cast<int>(configs.size());
    }
    /// Null for a format out of range.
    [[nodiscard]] EGLConfig getConfig(int format) const noexcept;
    /// An attribute of a format in range.
    [[nodiscard]] EGLint getAttribute(int format, EGLint attribute) const noexcept;

    /// True when a surface of the kind can be made with the format: a window's of that visual or of
    /// one alike, or without a visual an off-screen one.
    [[nodiscard]] bool supports(int format, std::optional<std::uint32_t> visual) const noexcept;

private:
    explicit EglDisplay(EGLDisplay eglDisplay, std::unique_ptr<XConnection> xConnection = nullptr);
    static bool initialise(EGLDisplay display);

    EGLDisplay display;
    std::unique_ptr<XConnection> connection;
    std::vector<EGLConfig> configs;
};

/// The name of the last EGL error of the thread, such as "EGL_BAD_MATCH", which is cleared by it.
[[nodiscard]] std::string takeEglError();
