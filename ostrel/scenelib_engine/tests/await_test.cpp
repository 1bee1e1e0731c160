// Cooks that wait for something that another thread makes.

#include "enginescene.h"
#include "testops.h"
#include "until.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace VlScenelibEngine;
using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class Parcel final : public Awaited {
public:
    using Awaited::getNumberOfNotices;

    void deliver(int content) {
        value = content;
        setThere();
    }
    int value = 0;
};

/// A root with the children "now" and "later". The second has a `value` that comes in a parcel,
/// where the argument `wait` is not 0.
class Receiver final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (context.isRoot()) {
            return {GroupAttribute(), ChildList::create(StringAttribute({"later", "now"}))};
        }
        if (context.getName() == "now" || IntAttribute(context.getArg("wait")).getValue(1) == 0) {
            return {GroupAttribute()};
        }
        const std::shared_ptr<Parcel> parcel = order();
        ++numberOfTries;
        context.await(parcel);
        return {GroupAttribute{{"value", IntAttribute(parcel->value)}}};
    }

    /// The one that is waited for, or a new one.
    [[nodiscard]] std::shared_ptr<Parcel> order() const {
        const std::lock_guard lock(mutex);
        std::shared_ptr<Parcel> parcel = ordered.lock();
        if (!parcel) {
            parcel = std::make_shared<Parcel>();
            ordered = parcel;
        }
        return parcel;
    }
    [[nodiscard]] bool isAwaited() const {
        const std::lock_guard lock(mutex);
        return !ordered.expired();
    }

    mutable std::atomic<int> numberOfTries{0};

private:
    mutable std::mutex mutex;
    mutable std::weak_ptr<Parcel> ordered;
};

class Await : public testing::Test {
protected:
    Await() {
        registerOpType("Test.Receiver", receiver);
        op = scene.createOp("Test.Receiver");
    }

    void untilTried(int triesBefore = 0) {
        until([&] { return receiver->numberOfTries > triesBefore; });
    }
    /// Fetches until that has been told.
    static std::vector<std::string> fetchUntil(const EngineScene::ClientPtr& client,
                                               const std::string& last) {
        std::vector<std::string> told;
        until([&] {
            for (const std::string& line : EngineScene::fetchNow(client)) {
                told.push_back(line);
            }
            return !told.empty() && told.back() == last;
        });
        return told;
    }
    EngineScene::ClientPtr view(const EngineScene::OpPtr& viewed) {
        auto client = scene.createClient(viewed);
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        return client;
    }

    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
    EngineScene scene;
    EngineScene::OpPtr op;
};

TEST_F(Await, othersAreCookedAndToldMeanwhile) {
    const auto client = view(op);
    EXPECT_THAT(fetchUntil(client, "+/root/now"), ElementsAre("+/root", "+/root/now"));
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto other = view(literal);
    fetchUntil(other, "+/root/a");
    scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/a", 2}}));
    fetchUntil(other, "+/root/a");
    EXPECT_TRUE(scene.runtime->isProcessing());
    EXPECT_FALSE(scene.engine->waitUntilIdle(std::chrono::seconds(0)));
    EXPECT_THAT(EngineScene::fetchNow(client), IsEmpty());
    EXPECT_FALSE(client->isLocationDataCurrent("/root/later", -1));

    receiver->order()->deliver(7);
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/later"));
    EXPECT_EQ(IntAttribute(scene.getFetched("/root/later").getChildByName("value")).getValue(), 7);
    EXPECT_TRUE(client->isLocationDataCurrent("/root/later", -1));
    EXPECT_FALSE(scene.runtime->isProcessing());
}

TEST_F(Await, whoReadsWhatWaitsWaitsToo) {
    registerTestOps();
    const auto stamped = view(scene.createOp("Test.Stamp", {}, {op}));
    const auto collapsed = view(scene.createOp("HierarchyCollapse", {}, {op}));
    EXPECT_THAT(fetchUntil(stamped, "+/root/now"), ElementsAre("+/root", "+/root/now"));
    EXPECT_THAT(EngineScene::fetchNow(collapsed), IsEmpty());
    receiver->order()->deliver(7);
    EXPECT_THAT(scene.fetch(stamped), ElementsAre("+/root/later"));
    EXPECT_THAT(scene.fetch(collapsed), ElementsAre("+/root"));
    EXPECT_EQ(IntAttribute(scene.getFetched("/root").getChildByName("staticScene.c.later.a.value"))
                  .getValue(),
              7);
}

