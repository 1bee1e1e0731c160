#include "VlWindowSystem/Offscreen.h"

#include "support/debuglog.h"
#include "support/surface.h"

#include <GL/glew.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

class OffscreenGLTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(windowSystem().glewInit(), 0);
        id = createOffscreen(8, 4);
        surface = std::make_unique<TestSurface>(id);
        if (!surface->dc) {
            GTEST_SKIP() << "no off-screen OpenGL on this machine";
        }
        context = surface->createContext();
        ASSERT_NE(context, nullptr);
        ASSERT_EQ(windowSystem().makeCurrent(surface->dc, context), 1);
    }
    void TearDown() override {
        EXPECT_EQ(windowSystem().makeCurrent(surface ? surface->dc : nullptr, nullptr), 1);
    }

    static void clear(float red, float green, float blue, float alpha) {
        glClearColor(red, green, blue, alpha);
        glClear(GL_COLOR_BUFFER_BIT);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    static std::vector<int> pixel(const Image& image, int x, int y) {
        const auto* const p = &image.rgba[static_cast<std::size_t>((y * image.width + x) * 4)];
        return {p[0], p[1], p[2], p[3]};
    }

    int id = 0;
    std::unique_ptr<TestSurface> surface;
    NativeGLContext context = nullptr;
};

TEST_F(OffscreenGLTest, aClearedColourIsReadBackAfterTheSwap) {
    clear(1.0F, 0.5F, 0.0F, 1.0F);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    const Image image = readPixels(id);
    EXPECT_EQ(image.width, 8);
    EXPECT_EQ(image.height, 4);
    ASSERT_EQ(image.rgba.size(), 8u * 4u * 4u);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x) {
            EXPECT_THAT(pixel(image, x, y), ElementsAre(255, testing::AnyOf(127, 128), 0, 255));
        }
    }
}

TEST_F(OffscreenGLTest, nothingShowsBeforeTheSwap) {
    EXPECT_THAT(readPixels(id).rgba, Each(0));
    clear(1, 1, 1, 1);
    EXPECT_THAT(readPixels(id).rgba, Each(0));
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    clear(0, 1, 0, 1);
    EXPECT_THAT(readPixels(id).rgba, Each(255));
}

TEST_F(OffscreenGLTest, theTopRowComesFirst) {
    clear(0, 0, 0, 1);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 3, 8, 1); // GL's highest row
    clear(1, 0, 0, 1);
    glDisable(GL_SCISSOR_TEST);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    const Image image = readPixels(id);
    EXPECT_THAT(pixel(image, 0, 0), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(pixel(image, 0, 1), ElementsAre(0, 0, 0, 255));
}

