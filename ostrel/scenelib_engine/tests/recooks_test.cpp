// What a commit has cooked again, and no more.

#include "enginescene.h"
#include "testops.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// A root with a thousand children, each of which reads one of ten arguments, "n0" to "n9", and
/// shows it as its `value`.
class Readers final : public VlScenelibEngine::OpType {
    [[nodiscard]] VlScenelibEngine::CookResult
    cook(VlScenelibEngine::CookContext& context) const override {
        if (context.isRoot()) {
            std::vector<std::string> names;
            for (int i = 0; i < 1000; ++i) {
                names.push_back(std::to_string(i));
            }
            return {GroupAttribute(), VlScenelibEngine::ChildList::create(StringAttribute(names))};
        }
        const std::string argument = "n" + std::string(1, context.getName().back());
        return {GroupAttribute{{"value", context.getArg(argument)}}};
    }
};

TEST(Recooks, aCommitCooksAgainExactlyWhatHasReadWhatItChanges) {
    VlScenelibEngine::registerOpType("Test.Readers", std::make_shared<Readers>());
    EngineScene scene;
    VlAttribute::GroupBuilder args;
    const auto op = scene.createOp("Test.Readers");
    // Passed on below the root.
    const auto client = scene.createClient(scene.createOp("no-op", {}, {op}));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    scene.fetch(client);
    struct Row {
        std::vector<const char*> changed;
        std::size_t cooks;
    };
    int value = 0;
    for (const Row& row : std::vector<Row>{{{"n3"}, 100},
                                           {{"n0", "n9"}, 200},
                                           {{"unread"}, 0},
                                           {{}, 0},
                                           {{"n0", "n1", "n2", "n3", "n4", "n5", "n6"}, 700}}) {
        scene.countCooks();
        for (const char* name : row.changed) {
            args.set(name, IntAttribute(++value));
        }
        scene.setArgs(op, "Test.Readers", args.build(VlAttribute::BuildMode::KeepBuilder));
        EXPECT_EQ(scene.fetch(client).size(), row.cooks) << testing::PrintToString(row.changed);
        EXPECT_EQ(scene.countCooks(), row.cooks) << testing::PrintToString(row.changed);
    }
}

TEST(Recooks, anEqualResultIsToldOfTheLocationThatRanAndStopsThere) {
    EngineScene scene;
    registerTestOps();
    const auto stamp = [](int value, int unread) {
        return GroupAttribute{{"stamp", IntAttribute(value)}, {"unread", IntAttribute(unread)}};
    };
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    const auto first = scene.createOp("Test.Filter", {{"hide", StringAttribute("x")}}, {literal});
    const auto second = scene.createOp("Test.Stamp", stamp(1, 1), {first});
    const auto onFirst = scene.createClient(first);
    const auto onSecond = scene.createClient(second);
    for (const auto& client : {onFirst, onSecond}) {
        client->setLocationsActive(paths({"/root"}));
        scene.fetch(client);
    }
    scene.countCooks();
    scene.setArgs(first, "Test.Filter", {{"hide", StringAttribute("y")}});
    EXPECT_THAT(scene.fetch(onFirst), ElementsAre("+/root"));
    EXPECT_THAT(scene.fetch(onSecond), IsEmpty());
    EXPECT_EQ(scene.countCooks(), 1U);
    scene.setArgs(second, "Test.Stamp", stamp(1, 2));
    EXPECT_THAT(scene.fetch(onSecond), IsEmpty());
    EXPECT_EQ(scene.countCooks(), 0U) << "an argument that nobody has read";
}

TEST(Recooks, editingOneLeafCooksTheSameFewLocationsHoweverManyThereAre) {
    std::vector<std::uint64_t> cooks;
    for (const int leaves : {1000, 100000}) {
        EngineScene scene;
        const auto generate =
            scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(leaves)}});
        const auto literal =
            scene.createOp("Scene.Literal", literalArgs({{"/root/set_0/group_0/leaf_5", 1}}));
        const auto client =
            scene.createClient(scene.createOp("Scene.Merge", {}, {generate, literal}));
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        EXPECT_EQ(scene.fetch(client).size(),
                  static_cast<std::size_t>(1 + leaves / 1000 + leaves / 100 + leaves));
        scene.countCooks();
        scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/set_0/group_0/leaf_5", 2}}));
        EXPECT_THAT(scene.fetch(client), ElementsAre("+/root/set_0/group_0/leaf_5"));
        cooks.push_back(scene.countCooks());
    }
    // The way down in the literal, and the leaf where it is merged.
    EXPECT_THAT(cooks, ElementsAre(5U, 5U));
}

TEST(Recooks, aReadFromElsewhereIsFollowed) {
    EngineScene scene;
    registerTestOps();
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}}));
    const auto far =
        scene.createOp("Test.Far", {{"path", StringAttribute("/root/a/c")}}, {literal});
    const auto client = scene.createClient(far);
    client->setLocationsActive(paths({"/root"}));
    scene.fetch(client);
    EXPECT_FALSE(scene.getFetched("/root").getChildByName("far").isValid());
    for (const int value : {7, 8}) {
        scene.setArgs(literal, "Scene.Literal",
                      literalArgs({{"/root/a/b", 1}, {"/root/a/c", value}}));
        scene.fetch(client);
        EXPECT_EQ(IntAttribute(scene.getFetched("/root").getChildByName("far.value")).getValue(),
                  value);
    }
}

} // namespace