TEST_F(Await, whatIsCookedAgainStaysAsItWasToldUntilThen) {
    scene.setArgs(op, "Test.Receiver", {{"wait", IntAttribute(0)}});
    const auto client = view(op);
    scene.fetch(client);
    scene.setArgs(op, "Test.Receiver", {{"wait", IntAttribute(1)}});
    untilTried();
    EXPECT_THAT(EngineScene::fetchNow(client), IsEmpty());
    receiver->order()->deliver(7);
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/later"));
}

TEST_F(Await, nothingIsWaitedForThatNobodyWantsAnyMore) {
    const auto client = view(op);
    untilTried();
    client->setAllOpen(false);
    EXPECT_THAT(scene.fetch(client), testing::Not(testing::Contains("+/root/later")));
    EXPECT_FALSE(receiver->isAwaited());

    const int tries = receiver->numberOfTries;
    client->setAllOpen(true);
    untilTried(tries);
    EXPECT_TRUE(receiver->isAwaited());
    scene.setOp(client, nullptr);
    scene.settle();
    EXPECT_FALSE(receiver->isAwaited());
}

TEST_F(Await, nothingThatIsCookedAgainIsWaitedForOnceNobodyWantsIt) {
    scene.setArgs(op, "Test.Receiver", {{"wait", IntAttribute(0)}});
    const auto client = view(op);
    scene.fetch(client);
    scene.setArgs(op, "Test.Receiver", {{"wait", IntAttribute(1)}});
    untilTried();
    client->setAllOpen(false);
    scene.settle();
    EXPECT_FALSE(receiver->isAwaited());
    const int tries = receiver->numberOfTries;
    client->setAllOpen(true);
    untilTried(tries);
    receiver->order()->deliver(7);
    scene.fetch(client);
    EXPECT_TRUE(scene.getFetched("/root/later").getChildByName("value").isValid());
}

TEST_F(Await, anEditOfWhatWaitsTakesEffectAtOnce) {
    const auto client = view(op);
    untilTried();
    scene.setArgs(op, "Test.Receiver", {{"wait", IntAttribute(0)}});
    EXPECT_THAT(scene.fetch(client), testing::Contains("+/root/later"));
    EXPECT_FALSE(receiver->isAwaited());
}

TEST_F(Await, severalClientsWaitForOne) {
    std::vector<EngineScene::ClientPtr> clients;
    for (int i = 0; i < 4; ++i) {
        clients.push_back(view(op));
    }
    untilTried();
    receiver->order()->deliver(7);
    for (const auto& client : clients) {
        EXPECT_THAT(scene.fetch(client),
                    testing::UnorderedElementsAre("+/root", "+/root/later", "+/root/now"));
    }
}

TEST_F(Await, whatIsToComeIsCounted) {
    const auto client = view(op);
    const auto other = view(op);
    fetchUntil(client, "+/root/now");
    fetchUntil(other, "+/root/now");
    until([&] { return scene.engine->countToCome() == 2; });
    other->setAllOpen(false);
    until([&] { return scene.engine->countToCome() == 1; });
    receiver->order()->deliver(7);
    scene.settle();
    EXPECT_EQ(scene.engine->countToCome(), 0U);
}

