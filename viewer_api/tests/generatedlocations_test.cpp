#include "support/delegatetest.h"
#include "support/factorytest.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// What the factories make of the scene, on its way through the pump to the plug-ins; seen at
/// bounding boxes.
class GeneratedLocations : public DelegateTest {
protected:
    void pump() { delegate->processLocationEvents(); }

    /// The generated locations that the plug-in was told of, by what it heard.
    Lines boxEvents() {
        Lines lines = plugin.takeEventLines();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("/__VlOst_bbox ") == std::string::npos;
        });
        return lines;
    }
    bool hasBox(const std::string& path) {
        return delegate->getAttributes(path + "/__VlOst_bbox", kVlViewerDelegatePrimary).isValid();
    }

    /// "/root", open, with leaves "a" and "b" that have bounds; pumped.
    void showTwoBoxes() {
        client(kPrimaryClient).report("/root", GroupAttribute::Empty(), {"a", "b"});
        client(kPrimaryClient).report("/root/a", bounded(1));
        client(kPrimaryClient).report("/root/b", bounded(2));
        open("/root");
        pump();
        log.take();
        plugin.takeEventLines();
    }
    void open(const char* path) { delegate->openLocations(&path, 1); }
    void close(const char* path) { delegate->closeLocations(&path, 1); }
    void hide(const char* path) { delegate->hideLocations(&path, 1); }

    /// Lets `action` run once, when the plug-in hears of `path`.
    void onceAt(const char* path, std::function<void()> action) {
        plugin.onCall = [path, action, isDone = false](std::string_view entry,
                                                       std::string_view subject) mutable {
            if (entry == "locationEvent" && subject == path && !std::exchange(isDone, true)) {
                action();
            }
        };
    }
};

const char* const kNewBox = " proxy attributesChanged hiddenChanged leafChanged handled=0";

// ---- The pump

TEST_F(GeneratedLocations, aBoxReachesPluginsInThePumpThatBroughtItsLocation) {
    client(kPrimaryClient).report("/root", bounded(1));
    pump();
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_EQ(textOf(GroupAttribute(plugin.events[1].attributes).getChildByName("type")),
              "\"locator\"");
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root leaf attributesChanged hiddenChanged leafChanged handled=0",
                            std::string("/root/__VlOst_bbox") + kNewBox));
}

TEST_F(GeneratedLocations, componentsHearOfABoxFirst) {
    delegate->addComponent("A", "a");
    client(kPrimaryClient).report("/root", bounded(1));
    pump();
    EXPECT_THAT(componentA.takeEventLines(), Contains(std::string("/root/__VlOst_bbox") + kNewBox));
}

TEST_F(GeneratedLocations, aBoxHasNoBoxOfItsOwn) {
    showTwoBoxes();
    for (int i = 0; i < 3; ++i) {
        pump();
    }
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
    EXPECT_EQ(textOf(delegate->getDescendantLocations("/root/a")), "\"/root/a/__VlOst_bbox\"");
}

TEST_F(GeneratedLocations, aChangedBoundReplacesTheBox) {
    showTwoBoxes();
    client(kPrimaryClient).report("/root/a", bounded(5));
    pump();
    EXPECT_THAT(boxEvents(), ElementsAre("/root/a/__VlOst_bbox proxy attributesChanged handled=0"));
}

TEST_F(GeneratedLocations, aHiddenLocationLosesItsBoxAndAShownOneGetsItBack) {
    showTwoBoxes();
    hide("/root/a");
    pump();
    EXPECT_THAT(boxEvents(), Contains("/root/a/__VlOst_bbox proxy removed handled=0"));
    EXPECT_FALSE(hasBox("/root/a"));
    EXPECT_TRUE(hasBox("/root/b"));
    delegate->unhideAllLocations();
    pump();
    EXPECT_THAT(boxEvents(), ElementsAre(std::string("/root/a/__VlOst_bbox") + kNewBox));
}

