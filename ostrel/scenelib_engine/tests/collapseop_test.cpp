#include "enginescene.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/IntAttribute.h"

#include "VlScenelib/LocationEvent.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class CollapseOp : public testing::Test {
protected:
    /// All that a client that opens everything is told of the collapsed input.
    std::vector<std::string> show(const EngineScene::OpPtr& input) {
        client = scene.createClient(scene.createOp("HierarchyCollapse", {}, {input}));
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        return scene.fetch(client);
    }
    [[nodiscard]] GroupAttribute getStaticScene() const {
        return GroupAttribute(scene.getFetched("/root").getChildByName("staticScene"));
    }

    EngineScene scene;
    EngineScene::ClientPtr client;
};

TEST_F(CollapseOp, turnsTheInputIntoOneAttributeOfTheRoot) {
    const auto input = scene.createOp(
        "Scene.Literal", literalArgs({{"/root/b/x", 1}, {"/root/a", 2}, {"/root", 3}}));
    EXPECT_THAT(show(input), ElementsAre("+/root"));
    const GroupAttribute none = GroupAttribute::Empty();
    const GroupAttribute expected{
        {"a", GroupAttribute{{"value", IntAttribute(3)}}},
        {"c",
         GroupAttribute{
             {"b",
              GroupAttribute{
                  {"a", none},
                  {"c",
                   GroupAttribute{
                       {"x", GroupAttribute{{"a", GroupAttribute{{"value", IntAttribute(1)}}},
                                            {"c", none}}}}}}},
             {"a",
              GroupAttribute{{"a", GroupAttribute{{"value", IntAttribute(2)}}}, {"c", none}}}}}};
    EXPECT_EQ(getStaticScene(), expected);
    EXPECT_EQ(scene.getFetched("/root").getNumberOfChildren(), 1);
}

TEST_F(CollapseOp, ofALoneRootHasNoChildren) {
    show(scene.createOp("Scene.Literal", literalArgs({{"/root", 3}})));
    EXPECT_EQ(getStaticScene(), (GroupAttribute{{"a", GroupAttribute{{"value", IntAttribute(3)}}},
                                                {"c", GroupAttribute::Empty()}}));
}

TEST_F(CollapseOp, ofNothingIsNothing) {
    EXPECT_THAT(show(nullptr), ElementsAre("-/root"));
    EXPECT_THAT(show(scene.createOp("no-op")), ElementsAre("-/root"));
}

TEST_F(CollapseOp, isShownAgainByALiteral) {
    const auto input = scene.createOp(
        "Scene.Generate", {{"leafCount", IntAttribute(300)}, {"withGeometry", IntAttribute(1)}});
    show(input);
    const auto literal = scene.createOp("Scene.Literal", {{"staticScene", getStaticScene()}});
    const GroupAttribute collapsed = getStaticScene();
    EXPECT_THAT(show(literal), ElementsAre("+/root"));
    EXPECT_EQ(getStaticScene(), collapsed);
    EXPECT_EQ(GroupAttribute(collapsed.getChildByName("c.set_0.c.group_2.c")).getNumberOfChildren(),
              100);
}

TEST_F(CollapseOp, firstEventTellsTheWholeScene) {
    const auto input = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(5000)}});
    const auto op = scene.createOp("HierarchyCollapse", {}, {input});
    const auto transaction = scene.runtime->createTransaction();
    const auto viewer = transaction->createClient();
    transaction->setClientOp(viewer, op);
    viewer->setLocationsActive(paths({"/root"}));
    scene.runtime->commit(transaction);
    std::vector<VlScenelib::LocationEvent> events;
    while (events.empty()) {
        viewer->getLocationEvents(events, 0);
    }
    const GroupAttribute sets(
        events.front().getLocationData().getAttrs().getChildByName("staticScene.c"));
    EXPECT_EQ(sets.getNumberOfChildren(), 5);
    EXPECT_EQ(GroupAttribute(sets.getChildByName("set_4.c.group_9.c")).getNumberOfChildren(), 100);
}

