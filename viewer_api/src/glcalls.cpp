#include "glcalls.h"

#include "sharedglcontext.h"

#include <GL/glew.h>

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

void GLCalls::getIntegerv(uint32_t parameter, int* values) {
    glGetIntegerv(parameter, values);
}

void GLCalls::clearColor(float red, float green, float blue, float alpha) {
    glClearColor(red, green, blue, alpha);
}

void GLCalls::clear(uint32_t buffers) {
    glClear(buffers);
}

void GLCalls::drawBuffer(uint32_t buffer) {
    glDrawBuffer(buffer);
}

void GLCalls::readPixels(int x, int y, int width, int height, uint32_t format, uint32_t type,
                         void* pixels) {
    glReadPixels(x, y, width, height, format, type, pixels);
}

bool GLCalls::canReachFramebuffers() {
    return glGenFramebuffers && SharedGLContext::instance().isCurrent();
}

uint32_t GLCalls::genFramebuffer() {
    GLuint name = 0;
    glGenFramebuffers(1, &name);
    return name;
}

void GLCalls::deleteFramebuffer(uint32_t framebuffer) {
    glDeleteFramebuffers(1, &framebuffer);
}

void GLCalls::bindFramebuffer(uint32_t target, uint32_t framebuffer) {
    glBindFramebuffer(target, framebuffer);
}

uint32_t GLCalls::checkFramebufferStatus(uint32_t target) {
    return glCheckFramebufferStatus(target);
}

uint32_t GLCalls::genRenderbuffer() {
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    return name;
}

void GLCalls::deleteRenderbuffer(uint32_t renderbuffer) {
    glDeleteRenderbuffers(1, &renderbuffer);
}

void GLCalls::bindRenderbuffer(uint32_t target, uint32_t renderbuffer) {
    glBindRenderbuffer(target, renderbuffer);
}

void GLCalls::renderbufferStorage(uint32_t target, uint32_t format, int width, int height) {
    glRenderbufferStorage(target, format, width, height);
}

void GLCalls::framebufferRenderbuffer(uint32_t target, uint32_t attachment,
                                      uint32_t renderbufferTarget, uint32_t renderbuffer) {
    glFramebufferRenderbuffer(target, attachment, renderbufferTarget, renderbuffer);
}

GLCalls& glCalls() {
    return *callsInForce;
}

void setGLCalls(GLCalls* calls) {
    callsInForce = calls ? calls : &realCalls;
}

} // namespace ViewerAPI
