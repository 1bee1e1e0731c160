#include "vlviewportpicker.h"

#include "glcalls.h"

#include "VlAttribute/GroupBuilder.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <set>
#include <string>
#include <utility>

namespace ViewerAPI {

namespace {

constexpr int32_t kBackground = -1;
constexpr size_t kBytesPerPixel = 4;

int32_t idOf(const uint8_t* pixel) {
    return static_cast<int32_t>(uint32_t{pixel[0]} << 24 | uint32_t{pixel[1]} << 16 |
                                uint32_t{pixel[2]} << 8 | uint32_t{pixel[3]});
}

int boundFramebuffer() {
    int name = 0;
    glCalls().getIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &name);
    return name;
}

std::array<int, 4> viewportInForce() {
    std::array<int, 4> viewport{};
    glCalls().getIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

// The region with rows counted from the bottom, as GL does. It is read as it is, also beyond the
// surface. Only where it reaches farther than any window it is cut to that: drivers count wrong
// there and crash, and memory ends.
PixelRegion inGL(const PixelRegion& region) {
    constexpr int64_t kFarthest = 8192;
    const std::array<int, 4> viewport = viewportInForce();
    int64_t left = region.x;
    int64_t right = left + region.width;
    int64_t bottom = int64_t{viewport[3]} - region.height - region.y;
    int64_t top = bottom + region.height;
    if (std::max({-left, right, -bottom, top}) > kFarthest) {
        const auto cut = [](int64_t& place, int size) {
            place = std::clamp(place, int64_t{0}, int64_t{std::max(0, size)});
        };
        cut(left, viewport[2]);
        cut(right, viewport[2]);
        cut(bottom, viewport[3]);
        cut(top, viewport[3]);
    }
    return {static_cast<int>(left), static_cast<int>(bottom), static_cast<int>(right - left),
            static_cast<int>(top - bottom)};
}

std::set<int32_t> idsIn(const PixelRegion& region) {
    // GL leaves alone what lies outside the framebuffer: it is background.
    std::vector<uint8_t> pixels(static_cast<size_t>(region.width) *
                                    static_cast<size_t>(region.height) * kBytesPerPixel,
                                0xFF);
    std::set<int32_t> ids;
    if (pixels.empty()) {
        return ids;
    }
    glCalls().readPixels(region.x, region.y, region.width, region.height, GL_RGBA, GL_UNSIGNED_BYTE,
                         pixels.data());
    int32_t last = kBackground;
    for (size_t i = 0; i < pixels.size(); i += kBytesPerPixel) {
        // Neighbours are mostly equal.
        const int32_t id = idOf(&pixels[i]);
        if (id != last) {
            ids.insert(id);
        }
        last = id;
    }
    return ids;
}

} // namespace

void VlViewportPicker::resize(int width, int height) {
    if (width == 0 || height == 0 || !glCalls().canReachFramebuffers()) {
        return;
    }
    cleanup();
    makeFramebuffer(width, height);
    // This falls on the framebuffer that was bound before, as a rule the window's, and has to stay
    // behind the restored binding: what a window shows in an area that it has just gained is
    // undefined until then. The picker's own image is cleared before each use.
    clear(true);
}

void VlViewportPicker::makeFramebuffer(int width, int height) {
    GLCalls& gl = glCalls();
    // Nothing here depends on the viewport; with it a trace of GL calls tells which window the
    // surface is made for.
    viewportInForce();
    previousFramebuffer = boundFramebuffer();
    framebuffer = gl.genFramebuffer();
    gl.bindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    colorRenderbuffer = gl.genRenderbuffer();
    depthRenderbuffer = gl.genRenderbuffer();
    gl.bindRenderbuffer(GL_RENDERBUFFER, colorRenderbuffer);
    gl.renderbufferStorage(GL_RENDERBUFFER, GL_RGBA, width, height);
    gl.framebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                               colorRenderbuffer);
    gl.bindRenderbuffer(GL_RENDERBUFFER, depthRenderbuffer);
    gl.renderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
    gl.framebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                               depthRenderbuffer);
    gl.bindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
    if (gl.checkFramebufferStatus(GL_DRAW_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        std::cerr << "VlViewportPicker: There is a problem with the FBO" << std::endl;
    }
    gl.bindFramebuffer(GL_FRAMEBUFFER, static_cast<uint32_t>(previousFramebuffer));
    hasFramebuffer_ = true;
    // Whoever drew into the former one has nothing to read any more.
    isBound_ = false;
}

void VlViewportPicker::cleanup() {
    // GL gives the names of deleted objects to the next ones, of other viewports perhaps: no name
    // is deleted twice, nor in the application's own context.
    if (!std::exchange(hasFramebuffer_, false) || !glCalls().canReachFramebuffers()) {
        return;
    }
    GLCalls& gl = glCalls();
    gl.bindFramebuffer(GL_FRAMEBUFFER, 0);
    gl.deleteRenderbuffer(colorRenderbuffer);
    gl.deleteRenderbuffer(depthRenderbuffer);
    gl.deleteFramebuffer(framebuffer);
}

void VlViewportPicker::bind() {
    if (!hasFramebuffer_) {
        return;
    }
    previousFramebuffer = boundFramebuffer();
    glCalls().bindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glCalls().drawBuffer(GL_COLOR_ATTACHMENT0);
    isBound_ = true;
}

void VlViewportPicker::unbind() {
    // Also when a cleanup came in between, which has bound the window's framebuffer.
    if (std::exchange(isBound_, false)) {
        glCalls().bindFramebuffer(GL_FRAMEBUFFER, static_cast<uint32_t>(previousFramebuffer));
    }
}

void VlViewportPicker::clear(bool dropObjects) {
    if (dropObjects) {
        pickableObjects.clear();
    }
    GLCalls& gl = glCalls();
    gl.clearColor(1, 1, 1, 1);
    gl.clear(GL_COLOR_BUFFER_BIT);
    gl.clearColor(0, 0, 0, 0);
    gl.clear(GL_DEPTH_BUFFER_BIT);
}

uint64_t VlViewportPicker::addPickableObject(VlAttribute::Attribute object) {
    pickableObjects.push_back(std::move(object));
    return pickableObjects.size() - 1;
}

VlAttribute::GroupAttribute VlViewportPicker::pick(const PixelRegion& region, float* depthOut) {
    if (!hasFramebuffer_ || !isBound_ || region.width <= 0 || region.height <= 0) {
        return {};
    }
    const PixelRegion read = inGL(region);
    VlAttribute::GroupBuilder picked;
    for (const int32_t id : idsIn(read)) {
        if (id >= 0 && static_cast<size_t>(id) < pickableObjects.size()) {
            picked.set(std::to_string(id), pickableObjects[static_cast<size_t>(id)]);
        }
    }
    const bool isOnePixel = region.width == 1 && region.height == 1;
    if (depthOut && isOnePixel && read.width > 0 && read.height > 0) {
        glCalls().readPixels(read.x, read.y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, depthOut);
    }
    return picked.build();
}

} // namespace ViewerAPI
