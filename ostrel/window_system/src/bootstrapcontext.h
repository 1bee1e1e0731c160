#pragma once

#include "egldisplay.h"

#include <memory>

/// A context that exists only while the GL entry points are loaded.
class BootstrapContext {
public:
    BootstrapContext() = default;
    /// Unbinds and ends the context.
    ~BootstrapContext();
    BootstrapContext(const BootstrapContext&) = delete;
    BootstrapContext& operator=(const BootstrapContext&) = delete;

    /// Makes a context on that display, or when it is null on one for off-screen work, and binds
    /// it. Does nothing when it can't.
    void bind(const EglDisplay* preferred);

private:
    std::unique_ptr<EglDisplay> own;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};
