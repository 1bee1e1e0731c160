#include "vlproxygeometryfactory.h"

#include "support/proxyfactorytest.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using VlAttribute::Attribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class VlProxyGeometryFactoryTest : public ProxyFactoryTest {
protected:
    /// The attribute `of` of a produced root.
    static std::string rootOf(const std::vector<FactoryProduct>& products,
                              const std::string& path) {
        for (const FactoryProduct& product : products) {
            if (product.kind == kFactoryProductProduced &&
                product.path == path + "/__VlOst_proxy") {
                return textOf(product.attrs.getChildByName("of"));
            }
        }
        return "none";
    }
};

// ---- What qualifies

TEST_F(VlProxyGeometryFactoryTest, needsAViewerChildOfAnyType) {
    const auto with = [](const char* name, const Attribute& value) {
        return GroupBuilder().set(name, value).build();
    };
    EXPECT_TRUE(factory.hasRequiredAttributes(with("proxies.viewer", StringAttribute("a.obj"))));
    EXPECT_TRUE(factory.hasRequiredAttributes(with("proxies.viewer", GroupAttribute::Empty())));
    EXPECT_TRUE(factory.hasRequiredAttributes(with("proxies.viewer", IntAttribute(1))));
    EXPECT_FALSE(factory.hasRequiredAttributes(with("proxies.other", IntAttribute(1))));
    EXPECT_FALSE(factory.hasRequiredAttributes(with("proxies", StringAttribute("viewer"))));
    EXPECT_FALSE(factory.hasRequiredAttributes(with("viewer", IntAttribute(1))));
    EXPECT_FALSE(factory.hasRequiredAttributes({}));
    factory.setAttributeName("other");
    EXPECT_FALSE(factory.hasRequiredAttributes(with("proxies.viewer", IntAttribute(1))));
    EXPECT_TRUE(factory.hasRequiredAttributes(with("other.viewer", IntAttribute(1))));
}

TEST_F(VlProxyGeometryFactoryTest, keepsTheProxiesAlone) {
    const LocationPath path("/root/a");
    EXPECT_TRUE(factory.storeLocation(path, proxied("x")));
    const GroupAttribute renamed =
        GroupBuilder().update(proxied("x")).set("name", StringAttribute("a")).build();
    EXPECT_FALSE(factory.storeLocation(path, renamed));
    EXPECT_TRUE(factory.storeLocation(path, proxied("y")));
}

// ---- From a request to a product

TEST_F(VlProxyGeometryFactoryTest, cooksInTheFirstCollectionAndPublishesWhenTheCookIsDone) {
    tell("/root/a", proxied("x"));
    EXPECT_THAT(cooks().takeCommands(), IsEmpty());
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
    EXPECT_THAT(cooks().takeCommands(),
                Contains("setOpArgs op1 Load {system={timeSlice={currentTime=1}} what=\"x\"}"));
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
    finish(1, sceneOf("x", {"/b", "/a", "/a/c"}));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/a",
                            "produced /root/a/__VlOst_proxy/b",
                            "produced /root/a/__VlOst_proxy/a/c"));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyGeometryFactoryTest, twoLocationsWithEqualProxiesGiveOneCookAndTwoTrees) {
    tell("/root/b", proxied("x"));
    tell("/root/a", proxied("x"));
    collected();
    EXPECT_EQ(cooks().getNumberOfClients(), 1);
    finish(1, sceneOf("x", {"/c"}));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/b/__VlOst_proxy", "produced /root/b/__VlOst_proxy/c",
                            "produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/c"));
}

TEST_F(VlProxyGeometryFactoryTest, aFinishedCookServesQueuedLocationsOfTheSameJobToo) {
    tell("/root/a", proxied("x"));
    collected();
    tell("/root/b", proxied("x"));
    finish(1, sceneOf("x", {}));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/a/__VlOst_proxy", "produced /root/b/__VlOst_proxy"));
    EXPECT_EQ(cooks().getNumberOfClients(), 1);
}

TEST_F(VlProxyGeometryFactoryTest, whatWasCookedOnceIsServedAtOnce) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/c"}));
    tell("/root/b", proxied("x"));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/b/__VlOst_proxy", "produced /root/b/__VlOst_proxy/c"));
    EXPECT_EQ(cooks().getNumberOfClients(), 1);
}

