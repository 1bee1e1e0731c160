#include "support/recordingglcalls.h"

#include <GL/glew.h>

#include <algorithm>
#include <map>
#include <string>

namespace ViewerAPI::test {

namespace {

std::string nameOf(uint32_t enumerant) {
    static const std::map<uint32_t, std::string> names = {
        {GL_VIEWPORT, "VIEWPORT"},
        {GL_DRAW_FRAMEBUFFER_BINDING, "DRAW_FRAMEBUFFER_BINDING"},
        {GL_FRAMEBUFFER, "FRAMEBUFFER"},
        {GL_DRAW_FRAMEBUFFER, "DRAW_FRAMEBUFFER"},
        {GL_RENDERBUFFER, "RENDERBUFFER"},
        {GL_COLOR_ATTACHMENT0, "COLOR_ATTACHMENT0"},
        {GL_DEPTH_ATTACHMENT, "DEPTH_ATTACHMENT"},
        {GL_RGBA, "RGBA"},
        {GL_DEPTH_COMPONENT, "DEPTH_COMPONENT"},
        {GL_DEPTH_COMPONENT24, "DEPTH_COMPONENT24"},
        {GL_UNSIGNED_BYTE, "UNSIGNED_BYTE"},
        {GL_FLOAT, "FLOAT"},
        {GL_COLOR_BUFFER_BIT, "COLOR"},
        {GL_DEPTH_BUFFER_BIT, "DEPTH"},
    };
    const auto found = names.find(enumerant);
    return found == names.end() ? std::to_string(enumerant) : found->second;
}

} // namespace

RecordingGLCalls::RecordingGLCalls(CallJournal& journal) : journal_(journal) {
    setGLCalls(this);
}

RecordingGLCalls::~RecordingGLCalls() {
    setGLCalls(nullptr);
}

void RecordingGLCalls::viewport(int x, int y, int width, int height) {
    viewport_ = {x, y, width, height};
    if (!isQuiet) {
        journal_.addCall("glViewport", x, y, width, height);
    }
}

void RecordingGLCalls::getIntegerv(uint32_t parameter, int* values) {
    journal_.addCall("glGetIntegerv", nameOf(parameter));
    if (parameter == GL_VIEWPORT) {
        std::ranges::copy(viewport_, values);
    } else if (parameter == GL_DRAW_FRAMEBUFFER_BINDING) {
        *values = static_cast<int>(boundFramebuffer);
    }
}

// As whole numbers: the host clears to black and white only.
void RecordingGLCalls::clearColor(float red, float green, float blue, float alpha) {
    journal_.addCall("glClearColor", static_cast<int>(red), static_cast<int>(green),
                     static_cast<int>(blue), static_cast<int>(alpha));
}

void RecordingGLCalls::clear(uint32_t buffers) {
    journal_.addCall("glClear", nameOf(buffers));
}

void RecordingGLCalls::drawBuffer(uint32_t buffer) {
    journal_.addCall("glDrawBuffer", nameOf(buffer));
}

void RecordingGLCalls::readPixels(int x, int y, int width, int height, uint32_t format,
                                  uint32_t type, void* pixels) {
    journal_.addCall("glReadPixels", x, y, width, height, nameOf(format), nameOf(type));
    if (format == GL_DEPTH_COMPONENT) {
        *static_cast<float*>(pixels) = depth;
        return;
    }
    auto* byte = static_cast<uint8_t*>(pixels);
    for (int i = 0; i < width * height; ++i) {
        const uint32_t id = ids[static_cast<size_t>(i) % ids.size()];
        for (const int shift : {24, 16, 8, 0}) {
            *byte++ = static_cast<uint8_t>(id >> shift);
        }
    }
}

uint32_t RecordingGLCalls::genFramebuffer() {
    journal_.addCall("glGenFramebuffers", ++lastObject_);
    return lastObject_;
}

void RecordingGLCalls::deleteFramebuffer(uint32_t framebuffer) {
    journal_.addCall("glDeleteFramebuffers", framebuffer);
}

void RecordingGLCalls::bindFramebuffer(uint32_t target, uint32_t framebuffer) {
    journal_.addCall("glBindFramebuffer", nameOf(target), framebuffer);
    boundFramebuffer = framebuffer;
}

uint32_t RecordingGLCalls::checkFramebufferStatus(uint32_t target) {
    journal_.addCall("glCheckFramebufferStatus", nameOf(target));
    return isComplete ? GL_FRAMEBUFFER_COMPLETE : GL_FRAMEBUFFER_UNSUPPORTED;
}

uint32_t RecordingGLCalls::genRenderbuffer() {
    journal_.addCall("glGenRenderbuffers", ++lastObject_);
    return lastObject_;
}

void RecordingGLCalls::deleteRenderbuffer(uint32_t renderbuffer) {
    journal_.addCall("glDeleteRenderbuffers", renderbuffer);
}

void RecordingGLCalls::bindRenderbuffer(uint32_t target, uint32_t renderbuffer) {
    journal_.addCall("glBindRenderbuffer", nameOf(target), renderbuffer);
}

void RecordingGLCalls::renderbufferStorage(uint32_t target, uint32_t format, int width,
                                           int height) {
    journal_.addCall("glRenderbufferStorage", nameOf(target), nameOf(format), width, height);
}

void RecordingGLCalls::framebufferRenderbuffer(uint32_t target, uint32_t attachment,
                                               uint32_t renderbufferTarget, uint32_t renderbuffer) {
    journal_.addCall("glFramebufferRenderbuffer", nameOf(target), nameOf(attachment),
                     nameOf(renderbufferTarget), renderbuffer);
}

} // namespace ViewerAPI::test
