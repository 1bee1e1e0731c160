// A picker by itself, and every GL call that it makes.

#include "support/recordingglcalls.h"
#include "vlviewportpicker.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

using Lines = std::vector<std::string>;

const Lines kClears = {"glClearColor 1 1 1 1", "glClear COLOR", "glClearColor 0 0 0 0",
                       "glClear DEPTH"};

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// The making of a framebuffer whose objects are numbered from `first`, while 9 is bound.
Lines creation(int first, const std::string& size) {
    const std::string framebuffer = std::to_string(first);
    const std::string color = std::to_string(first + 1);
    const std::string depth = std::to_string(first + 2);
    return {"glGetIntegerv VIEWPORT",
            "glGetIntegerv DRAW_FRAMEBUFFER_BINDING",
            "glGenFramebuffers " + framebuffer,
            "glBindFramebuffer FRAMEBUFFER " + framebuffer,
            "glGenRenderbuffers " + color,
            "glGenRenderbuffers " + depth,
            "glBindRenderbuffer RENDERBUFFER " + color,
            "glRenderbufferStorage RENDERBUFFER RGBA " + size,
            "glFramebufferRenderbuffer FRAMEBUFFER COLOR_ATTACHMENT0 RENDERBUFFER " + color,
            "glBindRenderbuffer RENDERBUFFER " + depth,
            "glRenderbufferStorage RENDERBUFFER DEPTH_COMPONENT24 " + size,
            "glFramebufferRenderbuffer FRAMEBUFFER DEPTH_ATTACHMENT RENDERBUFFER " + depth,
            "glBindFramebuffer DRAW_FRAMEBUFFER " + framebuffer,
            "glCheckFramebufferStatus DRAW_FRAMEBUFFER"};
}

Lines namesOf(const GroupAttribute& group) {
    Lines names;
    for (int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        names.emplace_back(group.getChildName(i));
    }
    return names;
}

class ViewportPicker : public testing::Test {
protected:
    ViewportPicker() { gl.reachesFramebuffers = true; }

    // A surface of 8 by 4 pixels in a window of that size, ready to be read.
    void makeBound() {
        gl.viewport(0, 0, 8, 4);
        picker.setup(8, 4);
        picker.bind();
        journal.take();
    }
    void addObjects(int count) {
        for (int i = 0; i < count; ++i) {
            picker.addPickableObject(IntAttribute(i));
        }
    }

    CallJournal journal;
    RecordingGLCalls gl{journal};
    VlViewportPicker picker;
};

TEST_F(ViewportPicker, setupMakesTheFramebufferAndThenClearsWhatWasBoundBefore) {
    gl.boundFramebuffer = 9;
    picker.setup(8, 4);
    EXPECT_EQ(journal.take(),
              (creation(1, "8 4") + Lines{"glBindFramebuffer FRAMEBUFFER 9"} + kClears));
    EXPECT_EQ(picker.framebuffer, 1u);
    EXPECT_EQ(picker.colorRenderbuffer, 2u);
    EXPECT_EQ(picker.depthRenderbuffer, 3u);
    EXPECT_EQ(picker.previousFramebuffer, 9);
}

TEST_F(ViewportPicker, resizeReplacesTheFramebufferAndThenClearsTheWindow) {
    picker.setup(8, 4);
    gl.boundFramebuffer = 9;
    journal.take();
    picker.resize(16, 9);
    EXPECT_EQ(journal.take(),
              ((Lines{"glBindFramebuffer FRAMEBUFFER 0", "glDeleteRenderbuffers 2",
                      "glDeleteRenderbuffers 3", "glDeleteFramebuffers 1"}) +
               creation(4, "16 9") + Lines{"glBindFramebuffer FRAMEBUFFER 0"} + kClears));
}

TEST_F(ViewportPicker, setupOfSizeZeroCreatesNothingAndTheNextRealResizeDoes) {
    picker.setup(0, 4);
    picker.setup(8, 0);
    picker.resize(0, 0);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(picker.framebuffer, 0u);
    picker.resize(8, 4);
    EXPECT_EQ(picker.framebuffer, 1u);
}