TEST_F(GeneratedLocations, anOpenedLocationLosesItsBoxAndAClosedOneGetsItBack) {
    showTwoBoxes();
    client(kPrimaryClient).report("/root/a", bounded(1), {"x"});
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
    open("/root/a");
    pump();
    EXPECT_FALSE(hasBox("/root/a"));
    close("/root/a");
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
}

TEST_F(GeneratedLocations, aBoxGoesWithItsLocationWithoutARemovalOfItsOwn) {
    showTwoBoxes();
    client(kPrimaryClient).reportGone("/root/a");
    pump();
    EXPECT_THAT(plugin.takeEventLines(), ElementsAre("/root/a removed handled=0"));
    EXPECT_FALSE(hasBox("/root/a"));
    client(kPrimaryClient).report("/root/a", bounded(1));
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
}

TEST_F(GeneratedLocations, boxesComeBackWithTheirLocationsWhenAnAncestorIsReopened) {
    showTwoBoxes();
    close("/root");
    pump();
    EXPECT_FALSE(hasBox("/root/a"));
    open("/root");
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
    EXPECT_TRUE(hasBox("/root/b"));
}

TEST_F(GeneratedLocations, whatAPluginOpensOnHearingOfItNeverHasABox) {
    client(kPrimaryClient).report("/root", bounded(1), {"a"});
    onceAt("/root", [this] { open("/root"); });
    pump();
    EXPECT_THAT(boxEvents(), IsEmpty());
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(GeneratedLocations, whatAPluginOpensOnHearingOfItsBoxLosesItInTheNextPump) {
    client(kPrimaryClient).report("/root", bounded(1), {"a"});
    onceAt("/root/__VlOst_bbox", [this] { open("/root"); });
    pump();
    EXPECT_TRUE(hasBox("/root"));
    pump();
    EXPECT_FALSE(hasBox("/root"));
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(GeneratedLocations, aLiveBoundMovesTheBoxWhileEventsAreHeldBack) {
    showTwoBoxes();
    bridge.commitId = -1;
    delegate->manipulationFreeze.onValueSet(true);
    delegate->locationTree.setAttributes("/root/a", bounded(3));
    pump();
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    EXPECT_THAT(boxEvents(), ElementsAre("/root/a/__VlOst_bbox proxy attributesChanged handled=0"));
}

TEST_F(GeneratedLocations, isProcessingAsksTheFactoriesBeforeTheRuntime) {
    showTwoBoxes();
    EXPECT_FALSE(delegate->isProcessing());
    delegate->setBoundingBoxesEnabled(false);
    runtime->takeCalls();
    log.take();
    EXPECT_TRUE(delegate->isProcessing());
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
    pump();
    EXPECT_FALSE(delegate->isProcessing());
}

// ---- Whether the factories are told

TEST_F(GeneratedLocations, aFlushWithoutTheFactoriesTellsThePluginsAlone) {
    delegate->locationTree.cook("/root", bounded(1), {}, false, true);
    delegate->flushLocationChanges(false);
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
    pump();
    EXPECT_FALSE(hasBox("/root"));
}

TEST_F(GeneratedLocations, aFlushTellsTheFactoriesOfEachBatchOnce) {
    delegate->locationTree.cook("/root", bounded(1), {}, false, true);
    delegate->flushLocationChanges(true);
    EXPECT_FALSE(hasBox("/root"));
    pump();
    EXPECT_TRUE(hasBox("/root"));
    plugin.takeEventLines();
    delegate->flushLocationChanges(true);
    pump();
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
}

TEST_F(GeneratedLocations, aFlushWithinADeliveryReachesTheFactoriesInOrder) {
    client(kPrimaryClient).report("/root", bounded(1));
    onceAt("/root", [this] {
        delegate->locationTree.cook("/root", bounded(4), {}, false, true);
        delegate->flushLocationChanges(true);
    });
    pump();
    const GroupAttribute box =
        delegate->getAttributes("/root/__VlOst_bbox", kVlViewerDelegatePrimary);
    EXPECT_EQ(textOf(box.getChildByName("geometry.point.P")),
              "(0 0 4 4 0 4 0 4 4 4 4 4 0 4 0 4 4 0 0 0 0 4 0 0)");
}

TEST_F(GeneratedLocations, theFactoriesHearOfABatchWhoseDeliveryFailedWhenItIsDone) {
    client(kPrimaryClient).report("/root", bounded(1));
    onceAt("/root", [] { throw std::runtime_error("plug-in"); });
    EXPECT_THROW(pump(), std::runtime_error);
    EXPECT_FALSE(hasBox("/root"));
    pump();
    EXPECT_TRUE(hasBox("/root"));
}

TEST_F(GeneratedLocations, productsWaitForTheNextPumpWhenAListenerFails) {
    client(kPrimaryClient).report("/root", bounded(1));
    channels.onFire = [](const std::string&) -> Attribute { throw std::runtime_error("listener"); };
    EXPECT_THROW(pump(), std::runtime_error);
    EXPECT_FALSE(hasBox("/root"));
    EXPECT_TRUE(delegate->isProcessing());
    channels.onFire = nullptr;
    pump();
    EXPECT_TRUE(hasBox("/root"));
}

TEST_F(GeneratedLocations, aPumpWithinADeliveryLeavesTheProductsToTheOuterOne) {
    client(kPrimaryClient).report("/root", bounded(1), {"a"});
    open("/root");
    pump();
    client(kPrimaryClient).report("/root/a", bounded(1));
    client(kPrimaryClient).report("/root/b", bounded(1));
    onceAt("/root/b", [this] {
        client(kPrimaryClient).reportGone("/root/a");
        pump();
        EXPECT_FALSE(hasBox("/root/a"));
    });
    pump();
    EXPECT_FALSE(hasBox("/root/a"));
    EXPECT_TRUE(hasBox("/root/b"));
}

TEST_F(GeneratedLocations, aProductWhoseParentIsUnknownIsPassedOver) {
    showTwoBoxes();
    // The factories believe in a location that has gone without their hearing of it.
    delegate->locationTree.setAttributes("/root/a", bounded(3));
    delegate->flushLocationChanges(true);
    delegate->locationTree.deleteLocation("/root");
    std::vector<LocationChange> changes;
    delegate->locationTree.collect(changes);
    plugin.takeEventLines();
    pump();
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
    EXPECT_EQ(delegate->locationTree.getNumberOfLocations(), 0U);
}

// ---- flushCaches

TEST_F(GeneratedLocations, flushCachesTakesTheBoxesDownAndTheyComeBackWithTheScene) {
    showTwoBoxes();
    delegate->flushCaches();
    EXPECT_THAT(plugin.takeEventLines(), ElementsAre("/root removed handled=0"));
    pump();
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
    client(kPrimaryClient).report("/root", GroupAttribute::Empty(), {"a"});
    client(kPrimaryClient).report("/root/a", bounded(1));
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
}

TEST_F(GeneratedLocations, flushCachesThatAPluginFailsInBringsTheBoxesBackToo) {
    showTwoBoxes();
    onceAt("/root", [] { throw std::runtime_error("plug-in"); });
    EXPECT_THROW(delegate->flushCaches(), std::runtime_error);
    client(kPrimaryClient).report("/root", GroupAttribute::Empty(), {"a", "b"});
    client(kPrimaryClient).report("/root/a", bounded(1));
    client(kPrimaryClient).report("/root/b", bounded(2));
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
    EXPECT_TRUE(hasBox("/root/b"));
}

TEST_F(GeneratedLocations, flushCachesWithinADeliveryLeavesNothingForTheFactoriesToRemember) {
    client(kPrimaryClient).report("/root", bounded(1));
    onceAt("/root", [this] { delegate->flushCaches(); });
    pump();
    EXPECT_FALSE(delegate->isProcessing());
    client(kPrimaryClient).report("/root", bounded(1));
    pump();
    EXPECT_TRUE(hasBox("/root"));
}

/// The scene comes back before flushCaches has returned.
class FlushedLocations : public GeneratedLocations {
protected:
    void bringBack() {
        client(kPrimaryClient).report("/root", GroupAttribute::Empty(), {"a", "b"});
        client(kPrimaryClient).report("/root/a", bounded(1));
        client(kPrimaryClient).report("/root/b", bounded(2));
        pump();
    }
    void expectBoxesThatTheFactoriesKnow() {
        pump();
        EXPECT_TRUE(hasBox("/root/a"));
        EXPECT_TRUE(hasBox("/root/b"));
        hide("/root/a");
        pump();
        EXPECT_FALSE(hasBox("/root/a"));
    }
};

TEST_F(FlushedLocations, haveTheirBoxesWhenAPluginPumpsThatIsTold) {
    showTwoBoxes();
    onceAt("/root", [this] { bringBack(); });
    delegate->flushCaches();
    expectBoxesThatTheFactoriesKnow();
}

TEST_F(FlushedLocations, haveTheirBoxesWhenTheListenerPumpsThatHearsOfIt) {
    showTwoBoxes();
    channels.onFire = [this, isDone = false](const std::string& name) mutable -> Attribute {
        if (name == "__SELECTED_ENABLED_LOCATIONS_CHANGED" && !std::exchange(isDone, true)) {
            bringBack();
        }
        return {};
    };
    delegate->flushCaches();
    expectBoxesThatTheFactoriesKnow();
}

TEST_F(FlushedLocations, haveTheirBoxesWhenTheTreeIsWalkedMeanwhile) {
    showTwoBoxes();
    bool isDone = false;
    plugin.onCall = [&](std::string_view entry, std::string_view) {
        if (entry == "getBounds" && !std::exchange(isDone, true)) {
            delegate->flushCaches();
            bringBack();
        }
    };
    const char* const path = "/root";
    static_cast<void>(delegate->computeMergedExtent(&path, 1, ""));
    EXPECT_TRUE(isDone);
    expectBoxesThatTheFactoriesKnow();
}

TEST_F(FlushedLocations, haveTheirBoxesWhenAPumpWithinAWalkIsWhatTakesThemDown) {
    showTwoBoxes();
    bridge.onCall = [this, isDone = false](const std::string& call) mutable {
        if (call == "cleanupLiveAttributes /root" && !std::exchange(isDone, true)) {
            delegate->flushCaches();
        }
    };
    plugin.onCall = [this, isDone = false](std::string_view entry, std::string_view) mutable {
        if (entry == "getBounds" && !std::exchange(isDone, true)) {
            bringBack();
        }
    };
    const char* const path = "/root";
    static_cast<void>(delegate->computeMergedExtent(&path, 1, ""));
    expectBoxesThatTheFactoriesKnow();
}

// ---- On and off

TEST_F(GeneratedLocations, boxesAreOnAtFirstAndCanBeSwitched) {
    showTwoBoxes();
    EXPECT_TRUE(hasBox("/root/a"));
    delegate->setBoundingBoxesEnabled(false);
    EXPECT_TRUE(hasBox("/root/a"));
    pump();
    EXPECT_THAT(boxEvents(), ElementsAre("/root/a/__VlOst_bbox proxy removed handled=0",
                                         "/root/b/__VlOst_bbox proxy removed handled=0"));
    delegate->setBoundingBoxesEnabled(true);
    pump();
    EXPECT_THAT(boxEvents(), ElementsAre(std::string("/root/a/__VlOst_bbox") + kNewBox,
                                         std::string("/root/b/__VlOst_bbox") + kNewBox));
}

TEST_F(GeneratedLocations, switchingFiresItsChannelAlsoWhenNothingChanged) {
    delegate->setBoundingBoxesEnabled(true);
    delegate->setBoundingBoxesEnabled(false);
    delegate->setBoundingBoxesEnabled(false);
    delegate->setProxyGeometryEnabled(true);
    delegate->setProxyGeometryEnabled(false);
    delegate->setProxyGeometryEnabled(false);
    EXPECT_THAT(
        log.take(),
        ElementsAre("channel __BOUNDING_BOXES_CHANGED 1", "channel __BOUNDING_BOXES_CHANGED 0",
                    "channel __BOUNDING_BOXES_CHANGED 0", "channel __PROXY_GEOMETRY_CHANGED 1",
                    "channel __PROXY_GEOMETRY_CHANGED 0", "channel __PROXY_GEOMETRY_CHANGED 0"));
}

TEST_F(GeneratedLocations, switchingBoxesOffAndOnWithoutAPumpBetweenKeepsThem) {
    showTwoBoxes();
    delegate->setBoundingBoxesEnabled(false);
    delegate->setBoundingBoxesEnabled(true);
    pump();
    EXPECT_TRUE(hasBox("/root/a"));
    EXPECT_TRUE(hasBox("/root/b"));
}

TEST_F(GeneratedLocations, switchingOneKindLeavesTheOtherAlone) {
    showTwoBoxes();
    delegate->setProxyGeometryEnabled(false);
    pump();
    EXPECT_THAT(boxEvents(), IsEmpty());
    EXPECT_TRUE(hasBox("/root/a"));
}

// ---- Proxy geometry

class GeneratedProxies : public GeneratedLocations {
protected:
    /// A leaf with a box and a proxy that an op loads.
    GroupAttribute proxied(const char* what) {
        return GroupBuilder()
            .update(bounded(1))
            .set("proxies.viewer.load.opType", StringAttribute("Load"))
            .set("proxies.viewer.load.opArgs.what", StringAttribute(what))
            .build();
    }
    GroupAttribute fileProxied() {
        return GroupBuilder()
            .update(bounded(1))
            .set("proxies.viewer", StringAttribute("a.obj"))
            .build();
    }
    void finish(int clientNumber, const char* childName = "child") {
        const GroupAttribute scene =
            GroupBuilder()
                .set("a.name", StringAttribute("proxy"))
                .set("c." + std::string(childName) + ".a.name", StringAttribute(childName))
                .build();
        runtime->independent().client(clientNumber).report("/root", {{"staticScene", scene}});
    }
    void setFrame(float frame) {
        delegate->setSystemArgs(
            GroupBuilder()
                .set("timeSlice.currentTime", VlAttribute::FloatAttribute(frame))
                .build());
    }
    bool hasProxy(const std::string& path) {
        return delegate->getAttributes(path + "/__VlOst_proxy", kVlViewerDelegatePrimary).isValid();
    }
    Lines proxyEvents() {
        Lines lines = plugin.takeEventLines();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("/__VlOst_proxy") == std::string::npos;
        });
        return lines;
    }
};

