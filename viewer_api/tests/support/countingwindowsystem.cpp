#include "support/countingwindowsystem.h"

#include <numeric>

namespace ViewerAPI::test {

namespace {

constexpr int kLoaderError = 4711;
constexpr int kFormat = 33;

std::string nameOf(const void* handle) {
    return handle ? *static_cast<const std::string*>(handle) : "null";
}

// "8193=1 8208=1": the pairs up to the 0 that ends them.
std::string pairsOf(const int* attributes) {
    std::string text;
    for (; *attributes; attributes += 2) {
        text += " " + std::to_string(attributes[0]) + "=" + std::to_string(attributes[1]);
    }
    return text.empty() ? text : text.substr(1);
}

} // namespace

CountingWindowSystem::CountingWindowSystem(CallJournal& journal) : journal_(journal) {
    std::iota(std::begin(description.bytes), std::end(description.bytes),
              static_cast<unsigned char>(1));
    setWindowSystem(this);
}

CountingWindowSystem::~CountingWindowSystem() {
    setWindowSystem(nullptr);
}

NativeDeviceContext CountingWindowSystem::deviceContextOf(std::intptr_t windowId) {
    return &deviceContexts_.try_emplace(windowId, "dc" + std::to_string(windowId)).first->second;
}

int CountingWindowSystem::glewInit() {
    record("glewInit");
    return fails("glewInit") ? kLoaderError : 0;
}

const char* CountingWindowSystem::glewGetErrorString(int error) {
    record("glewGetErrorString", error);
    return "the loader's own words";
}

NativeDeviceContext CountingWindowSystem::getDC(std::intptr_t windowId) {
    record("getDC", windowId);
    return fails("getDC") ? nullptr : deviceContextOf(windowId);
}

int CountingWindowSystem::releaseDC(std::intptr_t windowId, NativeDeviceContext deviceContext) {
    record("releaseDC", windowId, nameOf(deviceContext));
    return fails("releaseDC") ? 0 : 1;
}

int CountingWindowSystem::choosePixelFormat(NativeDeviceContext deviceContext,
                                            const int* attributes, int* format) {
    record("choosePixelFormat", nameOf(deviceContext), pairsOf(attributes));
    if (fails("choosePixelFormat")) {
        return 0;
    }
    *format = kFormat;
    return 1;
}

int CountingWindowSystem::describePixelFormat(NativeDeviceContext deviceContext, int format,
                                              unsigned size, PixelFormatDescriptor* descriptor) {
    record("describePixelFormat", nameOf(deviceContext), format, size);
    if (fails("describePixelFormat")) {
        return 0;
    }
    *descriptor = description;
    return 1;
}

int CountingWindowSystem::setPixelFormat(NativeDeviceContext deviceContext, int format,
                                         const PixelFormatDescriptor* descriptor) {
    record("setPixelFormat", nameOf(deviceContext), format,
           *descriptor == description ? "described" : "undescribed");
    return fails("setPixelFormat") ? 0 : 1;
}

NativeGLContext CountingWindowSystem::createContextAttribs(NativeDeviceContext deviceContext,
                                                           NativeGLContext share,
                                                           const int* attributes) {
    record("createContextAttribs", nameOf(deviceContext), nameOf(share), pairsOf(attributes));
    if (fails("createContextAttribs")) {
        return nullptr;
    }
    const int number = static_cast<int>(contexts_.size()) + 1;
    return &contexts_.try_emplace(number, "context" + std::to_string(number)).first->second;
}

int CountingWindowSystem::makeCurrent(NativeDeviceContext deviceContext, NativeGLContext context) {
    record("makeCurrent", nameOf(deviceContext), nameOf(context));
    if (fails("makeCurrent")) {
        return 0;
    }
    currentDeviceContext = context ? deviceContext : nullptr;
    currentContext = context;
    return 1;
}

NativeDeviceContext CountingWindowSystem::getCurrentDC() {
    record("getCurrentDC");
    return currentDeviceContext;
}

NativeGLContext CountingWindowSystem::getCurrentContext() {
    record("getCurrentContext");
    return currentContext;
}

int CountingWindowSystem::swapBuffers(NativeDeviceContext deviceContext) {
    record("swapBuffers", nameOf(deviceContext));
    return deviceContext && !fails("swapBuffers") ? 1 : 0;
}

} // namespace ViewerAPI::test
