#include "VlWindowSystem/Offscreen.h"

#include "support/debuglog.h"
#include "support/surface.h"
#include "support/xvfb.h"

#include <GL/glew.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

// The first device context decides for the whole process, so each test runs in one of its own.
#define RUN_ALONE(body) EXPECT_EXIT(runAndExit(&body), testing::ExitedWithCode(0), "")

namespace {

using testing::ElementsAre;

class X11GLTest : public testing::Test {
protected:
    static constexpr const char* kServer = "VL_TEST_X_SERVER";

    static void SetUpTestSuite() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        // The processes of the tests find the server of the one that started them.
        if (const char* const running = std::getenv(kServer)) {
            setenv("DISPLAY", running, 1);
            return;
        }
        server = std::make_unique<Xvfb>();
        setenv("DISPLAY", server->getDisplay().c_str(), 1);
        setenv(kServer, server->getDisplay().c_str(), 1);
    }
    static void TearDownTestSuite() {
        if (server) {
            server.reset();
            unsetenv(kServer);
        }
    }

    void SetUp() override {
        if (server && !server->isRunning()) {
            GTEST_SKIP() << server->getReason();
        }
    }

    static std::unique_ptr<Xvfb> server;
};

std::unique_ptr<Xvfb> X11GLTest::server;

// Such a process prints no failures by itself; what it writes to stderr is shown when it fails.
void runAndExit(void (*body)()) {
    body();
    const testing::TestResult& result =
        *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < result.total_part_count(); ++i) {
        const testing::TestPartResult& part = result.GetTestPartResult(i);
        std::fprintf(stderr, "%s:%d: %s\n", part.file_name(), part.line_number(), part.message());
    }
    // No destructors: GL is still in use.
    std::_Exit(result.Failed() ? 1 : 0);
}

// The caller's own connection and windows, as a user interface has them.
class Windows {
public:
    Windows() : display(XOpenDisplay(nullptr)) {}

    long create(int width = 32, int height = 16) {
        const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0,
                                                  static_cast<unsigned>(width),
                                                  static_cast<unsigned>(height), 0, 0, 0);
        XMapWindow(display, window);
        XSync(display, False);
        return static_cast<long>(window);
    }
    // With a visual that has alpha; 0 when the server has none.
    long createWithAlpha() {
        XVisualInfo info;
        if (!XMatchVisualInfo(display, DefaultScreen(display), 32, TrueColor, &info)) {
            return 0;
        }
        XSetWindowAttributes attributes{};
        attributes.colormap =
            XCreateColormap(display, DefaultRootWindow(display), info.visual, AllocNone);
        const Window window =
            XCreateWindow(display, DefaultRootWindow(display), 0, 0, 8, 8, 0, info.depth,
                          InputOutput, info.visual, CWColormap | CWBorderPixel, &attributes);
        XSync(display, False);
        return static_cast<long>(window);
    }
    // With another visual than the screen's that lays out colours alike; 0 when there is none.
    long createWithAlikeVisual() {
        Visual* const usual = DefaultVisual(display, DefaultScreen(display));
        XVisualInfo wanted{};
        wanted.screen = DefaultScreen(display);
        wanted.depth = DefaultDepth(display, DefaultScreen(display));
        wanted.c_class = usual->c_class;
        wanted.red_mask = usual->red_mask;
        wanted.blue_mask = usual->blue_mask;
        int count = 0;
        XVisualInfo* const found =
            XGetVisualInfo(display,
                           VisualScreenMask | VisualDepthMask | VisualClassMask |
                               VisualRedMaskMask | VisualBlueMaskMask,
                           &wanted, &count);
        Window window = 0;
        // The last one, as far as can be from those that EGL knows.
        if (count > 1 && found[count - 1].visual != usual) {
            XSetWindowAttributes attributes{};
            attributes.colormap = XCreateColormap(display, DefaultRootWindow(display),
                                                  found[count - 1].visual, AllocNone);
            window = XCreateWindow(display, DefaultRootWindow(display), 0, 0, 32, 16, 0,
                                   wanted.depth, InputOutput, found[count - 1].visual,
                                   CWColormap | CWBorderPixel, &attributes);
            XMapWindow(display, window);
            XSync(display, False);
        }
        XFree(found);
        return static_cast<long>(window);
    }
    long createInputOnly() {
        const Window window =
            XCreateWindow(display, DefaultRootWindow(display), 0, 0, 8, 8, 0, 0, InputOnly,
                          static_cast<Visual*>(CopyFromParent), 0, nullptr);
        XSync(display, False);
        return static_cast<long>(window);
    }
    void destroy(long window) {
        XDestroyWindow(display, static_cast<Window>(window));
        XSync(display, False);
    }
    // 0xRRGGBB
    unsigned long pixel(long window, int x, int y) {
        XImage* const image =
            XGetImage(display, static_cast<Drawable>(window), x, y, 1, 1, AllPlanes, ZPixmap);
        const unsigned long value = image ? XGetPixel(image, 0, 0) & 0xFFFFFFul : ~0ul;
        if (image) {
            XDestroyImage(image);
        }
        return value;
    }

    Display* display;
};