const char* const kNewProxy = " proxy attributesChanged hiddenChanged leafChanged handled=0";

TEST_F(GeneratedProxies, aProxyReachesPluginsWithAllBelowItOnceItIsCooked) {
    client(kPrimaryClient).report("/root", proxied("x"));
    pump();
    EXPECT_TRUE(hasBox("/root"));
    EXPECT_FALSE(hasProxy("/root"));
    EXPECT_TRUE(delegate->isProcessing());
    finish(1);
    pump();
    EXPECT_THAT(proxyEvents(), ElementsAre(std::string("/root/__VlOst_proxy") + kNewProxy,
                                           std::string("/root/__VlOst_proxy/child") + kNewProxy));
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(GeneratedProxies, aProxyIsWantedAlsoWhereTheLocationHasPoints) {
    client(kPrimaryClient)
        .report("/root", GroupBuilder()
                             .update(proxied("x"))
                             .set("geometry.point.P", VlAttribute::FloatAttribute({1, 2, 3}, 3))
                             .build());
    pump();
    finish(1);
    pump();
    EXPECT_FALSE(hasBox("/root"));
    EXPECT_TRUE(hasProxy("/root"));
}

TEST_F(GeneratedProxies, oneRemovalTakesTheWholeProxyAway) {
    client(kPrimaryClient).report("/root", proxied("x"));
    pump();
    finish(1);
    pump();
    plugin.takeEventLines();
    delegate->setProxyGeometryEnabled(false);
    pump();
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root/__VlOst_proxy proxy removed handled=0"));
    delegate->setProxyGeometryEnabled(true);
    pump();
    EXPECT_TRUE(hasProxy("/root"));
    EXPECT_TRUE(delegate->getAttributes("/root/__VlOst_proxy/child", 0).isValid());
}

TEST_F(GeneratedProxies,
       switchedOffAndOnAtAnotherFrameWithoutAPumpBetweenNothingOfTheOldFrameStays) {
    setFrame(1);
    client(kPrimaryClient).report("/root", proxied("x"));
    pump();
    finish(1, "first");
    pump();
    setFrame(2);
    pump();
    finish(2, "second");
    pump();
    plugin.takeEventLines();
    delegate->setProxyGeometryEnabled(false);
    setFrame(1);
    delegate->setProxyGeometryEnabled(true);
    pump();
    EXPECT_THAT(proxyEvents(), testing::UnorderedElementsAre(
                                   "/root/__VlOst_proxy/second proxy removed handled=0",
                                   std::string("/root/__VlOst_proxy/first") + kNewProxy));
}

TEST_F(GeneratedProxies, theSystemArgsOfTheApplicationReachTheCooks) {
    client(kPrimaryClient).report("/root", proxied("x"));
    setFrame(12);
    pump();
    EXPECT_THAT(runtime->independent().takeCommands(),
                Contains("setOpArgs op1 Load {system={timeSlice={currentTime=12}} what=\"x\"}"));
}

TEST_F(GeneratedProxies, aProxyThatCannotBeLoadedReachesPluginsAsAWarning) {
    client(kPrimaryClient).report("/root", fileProxied());
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root/__VlOst_proxy", 0)),
              "{type=\"warning\" warningMessage=\"Unable to produce proxy\"}");
}

