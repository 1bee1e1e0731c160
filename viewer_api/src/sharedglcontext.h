#pragma once

#include "VlWindowSystem/WindowSystem.h"

#include <cstdint>

namespace ViewerAPI {

/// The one GL context that all viewports of the process draw with. The first viewport to join
/// chooses the pixel format and makes the context; later ones apply the same format to their own
/// windows. So GL objects of one viewport serve all, and changing viewports is one call.
///
/// Failures are logged and answered with false; what was stored up to then stays. The context is
/// never deleted. [ui-thread]
class SharedGLContext {
public:
    static SharedGLContext& instance();

    /// Gets a device context for the window, which is stored even if a later step fails, and makes
    /// or joins the shared context. A window that refuses the shared format fails here and leaves
    /// the context as it is. The window system's loader runs only while there is no context.
    bool join(int32_t windowId, NativeDeviceContext& deviceContext);

    /// Binds the context to a window. False without a platform call when either is missing, and
    /// silent about failures: it stands before every plug-in call.
    [[nodiscard]] bool makeCurrent(NativeDeviceContext deviceContext) const;
    /// Unbinds. True when there is nothing to unbind.
    [[nodiscard]] bool doneCurrent(NativeDeviceContext deviceContext) const;
    /// Whether the context is bound, to whichever window.
    [[nodiscard]] bool isCurrent() const;
    /// Whether the context is bound, and bound to this window.
    [[nodiscard]] bool isCurrent(NativeDeviceContext deviceContext) const;

    /// Gives a window's device context back; null is ignored.
    static void releaseDeviceContext(int32_t windowId, NativeDeviceContext deviceContext);

    NativeGLContext sharedGLContext = nullptr; ///< null until the first viewport has made it
    int sharedPixelFormat = 0;
    PixelFormatDescriptor sharedPixelFormatDescriptor{}; ///< passed on as it was filled in
};

} // namespace ViewerAPI
