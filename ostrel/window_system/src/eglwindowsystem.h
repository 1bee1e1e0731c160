#pragma once

#include "VlWindowSystem/WindowSystem.h"
#include "egldisplay.h"
#include "offscreensurfaces.h"

#include <cstdint>
#include <future>
#include <map>
#include <memory>
#include <optional>

/// Windows and contexts through EGL. The header of WindowSystem says what each operation does.
class EglWindowSystem final : public WindowSystem {
public:
    /// The one of the process. Never destroyed: contexts and surfaces last until the process ends.
    static EglWindowSystem& get();

    int glewInit() override;
    const char* glewGetErrorString(int error) override;
    NativeDeviceContext getDC(std::intptr_t windowId) override;
    int releaseDC(std::intptr_t windowId, NativeDeviceContext deviceContext) override;
    int choosePixelFormat(NativeDeviceContext deviceContext, const int* attributes,
                          int* format) override;
    int describePixelFormat(NativeDeviceContext deviceContext, int format, unsigned size,
                            PixelFormatDescriptor* descriptor) override;
    int setPixelFormat(NativeDeviceContext deviceContext, int format,
                       const PixelFormatDescriptor* descriptor) override;
    NativeGLContext createContextAttribs(NativeDeviceContext deviceContext, NativeGLContext share,
                                         const int* attributes) override;
    int makeCurrent(NativeDeviceContext deviceContext, NativeGLContext context) override;
    NativeDeviceContext getCurrentDC() override;
    NativeGLContext getCurrentContext() override;
    int swapBuffers(NativeDeviceContext deviceContext) override;

    void openOffscreenAhead();
    void waitForOpening();
    int createOffscreen(int width, int height);
    /// False when the new surface can't be made; all is then as it was.
    bool resizeOffscreen(int id, int width, int height);
    void destroyOffscreen(int id);
    [[nodiscard]] OffscreenSurfaces::Surface* findOffscreen(int id) { return offscreen.find(id); }

private:
    struct DeviceContext {
        std::intptr_t windowId = 0;
        int references = 0;
        int format = 0;                          // 0: not set
        EGLSurface surface = EGL_NO_SURFACE;     // none until the format is set
        EGLContext lastContext = EGL_NO_CONTEXT; // what was bound with it last
    };
    // What a thread has bound.
    struct Binding {
        EGLDisplay display;
        EGLSurface draw, read;
        EGLContext context;

        static Binding current();
        bool bind() const;
    };

    // A display on which nothing has been decided yet, and what loading the entry points gave.
    struct Opened {
        std::unique_ptr<EglDisplay> display;
        int loaderError = 0;
    };

    EglWindowSystem() = default;

    bool decideDisplay(std::intptr_t windowId);
    [[nodiscard]] bool isWindow(std::intptr_t windowId);
    [[nodiscard]] std::optional<std::uint32_t> visualOf(const DeviceContext& dc);
    [[nodiscard]] DeviceContext* find(NativeDeviceContext handle);
    [[nodiscard]] EGLSurface createSurface(const DeviceContext& dc, int format);
    [[nodiscard]] EGLSurface createPbuffer(int format, int width, int height);
    void end(std::map<std::uintptr_t, DeviceContext>::iterator dc);
    int present(DeviceContext& dc);

    std::unique_ptr<EglDisplay> display; // null until the first device context decides
    std::future<Opened> opening;         // valid from `openOffscreenAhead` until its result is used
    std::unique_ptr<EglDisplay> openedAhead;
    // By the handle, a number that is never used again: one that has ended is known as such.
    std::map<std::uintptr_t, DeviceContext> deviceContexts;
    std::uintptr_t lastHandle = 0;
    OffscreenSurfaces offscreen;
};