TEST_F(VlProxyGeometryFactoryTest, aPathThatIsReadyTwiceInOnePassGivesOneProduct) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {}));
    factory.requestProduce(LocationPath("/root/a"));
    factory.requestProduce(LocationPath("/root/a"));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_proxy"));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyGeometryFactoryTest, atMost1024CooksAreInFlightAndTheRestWaits) {
    for (int index = 0; index < 1030; ++index) {
        const std::string name = std::to_string(index);
        tell(("/root/" + name).c_str(), proxied(name));
    }
    collected();
    EXPECT_EQ(cooks().getNumberOfClients(), 1024);
    finish(3, sceneOf("2", {}));
    finish(5, sceneOf("4", {}));
    EXPECT_THAT(collected(), testing::UnorderedElementsAre("produced /root/2/__VlOst_proxy",
                                                           "produced /root/4/__VlOst_proxy"));
    EXPECT_EQ(cooks().getNumberOfClients(), 1026);
}

// ---- Time

TEST_F(VlProxyGeometryFactoryTest, aStaticProxyIsCookedOnceAndPublishedAgainWithoutRemovals) {
    show("/root/a", proxied("x", {{"static", IntAttribute(1)}}), 1, sceneOf("x", {"/c"}));
    factory.setSystemArgs(systemAt(5));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/c"));
    EXPECT_EQ(cooks().getNumberOfClients(), 1);
}

TEST_F(VlProxyGeometryFactoryTest, equalSystemArgsAskForNothing) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {}));
    factory.setSystemArgs({});
    EXPECT_FALSE(factory.hasPendingWork());
    factory.setSystemArgs(systemAt(5));
    EXPECT_TRUE(factory.hasPendingWork());
    collected();
    finish(2, sceneOf("x", {}));
    collected();
    factory.setSystemArgs(systemAt(5));
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryTest, aNewFrameIsCookedAndAnOldOneIsRemembered) {
    factory.setSystemArgs(systemAt(1));
    show("/root/a", proxied("x"), 1, sceneOf("one", {}));
    factory.setSystemArgs(systemAt(2));
    collected();
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
    finish(2, sceneOf("two", {}));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"two\"");
    factory.setSystemArgs(systemAt(1));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"one\"");
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
}

TEST_F(VlProxyGeometryFactoryTest, aNewTimeDropsTheCookOfTheOldOneAndQueuesAtTheBack) {
    tell("/root/a", proxied("x"));
    collected();
    tell("/root/b", proxied("y", {{"static", IntAttribute(1)}}));
    factory.setSystemArgs(systemAt(2));
    EXPECT_FALSE(isCooking(1));
    cooks().takeCommands();
    collected();
    Lines loads = cooks().takeCommands();
    std::erase_if(loads,
                  [](const std::string& line) { return line.find(" Load ") == std::string::npos; });
    EXPECT_THAT(loads,
                ElementsAre("setOpArgs op3 Load {system={timeSlice={currentTime=1}} what=\"y\"}",
                            "setOpArgs op5 Load {system={timeSlice={currentTime=2}} what=\"x\"}"));
}

TEST_F(VlProxyGeometryFactoryTest, goingBackToACookedTimeDropsTheCookUnderWay) {
    factory.setSystemArgs(systemAt(1));
    show("/root/a", proxied("x"), 1, sceneOf("one", {}));
    factory.setSystemArgs(systemAt(2));
    collected();
    EXPECT_TRUE(isCooking(2));
    factory.setSystemArgs(systemAt(1));
    EXPECT_FALSE(isCooking(2));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"one\"");
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryTest, anOlderWishThatIsStillQueuedOutlivesACacheHit) {
    factory.setSystemArgs(systemAt(1));
    show("/root/a", proxied("x"), 1, sceneOf("one", {}));
    factory.setSystemArgs(systemAt(2));
    factory.setSystemArgs(systemAt(1));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"one\"");
    EXPECT_TRUE(isCooking(2));
    finish(2, sceneOf("two", {}));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"two\"");
}

TEST_F(VlProxyGeometryFactoryTest, systemArgsWhileDisabledCountWhenItIsEnabledAgain) {
    factory.setSystemArgs(systemAt(1));
    show("/root/a", proxied("x"), 1, sceneOf("one", {}));
    factory.setEnabled(false);
    collected();
    factory.setSystemArgs(systemAt(2));
    EXPECT_FALSE(factory.hasPendingWork());
    factory.setEnabled(true);
    collected();
    finish(2, sceneOf("two", {}));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"two\"");
}

