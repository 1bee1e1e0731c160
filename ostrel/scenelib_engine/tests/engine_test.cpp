#include "applicationgraph.h"
#include "enginescene.h"
#include "heldengine.h"
#include "testops.h"

#include "VlScenelibEngine/OpType.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include "VlScenelib/Scenelib.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

std::string textOf(const GroupAttribute& attrs, const char* name) {
    return StringAttribute(attrs.getChildByName(name)).getValue();
}

TEST(Engine, parentsAreToldBeforeTheirChildren) {
    EngineScene scene;
    const auto client = scene.createClient(
        scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}, {"/root/c", 1}})));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/c", "+/root/a/b"));
}

TEST(Engine, ancestorsOfAnActiveLocationAreCookedButNotTheirOtherChildren) {
    EngineScene scene;
    const auto client = scene.createClient(
        scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}, {"/root/c", 1}})));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/a/b"));
    EXPECT_EQ(scene.countCooks(), 3U);
}

TEST(Engine, openingWithoutAnActiveAncestorCooksNothing) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}})));
    client->setLocationsOpen(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), IsEmpty());
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a"));
}

TEST(Engine, switchingAllOpenOffBringsTheExplicitStateBack) {
    EngineScene scene;
    const auto client = scene.createClient(
        scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}, {"/root/c/d", 1}})));
    client->setLocationsActive(paths({"/root"}));
    client->setLocationsOpen(paths({"/root", "/root/a"}));
    client->setAllOpen(true);
    scene.fetch(client);
    client->setAllOpen(false);
    EXPECT_THAT(scene.fetch(client), ElementsAre("-/root/c/d"));
}

TEST(Engine, anActiveLocationThatDoesNotExistIsToldOnce) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root/x/y"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "-/root/x/y"));
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a", 2}}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/x/y", 2}}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/x", "+/root/x/y"));
}

TEST(Engine, malformedPathsNeverExist) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}})));
    client->setLocationsActive(paths({"", "root", "/root/", "/root//a", "/"}));
    EXPECT_THAT(scene.fetch(client),
                testing::UnorderedElementsAre("-", "-root", "-/root/", "-/root//a", "-/"));
    EXPECT_TRUE(client->isLocationActive("/root/"));
}

TEST(Engine, activationsAndDeactivationsBetweenTwoCooksAreCoalesced) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root", "/root/a"}));
    client->setLocationsInactive(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));
}

TEST(Engine, aLocationThatBecomesActiveAgainIsToldWithoutARemoval) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}})));
    client->setLocationsActive(paths({"/root/a"}));
    scene.fetch(client);
    client->setLocationsInactive(paths({"/root/a"}));
    client->setLocationsActive(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/a"));
    client->setLocationsActive(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(client), IsEmpty());
}

TEST(Engine, aLocationThatIsWantedAgainIsNotTakenAwayWhileOthersAreCooked) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}})));
    client->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(client);
    client->setLocationsInactive(paths({"/root/a/b"}));
    scene.settle();
    HeldEngine held(scene);
    client->setLocationsActive(paths({"/root/a/b"}));
    EXPECT_THAT(EngineScene::fetchNow(client), IsEmpty());
    held.release();
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/a/b"));
}

TEST(Engine, aLocationThatIsWantedAgainButGoneIsTakenAwayOnce) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}}));
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(client);
    client->setLocationsInactive(paths({"/root/a/b"}));
    scene.settle();
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/c", 1}}));
    client->setLocationsActive(paths({"/root/a/b"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "-/root/a/b", "-/root/a"));
    client->setLocationsInactive(paths({"/root/a/b"}));
    client->setLocationsActive(paths({"/root/a/b"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("-/root/a/b"));
}

TEST(Engine, aWaitingEventIsReplacedByANewerOne) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root/a"}));
    scene.settle();
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a", 2}}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a"));
    EXPECT_EQ(IntAttribute(scene.getFetched("/root/a").getChildByName("value")).getValue(), 2);
}

