#include "viewportlist.h"

#include "sharedglcontext.h"
#include "support/countingwindowsystem.h"
#include "support/delegatetest.h"
#include "support/recordingglcalls.h"
#include "support/viewportplugins.h"
#include "vlviewporthost.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ViewportListTest : public DelegateTest {
protected:
    ViewportListTest() {
        SharedGLContext::instance() = SharedGLContext();
        windows.isQuiet = gl.isQuiet = true;
    }
    ~ViewportListTest() override {
        delegate.reset();
        SharedGLContext::instance() = SharedGLContext();
    }

    VlViewportHostStruct* add(const std::string& name) {
        auto* const viewport = new VlViewportHostStruct("Recording", name, delegate.get());
        delegate->addViewport(viewport, name);
        return viewport;
    }

    Lines names() {
        Lines result;
        for (std::uint32_t index = 0; index < delegate->getNumberOfViewports(); ++index) {
            result.emplace_back(delegate->getViewportName(index));
        }
        return result;
    }

    CallJournal journal;
    CountingWindowSystem windows{journal};
    RecordingGLCalls gl{journal};
    ViewportPlugins plugins{journal};
};

TEST_F(ViewportListTest, findsByNameAndIndex) {
    VlViewportHostStruct* const first = add("first");
    VlViewportHostStruct* const second = add("second");
    EXPECT_EQ(delegate->getViewport("first"), first);
    EXPECT_EQ(delegate->getViewport("second"), second);
    EXPECT_EQ(delegate->getViewportByIndex(1), second);
    EXPECT_THAT(names(), ElementsAre("first", "second"));
}

TEST_F(ViewportListTest, anUnknownNameOrIndexIsAbsent) {
    add("first");
    EXPECT_EQ(delegate->getViewport("other"), nullptr);
    EXPECT_EQ(delegate->getViewportByIndex(1), nullptr);
    EXPECT_STREQ(delegate->getViewportName(1), "");
    delegate->removeViewport("other");
    delegate->removeViewportByIndex(1);
    EXPECT_EQ(delegate->getNumberOfViewports(), 1U);
}

TEST_F(ViewportListTest, aNameUsedAgainStandsForTheNewOneAndTheOldOneStaysNameless) {
    VlViewportHostStruct* const old = add("same");
    VlViewportHostStruct* const fresh = add("same");
    EXPECT_EQ(delegate->getViewport("same"), fresh);
    EXPECT_EQ(delegate->getViewportByIndex(0), old);
    EXPECT_THAT(names(), ElementsAre("", "same"));
    delegate->removeViewportByIndex(0);
    EXPECT_EQ(delegate->getViewport("same"), fresh);
    EXPECT_THAT(names(), ElementsAre("same"));
}

TEST_F(ViewportListTest, removalMovesLargerIndicesDown) {
    add("a");
    VlViewportHostStruct* const second = add("b");
    VlViewportHostStruct* const third = add("c");
    delegate->removeViewport("a");
    EXPECT_THAT(names(), ElementsAre("b", "c"));
    EXPECT_EQ(delegate->getViewport("b"), second);
    EXPECT_EQ(delegate->getViewport("c"), third);
    delegate->removeViewportByIndex(0);
    EXPECT_THAT(names(), ElementsAre("c"));
    EXPECT_EQ(delegate->getViewport("b"), nullptr);
}

TEST_F(ViewportListTest, aViewportLeavesTheListsBeforeItsCleanupAndIsDestroyedAfter) {
    add("a")->setup(1);
    journal.take();
    plugins.hooks["viewport1.cleanup"] = [this](ViewportPlugins::Instance&) {
        EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
        EXPECT_EQ(delegate->getViewport("a"), nullptr);
    };
    delegate->removeViewport("a");
    EXPECT_THAT(journal.take(), ElementsAre("viewport1.cleanup", "viewport1.destroy"));
}

TEST_F(ViewportListTest, addingAViewportTwiceOnlyGivesItAnotherName) {
    VlViewportHostStruct* const viewport = add("a");
    delegate->addViewport(viewport, "b");
    delegate->addViewport(nullptr, "c");
    EXPECT_EQ(delegate->getNumberOfViewports(), 1U);
    EXPECT_EQ(delegate->getViewport("b"), viewport);
    EXPECT_EQ(delegate->getViewport("c"), nullptr);
    delegate->removeViewport("a");
    EXPECT_EQ(delegate->getViewport("b"), nullptr);
}

TEST_F(ViewportListTest, aViewportRemovedDuringItsOwnCallIsCleanedUpAtOnceAndDeletedAfterTheCall) {
    VlViewportHostStruct* const viewport = add("a");
    viewport->setup(1);
    journal.take();
    plugins.hooks["viewport1.draw"] = [this](ViewportPlugins::Instance& instance) {
        delegate->removeViewport("a");
        EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
        EXPECT_FALSE(instance.isDestroyed);
        EXPECT_THAT(journal.take(), ElementsAre("viewport1.draw", "viewport1.cleanup"));
    };
    viewport->draw();
    EXPECT_THAT(journal.take(), ElementsAre("viewport1.destroy"));
}

TEST_F(ViewportListTest, aCleanupThatThrowsStillEndsTheViewport) {
    add("a")->setup(1);
    plugins.hooks["viewport1.cleanup"] = [](ViewportPlugins::Instance&) {
        throw std::runtime_error("cleanup");
    };
    EXPECT_THROW(delegate->removeViewport("a"), std::runtime_error);
    EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
    EXPECT_EQ(plugins.livingInstances(), 0);
}

TEST_F(ViewportListTest, theDelegatesCleanupRemovesComponentsThenViewportsFromTheLastOn) {
    delegate->addComponent("A", "a");
    add("first")->setup(1);
    add("second")->setup(1);
    journal.take();
    log.take();
    componentA.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "cleanup") {
            EXPECT_EQ(delegate->getNumberOfViewports(), 2U);
        }
    };
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "cleanup") {
            EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
        }
    };
    delegate->cleanup();
    EXPECT_THAT(journal.take(), ElementsAre("viewport2.cleanup", "viewport2.destroy",
                                            "viewport1.cleanup", "viewport1.destroy"));
    EXPECT_THAT(log.take(), ElementsAre("A cleanup", "A destroy", "D cleanup"));
}

TEST_F(ViewportListTest, theDelegatesEndDestroysViewportsBetweenComponentsAndPluginWithoutCleanup) {
    delegate->addComponent("A", "a");
    add("first")->setup(1);
    journal.take();
    log.take();
    plugins.hooks["viewport1.destroy"] = [this](ViewportPlugins::Instance&) {
        EXPECT_THAT(log.take(), ElementsAre("A destroy"));
    };
    delegate.reset();
    EXPECT_THAT(journal.take(), ElementsAre("viewport1.destroy"));
    EXPECT_THAT(log.take(), ElementsAre("D destroy"));
}

} // namespace
} // namespace ViewerAPI::test
