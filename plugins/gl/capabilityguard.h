#pragma once

#include <GL/glew.h>

namespace Bundled {

inline void switchCapability(GLenum capability, bool on) {
    if (on) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

/// Puts back at its end, also when something throws, whether GL had a capability switched on.
/// [gl-current]
class CapabilityGuard {
public:
    explicit CapabilityGuard(GLenum guarded)
        : capability(guarded), wasEnabled(glIsEnabled(guarded) == GL_TRUE) {}
    CapabilityGuard(const CapabilityGuard&) = delete;
    CapabilityGuard& operator=(const CapabilityGuard&) = delete;
    ~CapabilityGuard() { switchCapability(capability, wasEnabled); }

private:
    const GLenum capability;
    const bool wasEnabled;
};

} // namespace Bundled
