#pragma once

#include <cstdint>

namespace ViewerAPI {

/// The GL calls that the host makes itself, in one place so that tests record them. Whoever calls
/// sees to the context. [gl-current]
class GLCalls {
public:
    virtual ~GLCalls() = default;

    virtual void viewport(int x, int y, int width, int height);
    virtual void enable(uint32_t capability);
    virtual void disable(uint32_t capability);
};

/// Those in force: GL's own unless others are set.
[[nodiscard]] GLCalls& glCalls();

/// Puts other calls in the place of GL's; borrowed. Null restores GL's. [ui-thread]
void setGLCalls(GLCalls* calls);

} // namespace ViewerAPI
