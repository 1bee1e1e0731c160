#include "VlWindowSystem/WindowSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

class MockWindowSystem : public WindowSystem {
public:
    MOCK_METHOD(int, glewInit, (), (override));
    MOCK_METHOD(const char*, glewGetErrorString, (int), (override));
    MOCK_METHOD(NativeDeviceContext, getDC, (std::intptr_t), (override));
    MOCK_METHOD(int, releaseDC, (std::intptr_t, NativeDeviceContext), (override));
    MOCK_METHOD(int, choosePixelFormat, (NativeDeviceContext, const int*, int*), (override));
    MOCK_METHOD(int, describePixelFormat,
                (NativeDeviceContext, int, unsigned, PixelFormatDescriptor*), (override));
    MOCK_METHOD(int, setPixelFormat, (NativeDeviceContext, int, const PixelFormatDescriptor*),
                (override));
    MOCK_METHOD(NativeGLContext, createContextAttribs,
                (NativeDeviceContext, NativeGLContext, const int*), (override));
    MOCK_METHOD(int, makeCurrent, (NativeDeviceContext, NativeGLContext), (override));
    MOCK_METHOD(NativeDeviceContext, getCurrentDC, (), (override));
    MOCK_METHOD(NativeGLContext, getCurrentContext, (), (override));
    MOCK_METHOD(int, swapBuffers, (NativeDeviceContext), (override));
};

TEST(WindowSystem, anotherOneTakesItsPlaceUntilNullRestoresIt) {
    WindowSystem& before = windowSystem();
    MockWindowSystem mock;
    setWindowSystem(&mock);
    EXPECT_EQ(&windowSystem(), &mock);
    EXPECT_CALL(mock, swapBuffers(nullptr)).WillOnce(testing::Return(1));
    EXPECT_EQ(windowSystem().swapBuffers(nullptr), 1);
    setWindowSystem(nullptr);
    EXPECT_EQ(&windowSystem(), &before);
}

} // namespace