void clear(float red, float green, float blue) {
    glClearColor(red, green, blue, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

void showColours() {
    Windows windows;
    const long window = windows.create();
    ASSERT_EQ(windowSystem().glewInit(), 0);
    const TestSurface surface(window);
    ASSERT_NE(surface.dc, nullptr);
    const NativeGLContext context = surface.createContext();
    ASSERT_NE(context, nullptr);
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
    EXPECT_TRUE(GLEW_VERSION_4_0);
    clear(1, 0, 0);
    ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    EXPECT_EQ(windows.pixel(window, 31, 15), 0xFF0000ul);
    clear(0, 1, 0);
    glFinish();
    EXPECT_EQ(windows.pixel(window, 31, 15), 0xFF0000ul); // not shown yet
    ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    EXPECT_EQ(windows.pixel(window, 31, 15), 0x00FF00ul);
}

TEST_F(X11GLTest, aWindowShowsWhatWasDrawnAfterTheSwap) {
    RUN_ALONE(showColours);
}

void shareTheContext() {
    Windows windows;
    const long first = windows.create();
    const long second = windows.create(8, 8);
    const TestSurface one(first);
    ASSERT_NE(one.dc, nullptr);
    const NativeGLContext context = one.createContext();
    const TestSurface two(second, one);
    ASSERT_NE(two.dc, nullptr);
    EXPECT_NE(one.dc, two.dc);
    EXPECT_EQ(windowSystem().getDC(first), one.dc);
    EXPECT_EQ(windowSystem().setPixelFormat(one.dc, one.format, &one.descriptor), 1);

    ASSERT_EQ(windowSystem().makeCurrent(one.dc, context), 1);
    clear(1, 0, 0);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASSERT_EQ(windowSystem().makeCurrent(two.dc, context), 1);
    EXPECT_EQ(windowSystem().getCurrentDC(), two.dc);
    EXPECT_TRUE(glIsTexture(texture));
    clear(0, 0, 1);
    ASSERT_EQ(windowSystem().swapBuffers(two.dc), 1);
    EXPECT_EQ(windows.pixel(second, 4, 4), 0x0000FFul);

    // An off-screen surface joins with the same format.
    const int id = createOffscreen(4, 4);
    const TestSurface offscreen(id, one);
    ASSERT_NE(offscreen.dc, nullptr);
    ASSERT_EQ(windowSystem().makeCurrent(offscreen.dc, context), 1);
    clear(0, 1, 0);
    ASSERT_EQ(windowSystem().swapBuffers(offscreen.dc), 1);
    const Image image = readPixels(id);
    EXPECT_EQ(image.rgba[0], 0);
    EXPECT_EQ(image.rgba[1], 255);
}

TEST_F(X11GLTest, windowsAndOffscreenSurfacesShareOneContext) {
    RUN_ALONE(shareTheContext);
}

void followTheSize() {
    Windows windows;
    const long window = windows.create(8, 8);
    const TestSurface surface(window);
    const NativeGLContext context = surface.createContext();
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
    clear(1, 0, 0);
    ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    XResizeWindow(windows.display, static_cast<Window>(window), 64, 64);
    XSync(windows.display, False);
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
    // The back buffer may take its new size with the next frame only.
    for (int frame = 0; frame < 2; ++frame) {
        glViewport(0, 0, 64, 64);
        clear(0, 1, 0);
        ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    }
    EXPECT_EQ(windows.pixel(window, 63, 63), 0x00FF00ul);
}

TEST_F(X11GLTest, theSurfaceFollowsTheSizeOfItsWindow) {
    RUN_ALONE(followTheSize);
}

void askForNoWindows() {
    Windows windows;
    DebugLog log;
    for (const std::intptr_t id :
         {std::intptr_t{1}, std::intptr_t{0x7FFFFFFF}, std::intptr_t{1} << 40}) {
        EXPECT_EQ(windowSystem().getDC(id), nullptr) << id;
        EXPECT_THAT(log.take(), ElementsAre("There is no window " + std::to_string(id) + "."));
    }
    EXPECT_EQ(windowSystem().getDC(0), nullptr);
    EXPECT_EQ(windowSystem().getDC(windows.createInputOnly()), nullptr);
    EXPECT_NE(windowSystem().getDC(windows.create()), nullptr);
}

TEST_F(X11GLTest, anIdThatIsNoWindowHasNoDeviceContext) {
    RUN_ALONE(askForNoWindows);
}

void loseTheWindow() {
    Windows windows;
    const long shown = windows.create();
    const long bare = windows.create();
    const TestSurface surface(shown);
    const NativeGLContext context = surface.createContext();
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
    const NativeDeviceContext bareDC = windowSystem().getDC(bare);
    ASSERT_NE(bareDC, nullptr);
    windows.destroy(shown);
    windows.destroy(bare);

    // Whether a dead window can still be bound is the driver's choice; showing it can't succeed.
    windowSystem().makeCurrent(surface.dc, context);
    clear(1, 0, 0);
    EXPECT_EQ(windowSystem().swapBuffers(surface.dc), 0);
    EXPECT_EQ(windowSystem().swapBuffers(surface.dc), 0);
    EXPECT_EQ(windowSystem().getDC(shown), nullptr);
    int format = 0;
    EXPECT_EQ(windowSystem().choosePixelFormat(bareDC, kFormatAttributes, &format), 0);
    EXPECT_EQ(windowSystem().setPixelFormat(bareDC, surface.format, &surface.descriptor), 0);
    EXPECT_EQ(windowSystem().makeCurrent(surface.dc, nullptr), 1);
    EXPECT_EQ(windowSystem().releaseDC(shown, surface.dc), 1);
    EXPECT_EQ(windowSystem().releaseDC(bare, bareDC), 1);

    // Others go on.
    const long next = windows.create();
    const TestSurface other(next, surface);
    ASSERT_NE(other.dc, nullptr);
    ASSERT_EQ(windowSystem().makeCurrent(other.dc, context), 1);
    clear(0, 0, 1);
    EXPECT_EQ(windowSystem().swapBuffers(other.dc), 1);
    EXPECT_EQ(windows.pixel(next, 0, 0), 0x0000FFul);
}

TEST_F(X11GLTest, aWindowThatWasDestroyedFailsAndEndsNoProcess) {
    RUN_ALONE(loseTheWindow);
}

void takeTheWindowAgain() {
    Windows windows;
    const long window = windows.create();
    const TestSurface first(window);
    const NativeGLContext context = first.createContext();
    ASSERT_EQ(windowSystem().makeCurrent(first.dc, context), 1);
    clear(1, 0, 0);
    ASSERT_EQ(windowSystem().swapBuffers(first.dc), 1);
    // A viewport gives its device context back while it is bound; the next one takes the window.
    ASSERT_EQ(windowSystem().releaseDC(window, first.dc), 1);
    const TestSurface again(window, first);
    ASSERT_NE(again.dc, nullptr);
    EXPECT_NE(again.dc, first.dc);
    ASSERT_EQ(windowSystem().makeCurrent(again.dc, context), 1);
    EXPECT_EQ(windowSystem().getCurrentDC(), again.dc);
    clear(0, 1, 0);
    ASSERT_EQ(windowSystem().swapBuffers(again.dc), 1);
    EXPECT_EQ(windows.pixel(window, 4, 4), 0x00FF00ul);
}

TEST_F(X11GLTest, aWindowGivenBackWhileBoundCanBeTakenAgain) {
    RUN_ALONE(takeTheWindowAgain);
}

void refuseTheVisual() {
    Windows windows;
    const long withAlpha = windows.createWithAlpha();
    ASSERT_NE(withAlpha, 0) << "the server has no visual with alpha";
    const TestSurface surface(windows.create());
    ASSERT_NE(surface.dc, nullptr);
    DebugLog log;
    const TestSurface refused(withAlpha, surface);
    EXPECT_EQ(refused.dc, nullptr);
    EXPECT_THAT(log.take(), ElementsAre("The pixel format isn't one for this window."));
    // What was there goes on.
    const NativeGLContext context = surface.createContext();
    EXPECT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
}

TEST_F(X11GLTest, aWindowOfAnotherVisualRefusesTheFormat) {
    RUN_ALONE(refuseTheVisual);
}

void drawToAlikeVisual() {
    Windows windows;
    const long window = windows.createWithAlikeVisual();
    ASSERT_NE(window, 0) << "the server has no second visual of the kind";
    ASSERT_EQ(windowSystem().glewInit(), 0);
    const TestSurface surface(window);
    ASSERT_NE(surface.dc, nullptr);
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, surface.createContext()), 1);
    clear(1, 0, 0);
    EXPECT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    EXPECT_EQ(windows.pixel(window, 0, 0), 0xFF0000ul);
}

