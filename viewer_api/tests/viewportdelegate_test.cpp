// Viewports of a real delegate: who owns them, what they tell the user interface, and how they
// leave.

#include "pythonchannel.h"
#include "suites/viewporthostsuite.h"
#include "support/attributetext.h"
#include "support/recordingplugins.h"
#include "support/scriptedruntime.h"
#include "support/viewporttest.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportlayerhost.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

class ViewportDelegate : public ViewportTest {
protected:
    void SetUp() override {
        setChannelDispatch([this](void*, const char* channel, const VlAttribute::Attribute& value) {
            journal.addCall(channel, textOf(value));
            if (onChannel) {
                onChannel();
            }
            return VlAttribute::Attribute();
        });
        delegate = std::make_unique<VlViewerDelegateHostStruct>("Recording", nullptr);
        viewport = addViewport("view");
        hideBindings();
        journal.take();
    }
    void TearDown() override {
        delegate.reset();
        setChannelDispatch({});
    }

    VlViewportHostStruct* addViewport(const std::string& name) {
        auto* added = new VlViewportHostStruct("Recording", name, delegate.get());
        delegate->addViewport(added, name);
        return added;
    }

    void onEntry(const std::string& entry, const std::function<void()>& action) {
        plugins.hooks[entry] = [action](auto&) { action(); };
    }

    PluginLog delegateLog;
    RecordingPlugin delegatePlugin{delegateLog, RecordingPlugin::Kind::Delegate, "Recording"};
    ScriptedRuntime runtime;
    std::function<void()> onChannel;
    std::unique_ptr<VlViewerDelegateHostStruct> delegate;
    VlViewportHostStruct* viewport = nullptr;
};

TEST_F(ViewportDelegate, freezingTheViewTwiceSendsOneEventAndThawingItSendsOne) {
    viewport->setViewFrozen(true);
    viewport->setViewFrozen(true);
    EXPECT_TRUE(viewport->isViewFrozen);
    const VlAttribute::GroupAttribute frozen{{"viewport", VlAttribute::StringAttribute("view")},
                                             {"isViewFrozen", VlAttribute::IntAttribute(1)}};
    EXPECT_EQ(journal.take(), Lines{"__VIEWPORT_VIEW_FROZEN_STATE_CHANGED " + textOf(frozen)});
    viewport->setViewFrozen(false);
    EXPECT_FALSE(viewport->isViewFrozen);
    const VlAttribute::GroupAttribute thawed{{"viewport", VlAttribute::StringAttribute("view")},
                                             {"isViewFrozen", VlAttribute::IntAttribute(0)}};
    EXPECT_EQ(journal.take(), Lines{"__VIEWPORT_VIEW_FROZEN_STATE_CHANGED " + textOf(thawed)});
}

TEST_F(ViewportDelegate, freezingToTheStateThatIsThereSendsNothing) {
    viewport->setViewFrozen(false);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(ViewportDelegate, freezingTheViewReachesNoPluginAndDrawsNoDifferently) {
    viewport->setViewFrozen(true);
    journal.take();
    viewport->draw();
    EXPECT_EQ(journal.take(), Lines{"viewport1.draw"});
}

TEST_F(ViewportDelegate, stateIsStoredBeforeTheUserInterfaceHearsOfIt) {
    bool seen = false;
    onChannel = [&] { seen = viewport->isViewFrozen; };
    viewport->setViewFrozen(true);
    EXPECT_TRUE(seen);
}

TEST_F(ViewportDelegate, exceptionOfTheListenerPassesThrough) {
    onChannel = [] { throw std::runtime_error("in the user interface"); };
    EXPECT_THROW(viewport->setViewFrozen(true), std::runtime_error);
}

TEST_F(ViewportDelegate, setViewFrozenOfTheTableReducesToABool) {
    getViewportHostSuite()->setViewFrozen(viewport, 2);
    getViewportHostSuite()->setViewFrozen(viewport, -2);
    EXPECT_EQ(journal.take().size(), 1u);
    EXPECT_EQ(getViewportHostSuite()->isViewFrozen(viewport), 1);
}

TEST_F(ViewportDelegate, tableGivesTheDelegatesTriple) {
    void* host = nullptr;
    void* instance = nullptr;
    const void* suite = nullptr;
    getViewportHostSuite()->getViewerDelegate(viewport, &host, &instance, &suite);
    EXPECT_EQ(host, delegate.get());
    EXPECT_EQ(instance, delegate->instance);
    EXPECT_EQ(suite, delegate->suite);
}

TEST_F(ViewportDelegate, removalCleansUpAndThenEndsTheViewport) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    journal.take();
    delegate->removeViewport("view");
    EXPECT_EQ(journal.take(), (Lines{"layer1.cleanup", "viewport1.cleanup", "layer1.destroy",
                                     "viewport1.destroy"}));
    EXPECT_EQ(delegate->getNumberOfViewports(), 0u);
}

struct ViewportCallRow {
    const char* name;
    std::function<void(VlViewportHostStruct&)> call;
};