// ---- Another scene for the same location

TEST_F(VlProxyGeometryFactoryTest, aChildThatIsGoneIsRemovedAndAllOthersAreProduced) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/b", "/c", "/d"}));
    show("/root/z", proxied("y"), 2, sceneOf("y", {}));
    tell("/root/a", proxied("z"));
    collected();
    finish(3, sceneOf("z", {"/b", "/d", "/e"}));
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/a/__VlOst_proxy/c", "produced /root/a/__VlOst_proxy",
                            "produced /root/a/__VlOst_proxy/b", "produced /root/a/__VlOst_proxy/d",
                            "produced /root/a/__VlOst_proxy/e"));
}

TEST_F(VlProxyGeometryFactoryTest, aRemovalThatTheOrderOfListsBringsIsCancelledByAProduct) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/a", "/b", "/a/c"}));
    tell("/root/a", proxied("y"));
    collected();
    finish(2, sceneOf("y", {"/a", "/a/c"}));
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/a/__VlOst_proxy/b", "removed /root/a/__VlOst_proxy/a/c",
                            "produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/a",
                            "produced /root/a/__VlOst_proxy/a/c"));
}

TEST_F(VlProxyGeometryFactoryTest, aLocationThatComesBackIsComparedWithWhatItShowed) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/b"}));
    factory.removeSubtree("/root/a");
    tell("/root/a", proxied("y"));
    collected();
    finish(2, sceneOf("y", {}));
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/a/__VlOst_proxy/b", "produced /root/a/__VlOst_proxy"));
}

// ---- Removal

TEST_F(VlProxyGeometryFactoryTest, aLocationRemovedWhileQueuedGivesNoRemovalProductAndNoCook) {
    tell("/root/a", proxied("x"));
    forget("/root/a");
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
    EXPECT_EQ(cooks().getNumberOfClients(), 0);
}

TEST_F(VlProxyGeometryFactoryTest, aLocationRemovedWhileCookingGivesNoRemovalProduct) {
    tell("/root/a", proxied("x"));
    collected();
    forget("/root/a");
    EXPECT_FALSE(isCooking(1));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyGeometryFactoryTest, aShownLocationIsRemovedByOneProduct) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/b", "/c"}));
    forget("/root/a");
    EXPECT_THAT(collect(factory),
                ElementsAre(FactoryProduct{kFactoryProductRemoved, "/root/a/__VlOst_proxy",
                                           GroupAttribute::Empty()}));
    // Nothing is left to compare with.
    tell("/root/a", proxied("x"));
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/b",
                            "produced /root/a/__VlOst_proxy/c"));
}

TEST_F(VlProxyGeometryFactoryTest, anEarlierResultIsRemovedAlsoWhileTheNextIsQueuedOrCooks) {
    for (const bool isCookingNext : {false, true}) {
        factory.setSystemArgs(systemAt(1));
        if (!isCookingNext) {
            show("/root/a", proxied("x"), 1, sceneOf("x", {}));
        } else {
            tell("/root/a", proxied("x"));
        }
        collected();
        factory.setSystemArgs(systemAt(2));
        if (isCookingNext) {
            collected();
        }
        forget("/root/a");
        EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_proxy")) << isCookingNext;
        EXPECT_FALSE(factory.hasPendingWork()) << isCookingNext;
    }
}

TEST_F(VlProxyGeometryFactoryTest, aLocationForgottenWhenItWasReadyGivesNoProduct) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {}));
    tell("/root/b", proxied("x"));
    forget("/root/b");
    EXPECT_THAT(collected(), ElementsAre("removed /root/b/__VlOst_proxy"));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyGeometryFactoryTest, whatIsAskedForAfterARemovalStillComes) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/b"}));
    factory.setEnabled(false);
    factory.setEnabled(true);
    // Below the root too: a tree that loses and gets a location at once keeps what is below it.
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/a/__VlOst_proxy", "removed /root/a/__VlOst_proxy/b",
                            "produced /root/a/__VlOst_proxy", "produced /root/a/__VlOst_proxy/b"));
}

