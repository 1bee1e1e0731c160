#pragma once

#include <cstdint>

namespace ViewerAPI {

/// The GL calls that the host makes itself, in one place so that tests record them. Enumerants and
/// meanings are GL's. Whoever calls sees to the context. [gl-current]
class GLCalls {
public:
    virtual ~GLCalls() = default;

    virtual void viewport(int x, int y, int width, int height);
    virtual void enable(uint32_t capability);
    virtual void disable(uint32_t capability);
    /// Writes as many values as the parameter has.
    virtual void getIntegerv(uint32_t parameter, int* values);
    virtual void clearColor(float red, float green, float blue, float alpha);
    virtual void clear(uint32_t buffers);
    virtual void drawBuffer(uint32_t buffer);
    virtual void readPixels(int x, int y, int width, int height, uint32_t format, uint32_t type,
                            void* pixels);

    /// Whether the calls below reach the viewports' framebuffers: their entry points are loaded,
    /// and the viewports' shared context is current. May be asked when neither is so.
    virtual bool canReachFramebuffers();
    virtual uint32_t genFramebuffer();
    virtual void deleteFramebuffer(uint32_t framebuffer);
    virtual void bindFramebuffer(uint32_t target, uint32_t framebuffer);
    virtual uint32_t checkFramebufferStatus(uint32_t target);
    virtual uint32_t genRenderbuffer();
    virtual void deleteRenderbuffer(uint32_t renderbuffer);
    virtual void bindRenderbuffer(uint32_t target, uint32_t renderbuffer);
    virtual void renderbufferStorage(uint32_t target, uint32_t format, int width, int height);
    virtual void framebufferRenderbuffer(uint32_t target, uint32_t attachment,
                                         uint32_t renderbufferTarget, uint32_t renderbuffer);
};

/// Those in force: GL's own unless others are set.
[[nodiscard]] GLCalls& glCalls();

/// Puts other calls in the place of GL's; borrowed. Null restores GL's. [ui-thread]
void setGLCalls(GLCalls* calls);

} // namespace ViewerAPI