TEST_F(CollapseOp, cooksAgainWithWhatChangedBelowAndNothingElse) {
    const auto rows = [](int value) {
        return literalArgs({{"/root/a/x", value}, {"/root/a/y", 1}, {"/root/b", 1}});
    };
    const auto literal = scene.createOp("Scene.Literal", rows(1));
    // Aliases on the way: changes pass through them.
    const auto merge = scene.createOp(
        "Scene.Merge", {}, {scene.createOp("no-op", {}, {literal}), scene.createOp("no-op")});
    show(merge);
    scene.countCooks();
    scene.setArgs(literal, "Scene.Literal", rows(2));
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root"));
    EXPECT_EQ(getStaticScene().getChildByName("c.a.c.x.a.value"), IntAttribute(2));
    // The way to the leaf, and the collapse.
    EXPECT_EQ(scene.countCooks(), 3U + 1U);
    scene.setArgs(literal, "Scene.Literal", rows(2));
    EXPECT_THAT(scene.fetch(client), IsEmpty());
    EXPECT_EQ(scene.countCooks(), 0U);
}

TEST_F(CollapseOp, seesLocationsComeAndGo) {
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a/x", 1}}));
    show(literal);
    scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/a/x/deep/deeper", 1}}));
    scene.fetch(client);
    EXPECT_EQ(getStaticScene().getChildByName("c.a.c.x.c.deep.c.deeper.a.value"), IntAttribute(1));
    scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/a", 1}}));
    scene.fetch(client);
    EXPECT_EQ(getStaticScene().getChildByName("c.a.c"), GroupAttribute::Empty());
    scene.setArgs(literal, "Scene.Literal", {});
    EXPECT_THAT(scene.fetch(client), ElementsAre("-/root"));
    scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/a/x", 4}}));
    scene.fetch(client);
    EXPECT_EQ(getStaticScene().getChildByName("c.a.c.x.a.value"), IntAttribute(4));
}

/// Below the root, each location has as `below` how many locations the input has below it.
class CountBelow final : public VlScenelibEngine::OpType {
    static int count(const VlScenelibEngine::InputTree& tree) {
        int total = 0;
        for (std::size_t i = 0; tree.getChildren() && i < tree.getChildren()->size(); ++i) {
            total += 1 + count(tree.getChild(i));
        }
        return total;
    }
    [[nodiscard]] VlScenelibEngine::CookResult
    cook(VlScenelibEngine::CookContext& context) const override {
        if (context.isRoot()) {
            const auto input = context.getInput(0);
            return {input.getAttrs(), input.getChildren()};
        }
        const auto tree = context.getInputTree(0);
        return {GroupAttribute{{"below", IntAttribute(count(tree))}}, tree.getChildren()};
    }
};

TEST_F(CollapseOp, aTreeThatIsReadBelowTheRootConcernsThatTreeAlone) {
    VlScenelibEngine::registerOpType("Test.CountBelow", std::make_shared<CountBelow>());
    const auto literal =
        scene.createOp("Scene.Literal", literalArgs({{"/root/a/x", 1}, {"/root/ab/y", 1}}));
    client = scene.createClient(scene.createOp("Test.CountBelow", {}, {literal}));
    client->setAllOpen(true);
    client->setLocationsActive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(client),
                ElementsAre("+/root", "+/root/a", "+/root/ab", "+/root/a/x", "+/root/ab/y"));
    scene.setArgs(literal, "Scene.Literal", literalArgs({{"/root/a/x/p/q", 1}, {"/root/ab/y", 1}}));
    const std::vector<std::string> told = scene.fetch(client);
    EXPECT_THAT(told, testing::IsSupersetOf({"+/root/a", "+/root/a/x", "+/root/a/x/p"}));
    EXPECT_THAT(told, testing::Not(testing::Contains("+/root/ab")));
    EXPECT_EQ(scene.getFetched("/root/a").getChildByName("below"), IntAttribute(3));
    EXPECT_EQ(scene.getFetched("/root/a/x").getChildByName("below"), IntAttribute(2));
}

} // namespace