// As each frame of a drag has it while a model is read.
TEST_F(Await, editsOfOtherThingsLeaveAloneWhatWaits) {
    const auto edited = scene.createOp("Scene.Edit", {}, {op});
    const auto client = view(edited);
    untilTried();
    const std::shared_ptr<Parcel> parcel = receiver->order();
    const auto edit = [&](int value) {
        scene.setArgs(edited, "Scene.Edit",
                      GroupBuilder().set("edits.c.now.a.value", IntAttribute(value)).build());
        fetchUntil(client, "+/root/now");
    };
    // The first makes its way through the op, which has handed all on until then; once others are
    // there that has been done.
    edit(1);
    edit(2);
    edit(3);
    const int tries = receiver->numberOfTries;
    for (int i = 4; i <= 20; ++i) {
        edit(i);
    }
    EXPECT_EQ(receiver->numberOfTries, tries);
    EXPECT_EQ(parcel->getNumberOfNotices(), 1U);
    parcel->deliver(7);
    EXPECT_THAT(scene.fetch(client), testing::Contains("+/root/later"));
    EXPECT_EQ(parcel->getNumberOfNotices(), 0U);
}

/// A cook that waits if what it reads says so, and an edit after which that says otherwise.
struct ReadBeforeWait {
    const char* name;
    std::function<bool(CookContext&)> mustWait;
    std::function<void(EngineScene&, const EngineScene::OpPtr& op, const EngineScene::OpPtr& input)>
        edit;
};

int valueOf(const InputLocation& location) {
    return location.exists() ? IntAttribute(location.getAttrs().getChildByName("value")).getValue()
                             : 0;
}

std::function<void(EngineScene&, const EngineScene::OpPtr&, const EngineScene::OpPtr&)>
setArgument(const char* name) {
    return [name](EngineScene& scene, const EngineScene::OpPtr& op, const EngineScene::OpPtr&) {
        scene.setArgs(op, "Test.Careful", {{name, IntAttribute(1)}});
    };
}

std::function<void(EngineScene&, const EngineScene::OpPtr&, const EngineScene::OpPtr&)>
setInput(const std::vector<LiteralRow>& rows) {
    return [rows](EngineScene& scene, const EngineScene::OpPtr&, const EngineScene::OpPtr& input) {
        scene.setArgs(input, "Scene.Literal", literalArgs(rows));
    };
}

const std::vector<ReadBeforeWait>& readsBeforeWaits() {
    static const std::vector<ReadBeforeWait> rows{
        {"Argument", [](CookContext& context) { return !context.getArg("go"); }, setArgument("go")},
        {"AllArguments",
         [](CookContext& context) { return !context.getArgs().getChildByName("go"); },
         setArgument("go")},
        {"WhatTheParentHandsDown",
         [](CookContext& context) {
             return !context.getContextsAs<AttributeContexts>().get(context.getChildIndex());
         },
         setArgument("handedDown")},
        {"Input", [](CookContext& context) { return valueOf(context.getInput(0)) == 1; },
         setInput({{"/root/later", 2}})},
        {"InputThatGoes", [](CookContext& context) { return context.getInput(0).exists(); },
         setInput({{"/root/other", 2}})},
        {"InputThatComes",
         [](CookContext& context) { return !context.getInput(0, "/root/later/new").exists(); },
         setInput({{"/root/later", 1}, {"/root/later/new", 1}})},
        {"InputElsewhere",
         [](CookContext& context) { return valueOf(context.getInput(0, "/root/other")) == 1; },
         setInput({{"/root/later", 1}, {"/root/other", 2}})},
        {"InputBelow",
         [](CookContext& context) {
             const InputTree tree = context.getInputTree(0);
             return tree.exists() && valueOf(tree.getChild(0)) == 1;
         },
         setInput({{"/root/later", 1}, {"/root/later/below", 2}})},
        {"NumberOfInputs", [](CookContext& context) { return context.getNumberOfInputs() == 1; },
         [](EngineScene& scene, const EngineScene::OpPtr& op, const EngineScene::OpPtr& input) {
             scene.setInputs(op, {input, input});
         }},
        {"WhichInput", [](CookContext& context) { return context.getInput(0).exists(); },
         [](EngineScene& scene, const EngineScene::OpPtr& op, const EngineScene::OpPtr&) {
             scene.setInputs(op, {nullptr});
         }},
        {"TypeOfTheInput", [](CookContext& context) { return context.getInput(0).exists(); },
         [](EngineScene& scene, const EngineScene::OpPtr&, const EngineScene::OpPtr& input) {
             scene.setArgs(input, "no-op", {});
         }},
        {"Type", [](CookContext&) { return true; },
         [](EngineScene& scene, const EngineScene::OpPtr& op, const EngineScene::OpPtr&) {
             scene.setArgs(op, "no-op", {});
         }},
        {"WhetherItIsThere", [](CookContext&) { return true; }, setArgument("without")},
    };
    return rows;
}