TEST_F(GeneratedProxies, aListenersErrorLeavesThePumpAndTheBoxesCome) {
    client(kPrimaryClient).report("/root", fileProxied());
    channels.onFire = [](const std::string& name) -> Attribute {
        if (name == "getViewerProxyLoaderOp") {
            throw std::runtime_error("listener");
        }
        return {};
    };
    EXPECT_THROW(pump(), std::runtime_error);
    pump();
    EXPECT_TRUE(hasBox("/root"));
    EXPECT_FALSE(hasProxy("/root"));
}

TEST_F(GeneratedProxies, aListenerMayPump) {
    client(kPrimaryClient).report("/root", fileProxied());
    channels.onFire = [this](const std::string& name) -> Attribute {
        if (name != "getViewerProxyLoaderOp") {
            return {};
        }
        client(kPrimaryClient).reportGone("/root");
        pump();
        return GroupAttribute{{"opType", StringAttribute("Load")}};
    };
    pump();
    EXPECT_FALSE(hasBox("/root"));
    finish(1);
    pump();
    EXPECT_FALSE(hasProxy("/root"));
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(GeneratedProxies, flushCachesDropsWhatCooks) {
    client(kPrimaryClient).report("/root", proxied("x"));
    pump();
    runtime->independent().takeCalls();
    delegate->flushCaches();
    EXPECT_THAT(runtime->independent().takeCalls(),
                ElementsAre("releaseClient client1", "flushCaches"));
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(GeneratedProxies, flushCachesOfAnEmptyTreeReachesTheFactoriesAlone) {
    client(kPrimaryClient).report("/root", proxied("x"));
    pump();
    client(kPrimaryClient).reportGone("/root");
    pump();
    ASSERT_EQ(delegate->locationTree.getNumberOfLocations(), 0U);
    log.take();
    runtime->takeCalls();
    runtime->independent().takeCalls();
    delegate->flushCaches();
    EXPECT_THAT(runtime->independent().takeCalls(), ElementsAre("flushCaches"));
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