TEST_F(X11GLTest, aWindowOfAVisualLikeAConfigsShowsItsColours) {
    RUN_ALONE(drawToAlikeVisual);
}

void comeSecond() {
    const int id = createOffscreen(4, 4);
    ASSERT_NE(windowSystem().getDC(id), nullptr);
    Windows windows;
    DebugLog log;
    EXPECT_EQ(windowSystem().getDC(windows.create()), nullptr);
    EXPECT_THAT(log.take(),
                ElementsAre("No windows here: the first device context was an off-screen one's."));
}

TEST_F(X11GLTest, theFirstDeviceContextDecidesTheDisplay) {
    RUN_ALONE(comeSecond);
}

void openOtherAhead() {
    openOffscreenAhead();
    Windows windows;
    EXPECT_NE(windowSystem().getDC(windows.create()), nullptr);
}

TEST_F(X11GLTest, whatIsOpenedAheadDecidesNothing) {
    RUN_ALONE(openOtherAhead);
}

void loadFirst() {
    ASSERT_EQ(windowSystem().glewInit(), 0);
    Windows windows;
    EXPECT_NE(windowSystem().getDC(windows.create()), nullptr);
}

TEST_F(X11GLTest, theLoaderDoesNotDecideTheDisplay) {
    RUN_ALONE(loadFirst);
}

