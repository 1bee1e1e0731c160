#include "glcalls.h"

#include <GL/gl.h>

namespace ViewerAPI {

namespace {

GLCalls realCalls;
GLCalls* callsInForce = &realCalls;

} // namespace

void GLCalls::viewport(int x, int y, int width, int height) {
    glViewport(x, y, width, height);
}

void GLCalls::enable(uint32_t capability) {
    glEnable(capability);
}

void GLCalls::disable(uint32_t capability) {
    glDisable(capability);
}

GLCalls& glCalls() {
    return *callsInForce;
}

void setGLCalls(GLCalls* calls) {
    callsInForce = calls ? calls : &realCalls;
}

} // namespace ViewerAPI