TEST_F(ViewportPicker, resizeToZeroKeepsFramebufferAndObjects) {
    picker.setup(8, 4);
    addObjects(1);
    journal.take();
    picker.resize(0, 4);
    picker.resize(8, 0);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(picker.pickableObjects.size(), 1u);
}

TEST_F(ViewportPicker, createsNothingWhileTheContextIsOutOfReachAndTheNextResizeThatReachesItDoes) {
    gl.reachesFramebuffers = false;
    picker.setup(8, 4);
    picker.resize(8, 4);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(picker.framebuffer, 0u);
    gl.reachesFramebuffers = true;
    picker.resize(8, 4);
    EXPECT_EQ(picker.framebuffer, 1u);
}

TEST_F(ViewportPicker, incompleteFramebufferIsOneLineOnStderrAndItGoesOn) {
    gl.isComplete = false;
    testing::internal::CaptureStderr();
    picker.setup(8, 4);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "VlViewportPicker: There is a problem with the FBO\n");
    EXPECT_EQ(journal.take(),
              (creation(1, "8 4") + Lines{"glBindFramebuffer FRAMEBUFFER 0"} + kClears));
}

TEST_F(ViewportPicker, completeFramebufferWritesNothing) {
    testing::internal::CaptureStderr();
    picker.setup(8, 4);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ViewportPicker, cleanupDeletesTheObjectsOnceAndKeepsTheNumber) {
    picker.setup(8, 4);
    journal.take();
    picker.cleanup();
    EXPECT_EQ(journal.take(), (Lines{"glBindFramebuffer FRAMEBUFFER 0", "glDeleteRenderbuffers 2",
                                     "glDeleteRenderbuffers 3", "glDeleteFramebuffers 1"}));
    EXPECT_EQ(picker.framebuffer, 1u);
    // By now the names may be another picker's.
    picker.cleanup();
    EXPECT_EQ(journal.take(), Lines{});
    picker.resize(8, 4);
    EXPECT_THAT(journal.take(), testing::Not(testing::Contains("glDeleteFramebuffers 1")));
}

TEST_F(ViewportPicker, cleanupOutOfReachOfTheContextDeletesNothingOfAnothers) {
    picker.setup(8, 4);
    gl.reachesFramebuffers = false;
    journal.take();
    picker.cleanup();
    EXPECT_EQ(journal.take(), Lines{});
    picker.bind();
    EXPECT_EQ(journal.take(), Lines{}) << "it counts as cleaned up";
}