/// A root with the child "later", whose cook waits where a row says so.
class Careful final : public OpType {
public:
    explicit Careful(const ReadBeforeWait& read) : row(read) {}

    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (context.isRoot()) {
            const bool isWithout = context.getArg("without").isValid();
            return {GroupAttribute(),
                    ChildList::create(isWithout ? StringAttribute("now") : StringAttribute("later"),
                                      std::make_shared<AttributeContexts>(
                                          std::vector{context.getArg("handedDown")}))};
        }
        if (context.getName() == "later" && row.mustWait(context)) {
            isWaiting = true;
            context.await(parcel);
        }
        return {GroupAttribute()};
    }

    mutable std::atomic<bool> isWaiting{false};

private:
    const ReadBeforeWait& row;
    std::shared_ptr<Parcel> parcel = std::make_shared<Parcel>();
};

using ReadAndView = std::tuple<ReadBeforeWait, const char*>;

class AwaitReads : public Await, public testing::WithParamInterface<ReadAndView> {};

TEST_P(AwaitReads, haveItTryAgainWhenTheyChange) {
    registerTestOps();
    const auto& [row, viewingType] = GetParam();
    const auto careful = std::make_shared<Careful>(row);
    registerOpType("Test.Careful", careful);
    const auto input = scene.createOp(
        "Scene.Literal",
        literalArgs({{"/root/later", 1}, {"/root/later/below", 1}, {"/root/other", 1}}));
    const auto waiting = scene.createOp("Test.Careful", {}, {input});
    const auto client = view(scene.createOp(viewingType, {}, {waiting}));
    until([&] { return careful->isWaiting.load(); });
    EXPECT_FALSE(scene.engine->waitUntilIdle(std::chrono::seconds(0)));
    row.edit(scene, waiting, input);
    scene.settle(); // nothing is ever delivered
}

INSTANTIATE_TEST_SUITE_P(
    Of, AwaitReads,
    testing::Combine(testing::ValuesIn(readsBeforeWaits()),
                     testing::Values("no-op", "Test.Stamp", "HierarchyCollapse")),
    [](const auto& row) {
        std::string name =
            std::string(std::get<0>(row.param).name) + "SeenBy" + std::get<1>(row.param);
        std::erase_if(name, [](char each) { return each == '.' || each == '-'; });
        return name;
    });

TEST_F(Await, whoViewsSomethingElseWaitsNoMore) {
    const auto client = view(op);
    untilTried();
    scene.setOp(client, scene.createOp("Scene.Literal", literalArgs({{"/root/later", 1}})));
    EXPECT_THAT(scene.fetch(client), testing::Contains("+/root/later"));
    EXPECT_FALSE(receiver->isAwaited());
}

TEST(Awaited, callsEachNoticeOnce) {
    Parcel parcel;
    int first = 0;
    int second = 0;
    const auto one = std::make_shared<const Awaited::Notice>([&] { ++first; });
    const auto two = std::make_shared<const Awaited::Notice>([&] { ++second; });
    for (const auto& notice : {one, two, one, one}) {
        EXPECT_TRUE(parcel.notifyWhenThere(notice));
    }
    EXPECT_EQ(first + second, 0);
    parcel.deliver(7);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_FALSE(parcel.notifyWhenThere(one));
    EXPECT_EQ(first, 1);
}

TEST_F(Await, anEngineEndsWhileItWaitsAndWhatComesThenHurtsNobody) {
    std::shared_ptr<Parcel> parcel;
    {
        EngineScene ending;
        const auto client = ending.createClient(ending.createOp("Test.Receiver"));
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        untilTried();
        parcel = receiver->order();
    }
    parcel->deliver(7);
}

} // namespace