TEST_F(OffscreenGLTest, theContextIsWhatWasAskedFor) {
    EXPECT_TRUE(GLEW_VERSION_4_0);
    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    EXPECT_EQ(profile & GL_CONTEXT_CORE_PROFILE_BIT, 0);
    GLint bits[6] = {};
    const GLenum names[6] = {GL_RED_BITS,   GL_GREEN_BITS, GL_BLUE_BITS,
                             GL_ALPHA_BITS, GL_DEPTH_BITS, GL_STENCIL_BITS};
    for (int i = 0; i < 6; ++i) {
        glGetIntegerv(names[i], &bits[i]);
    }
    EXPECT_THAT(bits, ElementsAre(8, 8, 8, 8, 24, 8));
    // The old pipeline is there.
    glBegin(GL_POINTS);
    glVertex2f(0, 0);
    glEnd();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(OffscreenGLTest, theDescriptorTellsTheBits) {
    EXPECT_EQ(surface->descriptor.bytes[0], 40); // its own size
    EXPECT_EQ(surface->descriptor.bytes[9], 32); // colour
    EXPECT_EQ(surface->descriptor.bytes[23], 24);
    EXPECT_EQ(surface->descriptor.bytes[24], 8);
}

TEST_F(OffscreenGLTest, theSwapLeavesTheStateOfGLAsItWas) {
    GLuint framebuffer = 0;
    GLuint buffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glPixelStorei(GL_PACK_ROW_LENGTH, 100);
    glPixelStorei(GL_PACK_SKIP_ROWS, 2);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 3);
    clear(1, 1, 1, 1);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    EXPECT_THAT(readPixels(id).rgba, Each(255));

    const std::pair<GLenum, GLint> expected[] = {
        {GL_READ_FRAMEBUFFER_BINDING, static_cast<GLint>(framebuffer)},
        {GL_PIXEL_PACK_BUFFER_BINDING, static_cast<GLint>(buffer)},
        {GL_PACK_ALIGNMENT, 8},
        {GL_PACK_ROW_LENGTH, 100},
        {GL_PACK_SKIP_ROWS, 2},
        {GL_PACK_SKIP_PIXELS, 3}};
    for (const auto& [name, value] : expected) {
        GLint actual = -1;
        glGetIntegerv(name, &actual);
        EXPECT_EQ(actual, value) << std::hex << name;
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(OffscreenGLTest, twoSurfacesShareOneContext) {
    const int otherId = createOffscreen(2, 2);
    const TestSurface other(otherId, *surface);
    ASSERT_NE(other.dc, nullptr);
    EXPECT_NE(other.dc, surface->dc);

    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    clear(1, 0, 0, 1);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    ASSERT_EQ(windowSystem().makeCurrent(other.dc, context), 1);
    EXPECT_EQ(windowSystem().getCurrentDC(), other.dc);
    EXPECT_EQ(windowSystem().getCurrentContext(), context);
    EXPECT_TRUE(glIsTexture(texture));
    clear(0, 0, 1, 1);
    ASSERT_EQ(windowSystem().swapBuffers(other.dc), 1);

    EXPECT_THAT(pixel(readPixels(id), 0, 0), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(pixel(readPixels(otherId), 0, 0), ElementsAre(0, 0, 255, 255));
    EXPECT_EQ(readPixels(otherId).width, 2);
    destroyOffscreen(otherId);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
}

TEST_F(OffscreenGLTest, aSurfaceThatIsNotCurrentIsSwappedAndTheBindingStays) {
    const int otherId = createOffscreen(2, 2);
    const TestSurface other(otherId, *surface);
    EXPECT_EQ(windowSystem().swapBuffers(other.dc), 0); // nothing was ever drawn to it
    clear(1, 1, 1, 1);
    ASSERT_EQ(windowSystem().makeCurrent(other.dc, context), 1);
    EXPECT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    EXPECT_EQ(windowSystem().getCurrentDC(), other.dc);
    EXPECT_THAT(readPixels(id).rgba, Each(255));

    ASSERT_EQ(windowSystem().makeCurrent(other.dc, nullptr), 1);
    EXPECT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    destroyOffscreen(otherId);
}

TEST_F(OffscreenGLTest, aNullContextUnbinds) {
    EXPECT_EQ(windowSystem().getCurrentDC(), surface->dc);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, nullptr), 1);
    EXPECT_EQ(windowSystem().getCurrentDC(), nullptr);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, nullptr), 1);
}

TEST_F(OffscreenGLTest, aWindowHasOneDeviceContextHoweverOftenAskedFor) {
    EXPECT_EQ(windowSystem().getDC(id), surface->dc);
    EXPECT_EQ(windowSystem().releaseDC(id, surface->dc), 1);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, context), 1); // one of two is left
    EXPECT_EQ(windowSystem().releaseDC(id, surface->dc), 1);
    EXPECT_EQ(windowSystem().releaseDC(id, surface->dc), 0);
    EXPECT_EQ(windowSystem().getCurrentContext(), context);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, context), 0);
}

TEST_F(OffscreenGLTest, aPixelFormatMayBeSetTwiceButNotChanged) {
    EXPECT_EQ(windowSystem().setPixelFormat(surface->dc, surface->format, &surface->descriptor), 1);
    EXPECT_EQ(windowSystem().setPixelFormat(surface->dc, surface->format + 1, &surface->descriptor),
              0);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, context), 1);
}

