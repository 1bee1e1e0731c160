// The order of platform calls by which viewports get, share and bind the one context.

#include "support/viewporttest.h"

namespace ViewerAPI::test {
namespace {

const std::string kChoose = "choosePixelFormat dc5 8193=1 8208=1 8209=1 8195=8231 8211=8235 "
                            "8212=32 8226=24 8227=8";
const std::string kCreate = "createContextAttribs dc5 null 8337=4 8338=0 37158=2";

class SharedGLContextTest : public ViewportTest {
protected:
    std::unique_ptr<VlViewportHostStruct> viewportWithWindow(int32_t windowId) {
        auto viewport = makeViewport();
        viewport->windowId = windowId;
        journal.take();
        return viewport;
    }
};

TEST_F(SharedGLContextTest, firstViewportChoosesTheFormatAndMakesTheContext) {
    auto viewport = viewportWithWindow(5);
    EXPECT_TRUE(viewport->initializeGLContext());
    EXPECT_EQ(journal.take(),
              (Lines{"glewInit", "getDC 5", kChoose, "describePixelFormat dc5 33 40",
                     "setPixelFormat dc5 33 described", kCreate}));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(viewport->deviceContext, windows.deviceContextOf(5));
}

TEST_F(SharedGLContextTest, secondViewportOnlyGetsADeviceContextAndSetsTheFormat) {
    auto first = viewportWithWindow(5);
    auto second = viewportWithWindow(-6);
    first->initializeGLContext();
    journal.take();
    EXPECT_TRUE(second->initializeGLContext());
    EXPECT_EQ(journal.take(), (Lines{"getDC -6", "setPixelFormat dc-6 33 described"}));
}

TEST_F(SharedGLContextTest, initializingAgainFetchesTheDeviceContextAnewAndReleasesNone) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    journal.take();
    EXPECT_TRUE(viewport->initializeGLContext());
    EXPECT_EQ(journal.take(), (Lines{"getDC 5", "setPixelFormat dc5 33 described"}));
}

TEST_F(SharedGLContextTest, contextOutlivesTheLastViewport) {
    viewportWithWindow(5)->initializeGLContext();
    auto later = viewportWithWindow(6);
    EXPECT_TRUE(later->initializeGLContext());
    EXPECT_EQ(journal.take(), (Lines{"getDC 6", "setPixelFormat dc6 33 described"}));
}

TEST_F(SharedGLContextTest, windowIdIsWidenedWithItsSign) {
    auto viewport = viewportWithWindow(-2147483647);
    viewport->initializeGLContext();
    EXPECT_THAT(journal.take(), testing::Contains("getDC -2147483647"));
}

struct FailureRow {
    const char* name;
    Lines calls;
    const char* text;
    int line;
};

class SharedGLContextFailure : public SharedGLContextTest,
                               public testing::WithParamInterface<FailureRow> {};

TEST_P(SharedGLContextFailure, isLoggedAndAnsweredWithFalse) {
    auto viewport = viewportWithWindow(5);
    windows.failing = {GetParam().name};
    EXPECT_FALSE(viewport->initializeGLContext());
    EXPECT_EQ(journal.take(), GetParam().calls);
    EXPECT_EQ(log, std::vector{error(GetParam().text, GetParam().line)});
    EXPECT_EQ(SharedGLContext::instance().sharedGLContext, nullptr);
}

TEST_P(SharedGLContextFailure, buildsNoTextWhileErrorsAreOff) {
    auto viewport = viewportWithWindow(5);
    setLogLevel(LogLevel::Off);
    windows.failing = {GetParam().name};
    EXPECT_FALSE(viewport->initializeGLContext());
    EXPECT_THAT(journal.take(),
                testing::Not(testing::Contains(testing::StartsWith("glewGetErrorString"))));
    EXPECT_TRUE(log.empty());
}

TEST_P(SharedGLContextFailure, leavesALaterAttemptFree) {
    auto viewport = viewportWithWindow(5);
    windows.failing = {GetParam().name};
    EXPECT_FALSE(viewport->initializeGLContext());
    windows.failing = {};
    EXPECT_TRUE(viewport->initializeGLContext());
}

INSTANTIATE_TEST_SUITE_P(
    AtEachStep, SharedGLContextFailure,
    testing::Values(FailureRow{"glewInit",
                               {"glewInit", "glewGetErrorString 4711"},
                               "the loader's own words",
                               791},
                    FailureRow{"getDC", {"glewInit", "getDC 5"}, "Invalid display device.", 801},
                    FailureRow{"choosePixelFormat",
                               {"glewInit", "getDC 5", kChoose},
                               "Failed to choose pixel format.",
                               824},
                    FailureRow{"setPixelFormat",
                               {"glewInit", "getDC 5", kChoose, "describePixelFormat dc5 33 40",
                                "setPixelFormat dc5 33 described"},
                               "Failed to set pixel format.",
                               834},
                    FailureRow{"createContextAttribs",
                               {"glewInit", "getDC 5", kChoose, "describePixelFormat dc5 33 40",
                                "setPixelFormat dc5 33 described", kCreate},
                               "Failed to create OpenGL context.",
                               853}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SharedGLContextTest, deviceContextStaysSetAfterAFailureBehindIt) {
    auto viewport = viewportWithWindow(5);
    windows.failing = {"setPixelFormat"};
    EXPECT_FALSE(viewport->initializeGLContext());
    EXPECT_EQ(viewport->deviceContext, windows.deviceContextOf(5));
}

TEST_F(SharedGLContextTest, deviceContextThatCanNotBeHadTakesThePlaceOfTheOneBefore) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    windows.failing = {"getDC"};
    EXPECT_FALSE(viewport->initializeGLContext());
    EXPECT_EQ(viewport->deviceContext, nullptr);
    journal.take();
    EXPECT_FALSE(viewport->makeGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(SharedGLContextTest, laterWindowThatRefusesTheFormatLeavesTheContextIntact) {
    auto first = viewportWithWindow(5);
    first->initializeGLContext();
    const NativeGLContext context = SharedGLContext::instance().sharedGLContext;
    auto second = viewportWithWindow(6);
    windows.failing = {"setPixelFormat"};
    EXPECT_FALSE(second->initializeGLContext());
    EXPECT_EQ(log, std::vector{error("Failed to set pixel format.", 834)});
    EXPECT_EQ(SharedGLContext::instance().sharedGLContext, context);
    windows.failing = {};
    EXPECT_TRUE(first->makeGLContextCurrent());
}

TEST_F(SharedGLContextTest, descriptionOfTheFormatIsNotExamined) {
    auto viewport = viewportWithWindow(5);
    windows.failing = {"describePixelFormat"};
    EXPECT_TRUE(viewport->initializeGLContext());
    EXPECT_TRUE(log.empty());
}

TEST_F(SharedGLContextTest, makeCurrentBeforeSetupIsFalseAndMakesNoPlatformCall) {
    auto viewport = viewportWithWindow(5);
    EXPECT_FALSE(viewport->makeGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(SharedGLContextTest, makeCurrentWithoutAContextIsFalseAndMakesNoPlatformCall) {
    auto viewport = viewportWithWindow(5);
    viewport->deviceContext = windows.deviceContextOf(5);
    EXPECT_FALSE(viewport->makeGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(SharedGLContextTest, makeCurrentBindsAndResetsTheGLViewportToTheWindow) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    viewport->width = 640;
    viewport->height = 480;
    journal.take();
    EXPECT_TRUE(viewport->makeGLContextCurrent());
    EXPECT_EQ(journal.take(), (Lines{"makeCurrent dc5 context1", "glViewport 0 0 640 480"}));
}

TEST_F(SharedGLContextTest, failedMakeCurrentIsSilentAndLeavesTheGLViewportAlone) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    windows.failing = {"makeCurrent"};
    journal.take();
    EXPECT_FALSE(viewport->makeGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{"makeCurrent dc5 context1"});
    EXPECT_TRUE(log.empty());
}

TEST_F(SharedGLContextTest, doneCurrentBeforeSetupIsTrueAndMakesNoPlatformCall) {
    auto viewport = viewportWithWindow(5);
    EXPECT_TRUE(viewport->doneGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(SharedGLContextTest, doneCurrentUnbindsWithANullContext) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    journal.take();
    EXPECT_TRUE(viewport->doneGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{"makeCurrent dc5 null"});
    windows.failing = {"makeCurrent"};
    EXPECT_FALSE(viewport->doneGLContextCurrent());
}

TEST_F(SharedGLContextTest, isCurrentBeforeSetupIsFalseAndMakesNoPlatformCall) {
    auto viewport = viewportWithWindow(5);
    EXPECT_FALSE(viewport->isGLContextCurrent());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(SharedGLContextTest, isCurrentAsksForBothHalvesOfTheBinding) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    viewport->makeGLContextCurrent();
    journal.take();
    EXPECT_TRUE(viewport->isGLContextCurrent());
    EXPECT_EQ(journal.take(), (Lines{"getCurrentDC", "getCurrentContext"}));
    viewport->doneGLContextCurrent();
    EXPECT_FALSE(viewport->isGLContextCurrent());
}

TEST_F(SharedGLContextTest, isCurrentIsFalseWhenTheContextIsBoundToAnotherViewport) {
    auto first = viewportWithWindow(5);
    auto second = viewportWithWindow(6);
    first->initializeGLContext();
    second->initializeGLContext();
    second->makeGLContextCurrent();
    EXPECT_TRUE(second->isGLContextCurrent());
    EXPECT_FALSE(first->isGLContextCurrent());
}

TEST_F(SharedGLContextTest, isCurrentIsFalseWhenAForeignContextIsBoundToTheWindow) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    std::string foreign = "foreign";
    windows.currentDeviceContext = viewport->deviceContext;
    windows.currentContext = &foreign;
    EXPECT_FALSE(viewport->isGLContextCurrent());
}

TEST_F(SharedGLContextTest, viewportReleasesItsDeviceContextAtItsEnd) {
    auto viewport = viewportWithWindow(-5);
    viewport->initializeGLContext();
    hideBindings();
    windows.isQuiet = false;
    journal.take();
    viewport.reset();
    EXPECT_EQ(journal.take(),
              (Lines{"makeCurrent dc-5 context1", "releaseDC -5 dc-5", "viewport1.destroy"}));
    EXPECT_TRUE(log.empty());
}

TEST_F(SharedGLContextTest, failedReleaseIsLogged) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    windows.failing = {"releaseDC"};
    viewport.reset();
    EXPECT_EQ(log, std::vector{error("Failed to release device context.", 102)});
}

TEST_F(SharedGLContextTest, failedReleaseIsNotLoggedWhileErrorsAreOff) {
    auto viewport = viewportWithWindow(5);
    viewport->initializeGLContext();
    windows.failing = {"releaseDC"};
    setLogLevel(LogLevel::Off);
    viewport.reset();
    EXPECT_TRUE(log.empty());
}

TEST_F(SharedGLContextTest, viewportThatNeverHadAWindowReleasesNothing) {
    auto viewport = viewportWithWindow(5);
    viewport.reset();
    EXPECT_EQ(journal.take(), Lines{"viewport1.destroy"});
}

constexpr uint32_t kDepthTest = 0x0B71;
constexpr uint32_t kBlend = 0x0BE2;

TEST_F(SharedGLContextTest, capabilityWithoutARecordAlwaysReachesGL) {
    auto viewport = viewportWithWindow(5);
    viewport->enableCapability(kDepthTest);
    viewport->disableCapability(kBlend);
    EXPECT_EQ(journal.take(), (Lines{"glEnable 2929", "glDisable 3042"}));
    EXPECT_EQ(viewport->glCapabilityStates,
              (std::map<uint32_t, bool>{{kDepthTest, true}, {kBlend, false}}));
}

TEST_F(SharedGLContextTest, repeatedDisableMakesNoGLCall) {
    auto viewport = viewportWithWindow(5);
    viewport->disableCapability(kBlend);
    journal.take();
    viewport->disableCapability(kBlend);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_FALSE(viewport->glCapabilityStates.at(kBlend));
}

TEST_F(SharedGLContextTest, repeatedEnableMakesNoGLCallButAChangeDoes) {
    auto viewport = viewportWithWindow(5);
    for (const bool isEnabled : {true, true, false, false, true}) {
        isEnabled ? viewport->enableCapability(kBlend) : viewport->disableCapability(kBlend);
    }
    EXPECT_EQ(journal.take(), (Lines{"glEnable 3042", "glDisable 3042", "glEnable 3042"}));
}

TEST_F(SharedGLContextTest, capabilityRecordIsEachViewportsOwnAndMayGoStale) {
    auto first = viewportWithWindow(5);
    auto second = viewportWithWindow(6);
    first->enableCapability(kBlend);
    second->disableCapability(kBlend);
    journal.take();
    // GL has it disabled by now, which the first viewport does not know.
    first->enableCapability(kBlend);
    EXPECT_EQ(journal.take(), Lines{});
}

} // namespace
} // namespace ViewerAPI::test
