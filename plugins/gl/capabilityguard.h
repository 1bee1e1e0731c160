#pragma once

#include <GL/glew.h>

namespace Bundled {

/// Puts back at its end, also when something throws, whether GL had a capability switched on.
/// [gl-current]
class CapabilityGuard {
public:
    explicit CapabilityGuard(GLenum guarded)
        : capability(guarded), wasEnabled(glIsEnabled(guarded) == GL_TRUE) {}
    CapabilityGuard(const CapabilityGuard&) = delete;
    CapabilityGuard& operator=(const CapabilityGuard&) = delete;
    ~CapabilityGuard() {
        if (wasEnabled) {
            glEnable(capability);
        } else {
            glDisable(capability);
        }
    }

private:
    const GLenum capability;
    const bool wasEnabled;
};

} // namespace Bundled