class ViewportRemovingItself : public ViewportDelegate,
                               public testing::WithParamInterface<ViewportCallRow> {};

TEST_P(ViewportRemovingItself, leavesTheListAtOnceAndIsDeletedWhenItsCallReturns) {
    const bool isSetup = std::string(GetParam().name) == "setup";
    if (!isSetup) {
        viewport->setup(7);
    }
    onEntry(std::string("viewport1.") + GetParam().name, [&] {
        delegate->removeViewport("view");
        EXPECT_EQ(delegate->getNumberOfViewports(), 0u);
        EXPECT_FALSE(viewport->isInitialized) << "it is cleaned up at once";
        EXPECT_FALSE(plugins.instance("viewport1").isDestroyed);
    });
    GetParam().call(*viewport);
    EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, ViewportRemovingItself,
    testing::Values(ViewportCallRow{"setup", [](auto& viewport) { viewport.setup(7); }},
                    ViewportCallRow{"draw", [](auto& viewport) { viewport.draw(); }},
                    ViewportCallRow{"resize", [](auto& viewport) { viewport.resize(1, 2); }},
                    ViewportCallRow{"hover", [](auto& viewport) { viewport.hover(true, 1, 2); }},
                    ViewportCallRow{"event", [](auto& viewport) { viewport.event(nullptr); }},
                    ViewportCallRow{"freeze", [](auto& viewport) { viewport.freeze(); }},
                    ViewportCallRow{"thaw", [](auto& viewport) { viewport.thaw(); }}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ViewportDelegate, viewportThatIsRemovedWhileItCleansUpIsDeletedAfterwards) {
    viewport->setup(7);
    int cleanups = 0;
    onEntry("viewport1.cleanup", [&] {
        ++cleanups;
        delegate->removeViewport("view");
        EXPECT_FALSE(plugins.instance("viewport1").isDestroyed);
    });
    viewport->cleanup();
    EXPECT_EQ(cleanups, 1);
    EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
}

TEST_F(ViewportDelegate, viewportThatIsRemovedWhileItIsSetUpIsCleanedUpBeforeItsEnd) {
    viewport->addLayer("Recording", "a");
    onEntry("viewport1.setup", [&] { delegate->removeViewport("view"); });
    journal.take();
    viewport->setup(7);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.setup", "layer1.setup", "layer1.cleanup",
                                     "viewport1.cleanup", "layer1.destroy", "viewport1.destroy"}));
}

TEST_F(ViewportDelegate, listenerMayRemoveTheViewportThatSpeaks) {
    onChannel = [&] { delegate->removeViewport("view"); };
    viewport->setViewFrozen(true);
    EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
}

TEST_F(ViewportDelegate, viewportRemovedFromAnothersDrawIsDeletedAtOnce) {
    auto* other = addViewport("other");
    onEntry("viewport2.draw", [&] {
        delegate->removeViewport("view");
        EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
    });
    other->draw();
    EXPECT_EQ(delegate->getViewport("other"), other);
}

TEST_F(ViewportDelegate, layerThatRemovesItsViewportFinishesItsDraw) {
    auto* layer = viewport->addLayer("Recording", "a");
    viewport->setup(7);
    onEntry("layer1.draw", [&] {
        delegate->removeViewport("view");
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
        EXPECT_FALSE(layer->isInitialized);
    });
    layer->draw();
    EXPECT_EQ(plugins.livingInstances(), 0);
}

TEST_F(ViewportDelegate, endOfTheDelegateEndsItsViewportsWithoutCleanup) {
    viewport->setup(7);
    addViewport("other");
    journal.take();
    delegate.reset();
    EXPECT_EQ(journal.take(), (Lines{"viewport1.destroy", "viewport2.destroy"}));
}

TEST_F(ViewportDelegate, endOfTheDelegateEndsComponentsThenViewportsThenThePluginWithoutCleanup) {
    RecordingPlugin component{delegateLog, RecordingPlugin::Kind::Component, "Part"};
    delegate->addComponent("Part", "part");
    std::vector<int> livingViewports;
    const auto countAtTheEnd = [&](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            livingViewports.push_back(plugins.livingInstances());
        }
    };
    component.onCall = countAtTheEnd;
    delegatePlugin.onCall = countAtTheEnd;
    delegateLog.take();
    journal.take();
    delegate.reset();
    delegatePlugin.onCall = nullptr;
    EXPECT_EQ(delegateLog.take(), (Lines{"Part destroy", "Recording destroy"}));
    EXPECT_EQ(journal.take(), Lines{"viewport1.destroy"});
    EXPECT_EQ(livingViewports, (std::vector<int>{1, 0}));
}

TEST_F(ViewportDelegate, delegateRetiredInAViewportsDrawOutlivesIt) {
    onEntry("viewport1.draw", [&] {
        HostObject::retire(delegate.release());
        EXPECT_FALSE(plugins.instance("viewport1").isDestroyed);
    });
    viewport->draw();
    EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
}

} // namespace
} // namespace ViewerAPI::test