TEST_F(ViewportPicker, cleanupWithoutAFramebufferDoesNothing) {
    picker.cleanup();
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(ViewportPicker, bindAndUnbindRestoreWhatWasBound) {
    picker.setup(8, 4);
    gl.boundFramebuffer = 9;
    journal.take();
    picker.bind();
    EXPECT_EQ(journal.take(),
              (Lines{"glGetIntegerv DRAW_FRAMEBUFFER_BINDING", "glBindFramebuffer FRAMEBUFFER 1",
                     "glDrawBuffer COLOR_ATTACHMENT0"}));
    picker.unbind();
    EXPECT_EQ(journal.take(), Lines{"glBindFramebuffer FRAMEBUFFER 9"});
}

TEST_F(ViewportPicker, bindUnbindAndPickWithoutAFramebufferAreHarmless) {
    float depth = 0.5f;
    picker.bind();
    EXPECT_FALSE(picker.pick({0, 0, 1, 1}, &depth).isValid());
    picker.unbind();
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(depth, 0.5f);
}

TEST_F(ViewportPicker, cleanupWhileBoundStillRestoresWhatWasBound) {
    picker.setup(8, 4);
    gl.boundFramebuffer = 9;
    picker.bind();
    picker.cleanup();
    EXPECT_FALSE(picker.pick({0, 0, 1, 1}, nullptr).isValid()) << "the window is bound now";
    picker.unbind();
    EXPECT_EQ(gl.boundFramebuffer, 9u);
    journal.take();
    picker.bind();
    EXPECT_EQ(journal.take(), Lines{}) << "there is nothing left to bind";
}

TEST_F(ViewportPicker, clearClearsToWhiteAndLeavesTheClearColourBlack) {
    addObjects(2);
    picker.clear(false);
    EXPECT_EQ(journal.take(), (kClears));
    EXPECT_EQ(picker.pickableObjects.size(), 2u);
    picker.clear(true);
    EXPECT_EQ(journal.take(), (kClears));
    EXPECT_TRUE(picker.pickableObjects.empty());
}

TEST_F(ViewportPicker, setupAndResizeDropTheObjects) {
    addObjects(2);
    picker.setup(8, 4);
    EXPECT_TRUE(picker.pickableObjects.empty());
    addObjects(2);
    picker.resize(8, 4);
    EXPECT_TRUE(picker.pickableObjects.empty());
}

TEST_F(ViewportPicker, idsCountFromZeroUntilObjectsAreDropped) {
    const StringAttribute same("same");
    EXPECT_EQ(picker.addPickableObject(same), 0u);
    EXPECT_EQ(picker.addPickableObject(same), 1u) << "the same attribute twice has two ids";
    EXPECT_EQ(picker.addPickableObject(Attribute()), 2u);
    picker.clear(true);
    EXPECT_EQ(picker.addPickableObject(same), 0u);
}

TEST_F(ViewportPicker, pickReadsTheRegionOnceFromTheBottomUp) {
    makeBound();
    EXPECT_TRUE(picker.pick({1, 0, 3, 2}, nullptr).isValid());
    EXPECT_EQ(journal.take(),
              (Lines{"glGetIntegerv VIEWPORT", "glReadPixels 1 2 3 2 RGBA UNSIGNED_BYTE"}));
}

TEST_F(ViewportPicker, regionIsNotClampedToTheFramebuffer) {
    makeBound();
    EXPECT_TRUE(picker.pick({-2, -1, 20, 3}, nullptr).isValid());
    EXPECT_THAT(journal.take(), testing::Contains("glReadPixels -2 2 20 3 RGBA UNSIGNED_BYTE"));
}

TEST_F(ViewportPicker, widthOrHeightZeroIsNullWithoutAGLRead) {
    makeBound();
    for (const PixelRegion region :
         {PixelRegion{0, 0, 0, 1}, PixelRegion{0, 0, 1, 0}, PixelRegion{0, 0, -1, -1},
          PixelRegion{0, 0, std::numeric_limits<int>::min(), 5}}) {
        EXPECT_FALSE(picker.pick(region, nullptr).isValid());
    }
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(ViewportPicker, regionThatReachesFartherThanAnyWindowIsCutToTheSurface) {
    makeBound();
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    const std::pair<PixelRegion, const char*> rows[] = {
        {{0, 0, kMost, kMost}, "glReadPixels 0 0 8 4 RGBA UNSIGNED_BYTE"},
        {{2, 1, kMost, 1}, "glReadPixels 2 2 6 1 RGBA UNSIGNED_BYTE"},
        {{-10, -10, 20000, 12}, "glReadPixels 0 2 8 2 RGBA UNSIGNED_BYTE"},
        {{kMost, 0, 1, 1}, nullptr},
        {{0, kLeast, 5, 1}, nullptr},
        {{kLeast, kMost, kMost, kMost}, nullptr},
    };
    for (const auto& [region, read] : rows) {
        float depth = 0.25f;
        EXPECT_TRUE(picker.pick(region, &depth).isValid());
        const Lines expected =
            read ? Lines{"glGetIntegerv VIEWPORT", read} : Lines{"glGetIntegerv VIEWPORT"};
        EXPECT_EQ(journal.take(), expected);
        EXPECT_EQ(depth, 0.25f);
    }
}

TEST_F(ViewportPicker, onePixelOfBackgroundIsAValidEmptyGroupAndTheDepthThere) {
    makeBound();
    addObjects(2);
    gl.depth = 0.75f;
    float depth = 0.0f;
    const GroupAttribute picked = picker.pick({3, 1, 1, 1}, &depth);
    EXPECT_TRUE(picked.isValid());
    EXPECT_EQ(picked.getNumberOfChildren(), 0);
    EXPECT_EQ(depth, 0.75f);
    EXPECT_EQ(journal.take(),
              (Lines{"glGetIntegerv VIEWPORT", "glReadPixels 3 2 1 1 RGBA UNSIGNED_BYTE",
                     "glReadPixels 3 2 1 1 DEPTH_COMPONENT FLOAT"}));
}

TEST_F(ViewportPicker, twoPixelsLeaveTheDepthUnchanged) {
    makeBound();
    float depth = 0.25f;
    EXPECT_TRUE(picker.pick({0, 0, 2, 1}, &depth).isValid());
    EXPECT_TRUE(picker.pick({0, 0, 1, 2}, &depth).isValid());
    EXPECT_EQ(depth, 0.25f);
}

TEST_F(ViewportPicker, depthIsNotReadForNobody) {
    makeBound();
    EXPECT_TRUE(picker.pick({0, 0, 1, 1}, nullptr).isValid());
    EXPECT_EQ(journal.take(),
              (Lines{"glGetIntegerv VIEWPORT", "glReadPixels 0 3 1 1 RGBA UNSIGNED_BYTE"}));
}

struct DecodingRow {
    const char* name;
    uint32_t pixel; ///< R is the most significant byte
    const char* child;
};

class ViewportPickerDecoding : public ViewportPicker,
                               public testing::WithParamInterface<DecodingRow> {};

TEST_P(ViewportPickerDecoding, namesTheChildByTheIdInDecimal) {
    makeBound();
    addObjects(259);
    gl.ids = {GetParam().pixel};
    const GroupAttribute picked = picker.pick({0, 0, 2, 2}, nullptr);
    ASSERT_TRUE(picked.isValid());
    const std::string child = GetParam().child;
    if (child.empty()) {
        EXPECT_EQ(picked.getNumberOfChildren(), 0);
    } else {
        EXPECT_EQ(namesOf(picked), Lines{child});
        EXPECT_EQ(picked.getChildByIndex(0), IntAttribute(std::stoi(child)));
    }
}

INSTANTIATE_TEST_SUITE_P(Pixels, ViewportPickerDecoding,
                         testing::Values(DecodingRow{"first", 0x00000000, "0"},
                                         DecodingRow{"lowByte", 0x00000002, "2"},
                                         DecodingRow{"twoBytes", 0x00000102, "258"},
                                         DecodingRow{"objectCount", 0x00000103, ""},
                                         DecodingRow{"greenByte", 0x00010000, ""},
                                         DecodingRow{"redByte", 0x01000000, ""},
                                         DecodingRow{"largest", 0x7FFFFFFF, ""},
                                         DecodingRow{"mostNegative", 0x80000000, ""},
                                         DecodingRow{"negative", 0xFFFFFF00, ""},
                                         DecodingRow{"background", 0xFFFFFFFF, ""}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ViewportPicker, objectsAreListedOnceInAscendingOrderOfTheirIdsAsNumbers) {
    makeBound();
    addObjects(12);
    gl.ids = {10, 2, 0xFFFFFFFF, 2, 2, 9, 10, 0x80000001, 12, 1};
    EXPECT_EQ(namesOf(picker.pick({0, 0, 10, 3}, nullptr)), (Lines{"1", "2", "9", "10"}));
}

TEST_F(ViewportPicker, nullObjectHasAnIdButIsNotListed) {
    makeBound();
    picker.addPickableObject(Attribute());
    picker.addPickableObject(IntAttribute(1));
    gl.ids = {0, 1};
    EXPECT_EQ(namesOf(picker.pick({0, 0, 2, 1}, nullptr)), Lines{"1"});
}

TEST_F(ViewportPicker, pickedObjectsAreInheritedByLocationsBelow) {
    makeBound();
    addObjects(1);
    gl.ids = {0};
    EXPECT_TRUE(picker.pick({0, 0, 1, 1}, nullptr).isGroupInherit(0));
}

TEST_F(ViewportPicker, endDeletesNoGLObjects) {
    {
        VlViewportPicker other;
        other.setup(8, 4);
        journal.take();
    }
    EXPECT_EQ(journal.take(), Lines{});
}

} // namespace
} // namespace ViewerAPI::test