TEST_F(VlProxyGeometryFactoryTest, whatWasReadyBeforeARemovalDoesNotComeAfterIt) {
    factory.setSystemArgs(systemAt(1));
    show("/root/a", proxied("x"), 1, sceneOf("one", {}));
    factory.requestProduce(LocationPath("/root/a"));
    factory.setEnabled(false);
    factory.setSystemArgs(systemAt(2));
    factory.setEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_proxy"));
    finish(2, sceneOf("two", {}));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"two\"");
}

TEST_F(VlProxyGeometryFactoryTest, disablingCancelsEverythingAndRemovesWhatIsShown) {
    show("/root/shown", proxied("x"), 1, sceneOf("x", {}));
    tell("/root/cooking", proxied("y"));
    collected();
    tell("/root/queued", proxied("z"));
    factory.setEnabled(false);
    EXPECT_FALSE(isCooking(2));
    EXPECT_THAT(collected(), ElementsAre("removed /root/shown/__VlOst_proxy"));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
}

TEST_F(VlProxyGeometryFactoryTest, aRemovalCancelsACookThatOthersWaitForAndTheyStayWaiting) {
    tell("/root/a", proxied("x"));
    tell("/root/b", proxied("x"));
    collected();
    forget("/root/a");
    EXPECT_FALSE(isCooking(1));
    factory.requestProduce(LocationPath("/root/b"));
    EXPECT_FALSE(factory.hasPendingWork());
    // Until its job changes.
    tell("/root/b", proxied("y"));
    collected();
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
    finish(2, sceneOf("y", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/b/__VlOst_proxy"));
}

TEST_F(VlProxyGeometryFactoryTest, aNewWishCancelsACookThatOthersWaitForAndTheyStayWaiting) {
    tell("/root/a", proxied("x"));
    tell("/root/b", proxied("x"));
    collected();
    tell("/root/a", proxied("y"));
    EXPECT_FALSE(isCooking(1));
    collected();
    finish(2, sceneOf("y", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_proxy"));
    factory.requestProduce(LocationPath("/root/b"));
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryTest, thoseThatWaitForACancelledCookAreServedWhenItIsCookedAgain) {
    tell("/root/a", proxied("x"));
    tell("/root/b", proxied("x"));
    collected();
    forget("/root/a");
    tell("/root/c", proxied("x"));
    collected();
    finish(2, sceneOf("x", {}));
    EXPECT_THAT(collected(), testing::UnorderedElementsAre("produced /root/b/__VlOst_proxy",
                                                           "produced /root/c/__VlOst_proxy"));
}

TEST_F(VlProxyGeometryFactoryTest, removingASubtreeKeepsACookThatOthersWaitFor) {
    tell("/root/a", proxied("x"));
    tell("/root/a/b", proxied("x"));
    tell("/root/ab", proxied("x"));
    tell("/root/a/c", proxied("y"));
    collected();
    tell("/root/a/d", proxied("z"));
    factory.removeSubtree("/root/a");
    EXPECT_TRUE(isCooking(1));
    EXPECT_FALSE(isCooking(2));
    finish(1, sceneOf("x", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/ab/__VlOst_proxy"));
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryTest, clearEmptiesTheTablesAndTheRuntime) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {"/b"}));
    tell("/root/b", proxied("y"));
    collected();
    tell("/root/c", proxied("z"));
    cooks().takeCalls();
    factory.clear();
    EXPECT_THAT(cooks().takeCalls(), ElementsAre("releaseClient client2", "flushCaches"));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_FALSE(factory.hasLocation("/root/a"));
    // Neither what was cooked is remembered, nor what was shown.
    tell("/root/a", proxied("x"));
    collected();
    finish(3, sceneOf("x", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_proxy"));
}

TEST_F(VlProxyGeometryFactoryTest, clearLeavesRequestsWhichComeToNothingOrHarmNothing) {
    show("/root/a", proxied("x"), 1, sceneOf("x", {}));
    show("/root/b", proxied("y"), 2, sceneOf("y", {}));
    forget("/root/a");
    factory.requestProduce(LocationPath("/root/b"));
    factory.clear();
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_proxy"));
}

// ---- Failure

TEST_F(VlProxyGeometryFactoryTest, aProxyThatCannotBeLoadedIsAWarningAndNotTriedAgain) {
    const GroupAttribute missing =
        GroupBuilder().set("proxies.viewer", StringAttribute("missing.obj")).build();
    tell("/root/a", missing);
    tell("/root/b", missing);
    const std::vector<FactoryProduct> products = collect(factory);
    EXPECT_THAT(linesOf(products), testing::UnorderedElementsAre("produced /root/a/__VlOst_proxy",
                                                                 "produced /root/b/__VlOst_proxy"));
    for (const FactoryProduct& product : products) {
        EXPECT_EQ(textOf(product.attrs),
                  "{type=\"warning\" warningMessage=\"Unable to produce proxy\"}");
    }
    tell("/root/c", missing);
    EXPECT_THAT(collected(), ElementsAre("produced /root/c/__VlOst_proxy"));
    EXPECT_EQ(log.take("getViewerProxyLoaderOp").size(), 1U);
    factory.clear();
    tell("/root/c", missing);
    collected();
    EXPECT_EQ(log.take("getViewerProxyLoaderOp").size(), 1U);
}

TEST_F(VlProxyGeometryFactoryTest, aCookWithoutASceneIsOneLocationWithoutAttributes) {
    tell("/root/a", proxied("x"));
    collected();
    cooks().client(1).reportGone("/root");
    const std::vector<FactoryProduct> products = collect(factory);
    ASSERT_EQ(products.size(), 1U);
    EXPECT_EQ(products[0].path, "/root/a/__VlOst_proxy");
    EXPECT_FALSE(products[0].attrs.isValid());
}

TEST_F(VlProxyGeometryFactoryTest, aListenersErrorLosesTheJobInHandAndNothingElse) {
    show("/root/shown", proxied("x"), 1, sceneOf("x", {}));
    tell("/root/a", GroupBuilder().set("proxies.viewer", StringAttribute("a.obj")).build());
    tell("/root/b", proxied("y"));
    forget("/root/shown");
    channels.onFire = [](const std::string&) -> Attribute { throw std::runtime_error("listener"); };
    EXPECT_THROW(collected(), std::runtime_error);
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("removed /root/shown/__VlOst_proxy"));
    finish(2, sceneOf("y", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/b/__VlOst_proxy"));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_THAT(log.take("getViewerProxyLoaderOp").size(), 1U);
}

// ---- A listener that changes the world while it is asked

class VlProxyGeometryFactoryReentrance : public VlProxyGeometryFactoryTest {
protected:
    VlProxyGeometryFactoryReentrance() {
        tell("/root/a", kFile);
        answer = GroupAttribute{{"opType", StringAttribute("Load")}};
    }
    void whileAsked(const std::function<void()>& action) {
        channels.onFire = [this, action](const std::string&) {
            action();
            return answer;
        };
    }

    const GroupAttribute kFile =
        GroupBuilder().set("proxies.viewer", StringAttribute("a.obj")).build();
    Attribute answer;
};

TEST_F(VlProxyGeometryFactoryReentrance, mayRemoveTheLocation) {
    whileAsked([this] { factory.removeSubtree("/root/a"); });
    EXPECT_THAT(collected(), IsEmpty());
    finish(1, sceneOf("x", {}));
    EXPECT_THAT(collected(), IsEmpty());
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryReentrance, mayRemoveALocationThatItCannotLoad) {
    answer = Attribute();
    whileAsked([this] { factory.removeSubtree("/root/a"); });
    EXPECT_THAT(collected(), IsEmpty());
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryReentrance, mayAskForTheSameAgain) {
    whileAsked([this] { factory.requestProduce(LocationPath("/root/a")); });
    collected();
    finish(1, sceneOf("x", {}));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_proxy"));
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyGeometryFactoryReentrance, mayChangeTheFrame) {
    whileAsked([this, isDone = false]() mutable {
        if (!std::exchange(isDone, true)) {
            factory.setSystemArgs(systemAt(2));
        }
    });
    collected();
    EXPECT_EQ(cooks().getNumberOfClients(), 2);
    finish(2, sceneOf("two", {}));
    EXPECT_EQ(rootOf(collect(factory), "/root/a"), "\"two\"");
    finish(1, sceneOf("one", {}));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyGeometryFactoryReentrance, mayClearEverything) {
    whileAsked([this] { factory.clear(); });
    EXPECT_THAT(collected(), IsEmpty());
    finish(1, sceneOf("x", {}));
    EXPECT_THAT(collected(), IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
