#pragma once

#include <cstdint>

/// Handles of the platform: opaque, compared only. Null is none.
using NativeDeviceContext = void*;
using NativeGLContext = void*;

/// The platform's description of a pixel format, passed on unread.
struct PixelFormatDescriptor {
    unsigned char bytes[40];

    friend bool operator==(const PixelFormatDescriptor&, const PixelFormatDescriptor&) = default;
};

// Attribute lists are pairs of a name and a value, ended by 0. The numbers are those of the
// WGL_ARB_pixel_format and WGL_ARB_create_context extensions.

inline constexpr int kPixelFormatDrawToWindow = 0x2001;
inline constexpr int kPixelFormatAcceleration = 0x2003;
inline constexpr int kPixelFormatSupportOpenGL = 0x2010;
inline constexpr int kPixelFormatDoubleBuffer = 0x2011;
inline constexpr int kPixelFormatPixelType = 0x2013;
inline constexpr int kPixelFormatColorBits = 0x2014;
inline constexpr int kPixelFormatDepthBits = 0x2022;
inline constexpr int kPixelFormatStencilBits = 0x2023;
inline constexpr int kPixelFormatFullAcceleration = 0x2027; ///< value of Acceleration
inline constexpr int kPixelFormatTypeRgba = 0x202B;         ///< value of PixelType

inline constexpr int kContextMajorVersion = 0x2091;
inline constexpr int kContextMinorVersion = 0x2092;
inline constexpr int kContextProfileMask = 0x9126;
inline constexpr int kContextCoreProfileBit = 0x1;
inline constexpr int kContextCompatibilityProfileBit = 0x2;

/// The native operations by which windows get OpenGL. One implementation serves X11 windows and
/// off-screen surfaces through EGL; tests set their own. A call that fails answers zero or null,
/// logs nothing above the debug level, and leaves the binding in force as it was.
///
/// Device contexts and contexts belong to the implementation. All calls come from one thread, the
/// one that owns the windows. [ui-thread]
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Loads the GL entry points for the process (GLEW). 0 on success, otherwise a code for
    /// glewGetErrorString. No context need be current.
    virtual int glewInit() = 0;
    /// The text of a code, a constant; never null.
    virtual const char* glewGetErrorString(int error) = 0;

    /// The device context of a window: a positive id is an X11 window's, a negative one an
    /// off-screen surface's (createOffscreen). Null when there is no such window or no display.
    /// Asking again for a window gives the same one, and each call asks for a release of its own.
    /// The first device context decides which display the process uses; windows of another one
    /// get null afterwards.
    virtual NativeDeviceContext getDC(std::intptr_t windowId) = 0;
    /// Gives a device context back: 1 on success, 0 when it isn't this window's. The last release
    /// ends it, though a binding in force stays.
    virtual int releaseDC(std::intptr_t windowId, NativeDeviceContext deviceContext) = 0;

    /// Writes the pixel format that fits the attributes best; 0 when none does. Bits are minima,
    /// except that colour may lack alpha where a window's visual has none. Formats are numbered
    /// from 1.
    virtual int choosePixelFormat(NativeDeviceContext deviceContext, const int* attributes,
                                  int* format) = 0;
    /// Describes a format of the device context; `size` is that of the descriptor. The number of
    /// formats, or 0 on failure.
    virtual int describePixelFormat(NativeDeviceContext deviceContext, int format, unsigned size,
                                    PixelFormatDescriptor* descriptor) = 0;
    /// Gives the device context its format; 0 on failure. Once set a format stays: setting the
    /// same again succeeds, another fails.
    virtual int setPixelFormat(NativeDeviceContext deviceContext, int format,
                               const PixelFormatDescriptor* descriptor) = 0;

    /// A context for the device contexts of the same format, sharing the objects of `share` unless
    /// that is null. Null on failure. The device context must have its format.
    virtual NativeGLContext createContextAttribs(NativeDeviceContext deviceContext,
                                                 NativeGLContext share, const int* attributes) = 0;
    /// Binds the context and the device context to the calling thread; a null context unbinds what
    /// is bound. 0 on failure.
    virtual int makeCurrent(NativeDeviceContext deviceContext, NativeGLContext context) = 0;
    /// What the calling thread has bound; null when nothing, or when it isn't one of these.
    virtual NativeDeviceContext getCurrentDC() = 0;
    virtual NativeGLContext getCurrentContext() = 0;

    /// Shows what was drawn; 0 on failure. What the back buffer then holds is undefined. An
    /// off-screen picture becomes readable (readPixels); its context must be current for that.
    virtual int swapBuffers(NativeDeviceContext deviceContext) = 0;
};

/// The window system in use: the EGL one unless another was set.
[[nodiscard]] WindowSystem& windowSystem();

/// Sets the window system in use; it isn't owned. Null restores the EGL one.
void setWindowSystem(WindowSystem* system) noexcept;