TEST(Engine, aLocationThatVanishesBeforeItWasToldIsNotMentioned) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}, {"/root/b", 1}}));
    const auto client = scene.createClient(op);
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    scene.settle();
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/b", 1}}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/b"));
}

TEST(ApplicationGraph, aLocationThatIsCookedAgainIsReportedWhateverComesOfIt) {
    namespace Graph = VlScenelibEngine::ApplicationGraph;
    registerTestOps();
    EngineScene scene(VlScenelibEngine::getApplicationEngine());
    Graph::Transaction transaction;
    const int literal =
        transaction.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}, {"/root/c", 1}}));
    const int passed = transaction.createOp("no-op", {}, {literal});
    // Each makes locations of its own from what it reads.
    const int filtered =
        transaction.createOp("Test.Filter", {{"hide", StringAttribute("x")}}, {passed});
    const int stamped = transaction.createOp("Test.Stamp", {}, {filtered});
    transaction.commit();
    std::vector<EngineScene::ClientPtr> clients;
    for (const int op : {literal, passed, filtered, stamped}) {
        clients.push_back(scene.createClient(scene.runtime->getOpFromOpId(op)));
        clients.back()->setLocationsOpen(paths({"/root"}));
        clients.back()->setLocationsActive(paths({"/root"}));
        EXPECT_THAT(scene.fetch(clients.back()), ElementsAre("+/root", "+/root/a", "+/root/c"));
    }

    transaction.recookLocation(passed, "/root/a");
    const std::int64_t commit = transaction.commit();
    for (const auto& client : clients) {
        EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/a"));
    }
    EXPECT_TRUE(Graph::isCommitCooked(commit));

    const int uncooked = transaction.createOp("no-op", {}, {passed});
    transaction.recookLocation(uncooked, "/root/a");
    transaction.commit();
    for (const auto& client : clients) {
        EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/a")) << "what it is about to show";
    }

    int diamonds = passed;
    for (int i = 0; i < 64; ++i) {
        const int left = transaction.createOp("no-op", {}, {diamonds});
        const int right = transaction.createOp("no-op", {}, {diamonds});
        diamonds = transaction.createOp("Scene.Merge", {}, {left, right});
    }
    transaction.recookLocation(diamonds, "/root/a");
    transaction.commit();
    for (const auto& client : clients) {
        EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/a")) << "once, by 2^64 ways";
    }

    for (const char* path : {"/root/a/b", "/root/x", "/other", "", "root", "/root/"}) {
        transaction.recookLocation(passed, path);
        transaction.commit();
        EXPECT_THAT(scene.fetch(clients[1]), IsEmpty()) << path << ": nobody has cooked it";
    }
    EXPECT_THROW(transaction.recookLocation(-1, "/root"), std::runtime_error);
}

TEST(Engine, resultsAreSharedBetweenClients) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}, {"/root/b", 1}}));
    for (int i = 0; i < 4; ++i) {
        const auto client = scene.createClient(op);
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        EXPECT_EQ(scene.fetch(client).size(), 3U);
    }
    EXPECT_EQ(scene.countCooks(), 3U);
}

// ---- errors

TEST(Engine, anUnknownOpTypeIsAnErrorLocation) {
    EngineScene scene;
    const auto client = scene.createClient(scene.createOp("Scene.Nonsense"));
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));
    EXPECT_EQ(textOf(scene.getFetched("/root"), "type"), "error");
    EXPECT_EQ(textOf(scene.getFetched("/root"), "errorMessage"),
              "Unknown op type \"Scene.Nonsense\"");
}

TEST(Engine, aCookThatThrowsIsAnErrorLocationAndTheOthersShow) {
    EngineScene scene;
    registerTestOps();
    const auto literal =
        scene.createOp("Scene.Literal", literalArgs({{"/root/a/x", 1}, {"/root/b", 1}}));
    const auto client = scene.createClient(
        scene.createOp("Test.Throw", {{"name", StringAttribute("a")}}, {literal}));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/b"));
    EXPECT_EQ(textOf(scene.getFetched("/root/a"), "errorMessage"), "thrown at /root/a");
}

