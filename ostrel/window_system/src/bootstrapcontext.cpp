#include "bootstrapcontext.h"

#include <optional>

void BootstrapContext::bind(const EglDisplay* preferred) {
    if (!preferred) {
        own = EglDisplay::openOffscreen();
        preferred = own.get();
    }
    int format = 1;
    while (preferred && format <= preferred->getNumberOfFormats() &&
           !preferred->supports(format, std::nullopt)) {
        ++format;
    }
    if (!preferred || format > preferred->getNumberOfFormats()) {
        return;
    }
    display = preferred->get();
    const EGLConfig config = preferred->getConfig(format);
    const EGLint size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    surface = eglCreatePbufferSurface(display, config, size);
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (surface != EGL_NO_SURFACE && context != EGL_NO_CONTEXT) {
        eglMakeCurrent(display, surface, surface, context);
    }
}

BootstrapContext::~BootstrapContext() {
    if (context != EGL_NO_CONTEXT) {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display, context);
    }
    if (surface != EGL_NO_SURFACE) {
        eglDestroySurface(display, surface);
    }
}
