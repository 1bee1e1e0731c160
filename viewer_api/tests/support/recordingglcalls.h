#pragma once

#include "glcalls.h"
#include "support/calljournal.h"

namespace ViewerAPI::test {

/// Writes the host's own GL calls into a journal instead of making them. In force while it lives.
class RecordingGLCalls : public GLCalls {
public:
    explicit RecordingGLCalls(CallJournal& journal) : journal_(journal) { setGLCalls(this); }
    ~RecordingGLCalls() override { setGLCalls(nullptr); }

    void viewport(int x, int y, int width, int height) override {
        if (!isQuiet)
            journal_.addCall("glViewport", x, y, width, height);
    }
    void enable(uint32_t capability) override { journal_.addCall("glEnable", capability); }
    void disable(uint32_t capability) override { journal_.addCall("glDisable", capability); }

    /// Leaves out glViewport, which comes with every binding.
    bool isQuiet = false;

private:
    CallJournal& journal_;
};

} // namespace ViewerAPI::test