class Rude final : public VlScenelibEngine::OpType {
    [[nodiscard]] VlScenelibEngine::CookResult
    cook(VlScenelibEngine::CookContext& context) const override {
        using VlScenelibEngine::ChildList;
        if (context.isRoot()) {
            return {{}, ChildList::create(StringAttribute({"int", "nothing", "alias", "names"}))};
        }
        if (context.getName() == "int") {
            throw 1;
        }
        if (context.getName() == "nothing") {
            return VlScenelibEngine::CookResult::nothing();
        }
        if (context.getName() == "names") {
            return {{}, ChildList::create(StringAttribute({"a", "a"}))};
        }
        return VlScenelibEngine::CookResult::sameAsInput(3);
    }
};

TEST(Engine, whateverAnOpTypeDoesWrongBecomesAnErrorLocation) {
    EngineScene scene;
    VlScenelibEngine::registerOpType("Test.Rude", std::make_shared<Rude>());
    const auto client = scene.createClient(scene.createOp("Test.Rude"));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    EXPECT_EQ(scene.fetch(client).size(), 5U);
    EXPECT_EQ(textOf(scene.getFetched("/root/int"), "errorMessage"), "Unknown C++ exception");
    EXPECT_EQ(textOf(scene.getFetched("/root/nothing"), "errorMessage"),
              "Op type \"Test.Rude\" cooked nothing below the root");
    EXPECT_EQ(textOf(scene.getFetched("/root/alias"), "errorMessage"),
              "Op type \"Test.Rude\" passes on a location that its input does not have");
    EXPECT_EQ(textOf(scene.getFetched("/root/names"), "errorMessage"),
              "Child name \"a\" stands twice");
}

TEST(Engine, aCycleIsRefusedAndNothingOfTheTransactionApplied) {
    EngineScene scene;
    const auto first = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto second = scene.createOp("no-op", {}, {first});
    const auto client = scene.createClient(second);
    client->setLocationsActive(paths({"/root/a"}));
    scene.fetch(client);
    const auto transaction = scene.runtime->createTransaction();
    transaction->setOpArgs(first, "no-op", GroupAttribute());
    transaction->setOpInputs(first, {second});
    EXPECT_THROW(scene.runtime->commit(transaction), std::runtime_error);
    EXPECT_THAT(scene.fetch(client), IsEmpty());
    EXPECT_THROW(scene.setInputs(first, {first}), std::runtime_error);
    EXPECT_NO_THROW(scene.setInputs(second, {first}));
}

// ---- the runtime's other answers

TEST(Engine, commitIdsStartAboveZeroAndGrowAcrossRuntimes) {
    EngineScene first;
    EngineScene second;
    std::int64_t last = 0;
    for (int i = 0; i < 3; ++i) {
        for (EngineScene* scene : {&first, &second}) {
            const std::int64_t id = scene->runtime->commit(scene->runtime->createTransaction());
            EXPECT_GT(id, last);
            last = id;
        }
    }
}

TEST(Engine, opsAreFoundByIdWhileTheyLive) {
    EngineScene scene;
    auto op = scene.createOp("no-op");
    const int id = op->getId();
    EXPECT_GT(id, 0);
    ASSERT_TRUE(scene.runtime->getOpFromOpId(id));
    EXPECT_EQ(scene.runtime->getOpFromOpId(id)->getId(), id);
    EXPECT_FALSE(scene.runtime->getOpFromOpId(-1));
    EXPECT_FALSE(EngineScene().runtime->getOpFromOpId(id)) << "a graph of its own";
    op.reset();
    scene.settle();
    EXPECT_FALSE(scene.runtime->getOpFromOpId(id));
}