TEST_F(OffscreenGLTest, resizingKeepsTheDeviceContextAndWhatIsCurrent) {
    clear(1, 1, 1, 1);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    resizeOffscreen(id, 16, 2);
    EXPECT_EQ(windowSystem().getCurrentDC(), surface->dc);
    EXPECT_EQ(windowSystem().getDC(id), surface->dc);
    Image image = readPixels(id);
    EXPECT_EQ(image.width, 16);
    EXPECT_EQ(image.height, 2);
    EXPECT_THAT(image.rgba, Each(0));

    clear(1, 1, 1, 1);
    ASSERT_EQ(windowSystem().swapBuffers(surface->dc), 1);
    image = readPixels(id);
    EXPECT_EQ(image.rgba.size(), 16u * 2u * 4u);
    EXPECT_THAT(image.rgba, Each(255));
}

TEST_F(OffscreenGLTest, anEndedSurfaceIsNoLongerCurrentAndItsHandlesFail) {
    destroyOffscreen(id);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    EXPECT_EQ(windowSystem().getDC(id), nullptr);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, context), 0);
    EXPECT_EQ(windowSystem().swapBuffers(surface->dc), 0);
    EXPECT_EQ(windowSystem().releaseDC(id, surface->dc), 0);
    EXPECT_EQ(windowSystem().makeCurrent(surface->dc, nullptr), 1);
}

TEST_F(OffscreenGLTest, impossibleRequestsAnswerZeroOrNull) {
    WindowSystem& system = windowSystem();
    const NativeDeviceContext none = nullptr;
    auto* const unknown = reinterpret_cast<NativeDeviceContext>(std::uintptr_t{0x12345});
    int format = -7;
    PixelFormatDescriptor descriptor{};
    EXPECT_EQ(system.getDC(0), nullptr);
    EXPECT_EQ(system.getDC(-123456), nullptr);
    for (const NativeDeviceContext dc : {none, unknown}) {
        EXPECT_EQ(system.choosePixelFormat(dc, kFormatAttributes, &format), 0);
        EXPECT_EQ(system.describePixelFormat(dc, 1, sizeof(descriptor), &descriptor), 0);
        EXPECT_EQ(system.setPixelFormat(dc, 1, &descriptor), 0);
        EXPECT_EQ(system.createContextAttribs(dc, nullptr, kContextAttributes), nullptr);
        EXPECT_EQ(system.makeCurrent(dc, context), 0);
        EXPECT_EQ(system.swapBuffers(dc), 0);
        EXPECT_EQ(system.releaseDC(id, dc), 0);
    }
    const int tooDeep[] = {kPixelFormatDepthBits, 500, 0};
    const int unknownName[] = {0x9999, 1, 0};
    const int indexed[] = {kPixelFormatPixelType, 0x202C, 0};
    DebugLog log;
    for (const int* attributes : {tooDeep, unknownName, indexed}) {
        EXPECT_EQ(system.choosePixelFormat(surface->dc, attributes, &format), 0);
        EXPECT_THAT(log.take(), ElementsAre("No EGL config has what was asked for."));
    }
    EXPECT_EQ(format, -7);
    for (const int wrong : {-1, 0, 1 << 30}) {
        EXPECT_EQ(system.describePixelFormat(surface->dc, wrong, sizeof(descriptor), &descriptor),
                  0);
    }
    EXPECT_EQ(system.describePixelFormat(surface->dc, surface->format, 39, &descriptor), 0);
    const int tooNew[] = {kContextMajorVersion, 99, 0};
    EXPECT_EQ(system.createContextAttribs(surface->dc, nullptr, tooNew), nullptr);
    EXPECT_THAT(log.take(), ElementsAre(StartsWith("The context can't be made: ")));
    EXPECT_EQ(system.createContextAttribs(surface->dc, nullptr, unknownName), nullptr);
    EXPECT_EQ(system.releaseDC(id - 1, surface->dc), 0);
    EXPECT_EQ(system.getCurrentDC(), surface->dc);
}