void haveNoServer() {
    DebugLog log;
    setenv("DISPLAY", ":987", 1);
    EXPECT_EQ(windowSystem().getDC(1234), nullptr);
    EXPECT_THAT(log.take(), ElementsAre("There is no X server, or no EGL display on it."));
    unsetenv("DISPLAY");
    EXPECT_EQ(windowSystem().getDC(1234), nullptr);
    // A failure decides nothing.
    EXPECT_NE(windowSystem().getDC(createOffscreen(1, 1)), nullptr);
}

TEST_F(X11GLTest, withoutServerThereAreNoWindows) {
    RUN_ALONE(haveNoServer);
}

int foreignErrors = 0;

void leaveErrorsToTheirOwners() {
    XSetErrorHandler([](Display*, XErrorEvent*) {
        ++foreignErrors;
        return 0;
    });
    Windows windows;
    const long window = windows.create();
    EXPECT_EQ(windowSystem().getDC(0x7FFFFFF), nullptr);
    EXPECT_NE(windowSystem().getDC(window), nullptr);
    EXPECT_EQ(foreignErrors, 0);
    XDestroyWindow(windows.display, 0x7FFFFFF);
    XSync(windows.display, False);
    EXPECT_EQ(foreignErrors, 1);
}

TEST_F(X11GLTest, theErrorsOfOthersReachTheirOwnHandler) {
    RUN_ALONE(leaveErrorsToTheirOwners);
}

void loseTheServer() {
    Xvfb own;
    ASSERT_TRUE(own.isRunning());
    setenv("DISPLAY", own.getDisplay().c_str(), 1);
    long window = 0;
    NativeGLContext context = nullptr;
    {
        Windows windows;
        window = windows.create();
        // Our caller leaves in time.
        XSetCloseDownMode(windows.display, RetainPermanent);
        XCloseDisplay(windows.display);
    }
    const TestSurface surface(window);
    ASSERT_NE(surface.dc, nullptr);
    context = surface.createContext();
    ASSERT_EQ(windowSystem().makeCurrent(surface.dc, context), 1);
    clear(1, 0, 0);
    ASSERT_EQ(windowSystem().swapBuffers(surface.dc), 1);
    own.kill();
    // As a viewport draws that knows nothing of it.
    for (int frame = 0; frame < 2; ++frame) {
        windowSystem().makeCurrent(surface.dc, context);
        clear(0, 1, 0);
        EXPECT_EQ(windowSystem().swapBuffers(surface.dc), 0);
    }
    windowSystem().makeCurrent(surface.dc, nullptr);
    EXPECT_EQ(windowSystem().getDC(window), nullptr);
    EXPECT_EQ(windowSystem().releaseDC(window, surface.dc), 1);
}

TEST_F(X11GLTest, theLossOfTheServerEndsNoProcess) {
    RUN_ALONE(loseTheServer);
}

} // namespace