TEST(Engine, anOpLivesOnAsAnInput) {
    EngineScene scene;
    auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    auto passed = scene.createOp("no-op", {}, {literal});
    literal.reset();
    const auto client = scene.createClient(passed);
    passed.reset();
    client->setLocationsActive(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a"));
}

TEST(Engine, dataIsCurrentOnceItIsFetched) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}, {"/root/b", 1}}));
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root/a"}));
    scene.settle();
    EXPECT_FALSE(client->isLocationDataCurrent("/root/a", -1));
    scene.fetch(client);
    EXPECT_TRUE(client->isLocationDataCurrent("/root/a", -1));
    EXPECT_FALSE(client->isLocationDataCurrent("/root/b", -1)) << "not cooked";
    const std::int64_t commit =
        scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a", 2}, {"/root/b", 1}}));
    EXPECT_FALSE(client->isLocationDataCurrent("/root/a", commit));
    EXPECT_FALSE(client->isLocationDataCurrent("/root/a", -1));
    scene.fetch(client);
    EXPECT_TRUE(client->isLocationDataCurrent("/root/a", commit));
    EXPECT_FALSE(client->isLocationDataCurrent("/root/a", commit + 1000)) << "not known";
}

/// Its root has the argument `value`, which for 2 takes until the test says so.
class SlowValue final : public VlScenelibEngine::OpType {
public:
    [[nodiscard]] VlScenelibEngine::CookResult
    cook(VlScenelibEngine::CookContext& context) const override {
        const VlAttribute::Attribute value = context.getArg("value");
        if (IntAttribute(value).getValue() == 2) {
            isReached = true;
            isReached.notify_all();
            isOpen.wait(false);
        }
        return {GroupAttribute{{"value", value}}};
    }

    mutable std::atomic<bool> isReached{false};
    mutable std::atomic<bool> isOpen{false};
};

TEST(Engine, aCommitIsCookedOnceWhatItAffectsIsCookedAgain) {
    EngineScene scene;
    const auto type = std::make_shared<SlowValue>();
    VlScenelibEngine::registerOpType("Test.SlowValue", type);
    const auto op = scene.createOp("Test.SlowValue", {{"value", IntAttribute(1)}});
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));

    const std::int64_t commit = scene.setArgs(op, "Test.SlowValue", {{"value", IntAttribute(2)}});
    EXPECT_TRUE(scene.engine->isCommitCooked(commit - 1));
    type->isReached.wait(false);
    EXPECT_FALSE(scene.engine->isCommitCooked(commit)) << "while it is being cooked";
    EXPECT_FALSE(client->isLocationDataCurrent("/root", commit));
    EXPECT_TRUE(client->isLocationDataCurrent("/root", commit - 1));
    type->isOpen = true;
    type->isOpen.notify_all();

    scene.settle();
    EXPECT_TRUE(scene.engine->isCommitCooked(commit));
    EXPECT_FALSE(client->isLocationDataCurrent("/root", commit)) << "not fetched yet";
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));
    EXPECT_TRUE(client->isLocationDataCurrent("/root", commit));
    EXPECT_FALSE(scene.engine->isCommitCooked(commit + 1000)) << "not known";
}

TEST(Engine, activeLocationsAreThoseMadeActiveWithoutTheirContext) {
    EngineScene scene;
    const auto client = scene.createClient(nullptr);
    client->setLocationsActive(paths({"/root/b", "/root/a/x", "/root", "/other"}));
    StringAttribute active;
    client->getActiveLocations(active, "");
    EXPECT_EQ(active, paths({"/other", "/root", "/root/a/x", "/root/b"}));
    client->getActiveLocations(active, "/root/a");
    EXPECT_EQ(active, paths({"/root/a/x"}));
    client->getActiveLocations(active, "/root");
    EXPECT_EQ(active, paths({"/root", "/root/a/x", "/root/b"}));
    client->getActiveLocations(active, "/nowhere");
    EXPECT_TRUE(active.isValid());
    EXPECT_EQ(active.getNumberOfValues(), 0);
    EXPECT_FALSE(client->isLocationActive("/root/a"));
    EXPECT_TRUE(client->isLocationActive("/root/a/x"));
}