TEST_F(OffscreenGLTest, aDeviceContextWithoutFormatTakesNoContext) {
    const int bareId = createOffscreen(2, 2);
    const NativeDeviceContext bare = windowSystem().getDC(bareId);
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(windowSystem().createContextAttribs(bare, nullptr, kContextAttributes), nullptr);
    EXPECT_EQ(windowSystem().makeCurrent(bare, context), 0);
    EXPECT_EQ(windowSystem().swapBuffers(bare), 0);
    EXPECT_EQ(windowSystem().getCurrentDC(), surface->dc);
    destroyOffscreen(bareId);
}

TEST_F(OffscreenGLTest, theLoaderLeavesTheCallersContextCurrent) {
    EXPECT_EQ(windowSystem().glewInit(), 0);
    EXPECT_EQ(windowSystem().getCurrentContext(), context);
}

TEST(Offscreen, theLoaderNeedsNoContextAndLeavesNone) {
    EXPECT_EQ(windowSystem().makeCurrent(nullptr, nullptr), 1);
    EXPECT_EQ(windowSystem().glewInit(), 0);
    EXPECT_NE(glBindFramebuffer, nullptr);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    EXPECT_EQ(windowSystem().getCurrentDC(), nullptr);
    EXPECT_STREQ(windowSystem().glewGetErrorString(1), "Missing GL version");
    EXPECT_NE(windowSystem().glewGetErrorString(12345), nullptr);
}

TEST(Offscreen, whatIsOpenedAheadIsLoadedWithoutAContext) {
    openOffscreenAhead();
    openOffscreenAhead();
    waitForOffscreenOpening();
    EXPECT_NE(glGenVertexArrays, nullptr);
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    waitForOffscreenOpening();
}

TEST(Offscreen, whatIsOpenedAheadIsDrawnTo) {
    openOffscreenAhead();
    ASSERT_EQ(windowSystem().glewInit(), 0);
    const int id = createOffscreen(2, 1);
    const TestSurface surface(id);
    if (!surface.dc) {
        GTEST_SKIP() << "no off-screen OpenGL on this machine";
    }
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, surface.createContext()), 1);
    openOffscreenAhead();
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    EXPECT_THAT(readPixels(id).rgba, ElementsAre(255, 0, 0, 255, 255, 0, 0, 255));
    EXPECT_EQ(windowSystem().makeCurrent(surface.dc, nullptr), 1);
    destroyOffscreen(id);
}

TEST(Offscreen, idsAreNegativeAndNeverUsedAgain) {
    const int first = createOffscreen(1, 1);
    destroyOffscreen(first);
    const int second = createOffscreen(1, 1);
    EXPECT_LT(first, 0);
    EXPECT_LT(second, 0);
    EXPECT_NE(first, second);
    destroyOffscreen(second);
}

template <class Action>
std::string errorOf(Action&& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Offscreen, impossibleSizesAndUnknownIdsAreErrorsThatNameThem) {
    for (const auto& [width, height] :
         {std::pair(0, 5), {5, 0}, {-1, 5}, {16385, 5}, {5, 1 << 30}}) {
        EXPECT_EQ(errorOf([w = width, h = height] { createOffscreen(w, h); }),
                  "An off-screen surface can't be " + std::to_string(width) + "x" +
                      std::to_string(height) + " pixels: each must be from 1 to 16384");
    }
    for (const int id : {-99999, 0, 5}) {
        const std::string text = "There is no off-screen surface " + std::to_string(id);
        EXPECT_EQ(errorOf([&] { resizeOffscreen(id, 1, 1); }), text);
        EXPECT_EQ(errorOf([&] { destroyOffscreen(id); }), text);
        EXPECT_EQ(errorOf([&] { static_cast<void>(readPixels(id)); }), text);
    }
    const int id = createOffscreen(3, 2);
    EXPECT_NE(errorOf([&] { resizeOffscreen(id, 0, 1); }), "no error");
    EXPECT_EQ(readPixels(id).width, 3);
    destroyOffscreen(id);
}

} // namespace
