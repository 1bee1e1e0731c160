#pragma once

#include "gl/glcontext.h"

#include <GL/glew.h>

#include <utility>

namespace Bundled {

/// Owns one GL object: made on demand, deleted with its owner. Without a current context at that
/// time the object stays with the context, which ends it. `Traits` has static create and destroy.
template <typename Traits>
class GLName {
public:
    GLName() noexcept = default;
    GLName(GLName&& other) noexcept : value(std::exchange(other.value, 0)) {}
    GLName& operator=(GLName&& other) noexcept {
        std::swap(value, other.value);
        return *this;
    }
    ~GLName() { reset(); }

    /// The name; makes the object when there is none. [gl-current]
    GLuint create() {
        if (value == 0) {
            value = Traits::create();
        }
        return value;
    }
    /// 0 when there is none.
    [[nodiscard]] GLuint get() const noexcept { return value; }
    [[nodiscard]] explicit operator bool() const noexcept { return value != 0; }

    void reset() {
        if (const GLuint name = std::exchange(value, 0); name != 0 && isGLReady()) {
            Traits::destroy(name);
        }
    }

private:
    GLuint value = 0;
};

struct GLBufferTraits {
    static GLuint create() {
        GLuint name = 0;
        glGenBuffers(1, &name);
        return name;
    }
    static void destroy(GLuint name) { glDeleteBuffers(1, &name); }
};

struct GLVertexArrayTraits {
    static GLuint create() {
        GLuint name = 0;
        glGenVertexArrays(1, &name);
        return name;
    }
    static void destroy(GLuint name) { glDeleteVertexArrays(1, &name); }
};

struct GLTextureTraits {
    static GLuint create() {
        GLuint name = 0;
        glGenTextures(1, &name);
        return name;
    }
    static void destroy(GLuint name) { glDeleteTextures(1, &name); }
};

struct GLFramebufferTraits {
    static GLuint create() {
        GLuint name = 0;
        glGenFramebuffers(1, &name);
        return name;
    }
    static void destroy(GLuint name) { glDeleteFramebuffers(1, &name); }
};

struct GLRenderbufferTraits {
    static GLuint create() {
        GLuint name = 0;
        glGenRenderbuffers(1, &name);
        return name;
    }
    static void destroy(GLuint name) { glDeleteRenderbuffers(1, &name); }
};

struct GLProgramTraits {
    static GLuint create() { return glCreateProgram(); }
    static void destroy(GLuint name) { glDeleteProgram(name); }
};

using GLBuffer = GLName<GLBufferTraits>;
using GLVertexArray = GLName<GLVertexArrayTraits>;
using GLTexture = GLName<GLTextureTraits>;
using GLFramebuffer = GLName<GLFramebufferTraits>;
using GLRenderbuffer = GLName<GLRenderbufferTraits>;
using GLProgram = GLName<GLProgramTraits>;

} // namespace Bundled
