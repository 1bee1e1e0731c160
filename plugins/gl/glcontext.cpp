#include "gl/glcontext.h"

#include <GL/glew.h>

namespace Bundled {

bool isGLReady() {
    // Without a current context this answers null and does nothing.
    if (!glGetString(GL_VERSION)) {
        return false;
    }
    static const bool loaded = [] {
        // A host that draws has loaded them for all that link the same library.
        if (glGenVertexArrays) {
            return true;
        }
        const GLenum status = glewInit();
        // On an EGL context everything is loaded before GLX is found missing.
        return status == GLEW_OK || status == GLEW_ERROR_NO_GLX_DISPLAY;
    }();
    return loaded;
}

void clearGLErrors() {
    // A lost context answers with errors for ever.
    for (int i = 0; i < 100 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

} // namespace Bundled
