#pragma once

#include "glcalls.h"
#include "support/calljournal.h"

#include <array>
#include <cstdint>
#include <vector>

namespace ViewerAPI::test {

/// Writes the host's own GL calls into a journal instead of making them, and keeps as much state as
/// the host asks for. In force while it lives.
///
/// Enumerants of framebuffers are shown by name, without their "GL_". Objects are numbered from 1
/// as they are made.
class RecordingGLCalls : public GLCalls {
public:
    explicit RecordingGLCalls(CallJournal& journal);
    ~RecordingGLCalls() override;

    /// Leaves out glViewport, which comes with every binding.
    bool isQuiet = false;
    /// Whether framebuffers can be made.
    bool reachesFramebuffers = false;
    bool isComplete = true; ///< as framebuffers are

    /// What the pixels read as: repeated over the region that is read, 4 bytes each.
    std::vector<uint32_t> ids = {0xFFFFFFFF};
    float depth = 1.0f;

    uint32_t boundFramebuffer = 0;

    void viewport(int x, int y, int width, int height) override;
    void enable(uint32_t capability) override { journal_.addCall("glEnable", capability); }
    void disable(uint32_t capability) override { journal_.addCall("glDisable", capability); }
    void getIntegerv(uint32_t parameter, int* values) override;
    void clearColor(float red, float green, float blue, float alpha) override;
    void clear(uint32_t buffers) override;
    void drawBuffer(uint32_t buffer) override;
    void readPixels(int x, int y, int width, int height, uint32_t format, uint32_t type,
                    void* pixels) override;
    bool canReachFramebuffers() override { return reachesFramebuffers; }
    uint32_t genFramebuffer() override;
    void deleteFramebuffer(uint32_t framebuffer) override;
    void bindFramebuffer(uint32_t target, uint32_t framebuffer) override;
    uint32_t checkFramebufferStatus(uint32_t target) override;
    uint32_t genRenderbuffer() override;
    void deleteRenderbuffer(uint32_t renderbuffer) override;
    void bindRenderbuffer(uint32_t target, uint32_t renderbuffer) override;
    void renderbufferStorage(uint32_t target, uint32_t format, int width, int height) override;
    void framebufferRenderbuffer(uint32_t target, uint32_t attachment, uint32_t renderbufferTarget,
                                 uint32_t renderbuffer) override;

private:
    CallJournal& journal_;
    std::array<int, 4> viewport_{};
    uint32_t lastObject_ = 0;
};

} // namespace ViewerAPI::test