TEST(Engine, cachedLocationsAreThoseFetchedAndCooked) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}})));
    client->setLocationsActive(paths({"/root/a", "/root/x"}));
    scene.fetch(client);
    EXPECT_FALSE(client->getCachedLocation("/root/a").second) << "caching is off";
    client->setEventCachingEnabled(true);
    scene.runtime->flushCaches();
    scene.settle();
    EXPECT_FALSE(client->getCachedLocation("/root/a").second) << "not fetched";
    scene.fetch(client);
    EXPECT_TRUE(client->getCachedLocation("/root/a").first.doesLocationExist());
    client->setLocationsInactive(paths({"/root/a"}));
    EXPECT_FALSE(client->getCachedLocation("/root/a").second) << "not cooked";
    client->setLocationsActive(paths({"/root/y"}));
    scene.fetch(client);
    EXPECT_TRUE(client->getCachedLocation("/root/y").second);
    EXPECT_FALSE(client->getCachedLocation("/root/y").first.doesLocationExist());
}

TEST(Engine, flushingCooksAndTellsEverythingAgainWithoutRemovals) {
    EngineScene scene;
    const auto client =
        scene.createClient(scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}})));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    scene.fetch(client);
    scene.countCooks();
    scene.runtime->flushCaches();
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/a/b"));
    EXPECT_EQ(scene.countCooks(), 3U);
}

TEST(Engine, theTimeIsAnArgument) {
    EngineScene scene;
    class Clock final : public VlScenelibEngine::OpType {
        [[nodiscard]] VlScenelibEngine::CookResult
        cook(VlScenelibEngine::CookContext& context) const override {
            return {
                GroupAttribute{{"time", VlAttribute::FloatAttribute(context.getCurrentTime())}}};
        }
    };
    VlScenelibEngine::registerOpType("Test.Clock", std::make_shared<Clock>());
    const auto op = scene.createOp("Test.Clock");
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root"}));
    const auto timeOf = [&] {
        scene.fetch(client);
        return VlAttribute::FloatAttribute(scene.getFetched("/root").getChildByName("time"))
            .getValue(-1);
    };
    EXPECT_EQ(timeOf(), 0);
    VlAttribute::GroupBuilder args;
    args.set("system.timeSlice.currentTime", VlAttribute::FloatAttribute(12.5F));
    scene.setArgs(op, "Test.Clock", args.build());
    EXPECT_EQ(timeOf(), 12.5F);
}

TEST(Engine, limitedFetchesAddUpToAll) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(250)}});
    const auto client = scene.createClient(op);
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    for (const char* step : {"appearing", "disappearing"}) {
        scene.settle();
        std::size_t total = 0;
        std::vector<VlScenelib::LocationEvent> events;
        do {
            client->getLocationEvents(events, 7);
            EXPECT_LE(events.size(), 7U) << step;
            total += events.size();
        } while (!events.empty());
        EXPECT_EQ(total, 255U) << step;
        EXPECT_FALSE(client->hasLocationEvents());
        scene.setOp(client, nullptr);
    }
}

// ---- the two kinds of runtime

TEST(ScenelibEngine, independentRuntimesHaveGraphsOfTheirOwn) {
    VlScenelibEngine::registerScenelibEngine();
    const auto runtime = VlScenelib::Scenelib().createRuntime();
    VlScenelibEngine::ApplicationGraph::Transaction transaction;
    const int id = transaction.createOp("no-op");
    transaction.commit();
    EXPECT_FALSE(runtime->getOpFromOpId(id));
    EXPECT_EQ(runtime->getRootLocationPath(), "/root");
}

TEST(ApplicationGraph, mistakesNameTheOp) {
    VlScenelibEngine::registerScenelibEngine();
    VlScenelibEngine::ApplicationGraph::Transaction transaction;
    const auto messageOf = [](auto&& call) -> std::string {
        try {
            call();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(messageOf([&] { transaction.setOpArgs(987654, "no-op", {}); }),
              "There is no op with the id 987654");
    const int op = transaction.createOp("no-op");
    transaction.setOpInputs(op, {op});
    EXPECT_EQ(messageOf([&] { transaction.commit(); }),
              "Op " + std::to_string(op) + " can't have these inputs: it would depend on itself");
}

} // namespace
