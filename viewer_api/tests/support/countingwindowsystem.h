#pragma once

#include "support/calljournal.h"

#include "VlWindowSystem/WindowSystem.h"

#include <map>
#include <set>
#include <string>

namespace ViewerAPI::test {

/// A window system without windows: writes every call into a journal and answers as told.
///
/// Window ids get device contexts named "dc" and the id, contexts are "context1" and so on; the
/// journal shows them by these names. The binding is kept as a real one would keep it. It is the
/// window system in use while it lives.
class CountingWindowSystem : public WindowSystem {
public:
    explicit CountingWindowSystem(CallJournal& journal);
    ~CountingWindowSystem() override;

    /// The operations that fail from now on, by name: "getDC", "setPixelFormat".
    std::set<std::string> failing;
    /// Calls the journal does not show, for tests of something else.
    bool isQuiet = false;

    [[nodiscard]] NativeDeviceContext deviceContextOf(std::intptr_t windowId);

    int glewInit() override;
    const char* glewGetErrorString(int error) override;
    NativeDeviceContext getDC(std::intptr_t windowId) override;
    int releaseDC(std::intptr_t windowId, NativeDeviceContext deviceContext) override;
    int choosePixelFormat(NativeDeviceContext deviceContext, const int* attributes,
                          int* format) override;
    int describePixelFormat(NativeDeviceContext deviceContext, int format, unsigned size,
                            PixelFormatDescriptor* descriptor) override;
    int setPixelFormat(NativeDeviceContext deviceContext, int format,
                       const PixelFormatDescriptor* descriptor) override;
    NativeGLContext createContextAttribs(NativeDeviceContext deviceContext, NativeGLContext share,
                                         const int* attributes) override;
    int makeCurrent(NativeDeviceContext deviceContext, NativeGLContext context) override;
    NativeDeviceContext getCurrentDC() override;
    NativeGLContext getCurrentContext() override;
    int swapBuffers(NativeDeviceContext deviceContext) override;

    /// What describePixelFormat fills in; setPixelFormat shows whether it came back unchanged.
    PixelFormatDescriptor description{};
    NativeDeviceContext currentDeviceContext = nullptr;
    NativeGLContext currentContext = nullptr;

private:
    template <class... Parts>
    void record(const Parts&... parts) {
        if (!isQuiet) {
            journal_.addCall(parts...);
        }
    }
    [[nodiscard]] bool fails(const std::string& operation) const {
        return failing.contains(operation);
    }

    CallJournal& journal_;
    // Handles point at their own names; the addresses in a map stay.
    std::map<std::intptr_t, std::string> deviceContexts_;
    std::map<int, std::string> contexts_;
};

} // namespace ViewerAPI::test
