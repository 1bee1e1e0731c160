#include "enginescene.h"

#include "VlScenelib/VlXFormUtil.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

namespace {

using testing::ElementsAre;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// Everything that an op shows, by one client that opens all.
class BuiltinOps : public testing::Test {
protected:
    std::vector<std::string> show(const EngineScene::OpPtr& op) {
        client = scene.createClient(op);
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        return scene.fetch(client);
    }
    [[nodiscard]] int valueAt(const std::string& path, const char* name = "value") const {
        return IntAttribute(scene.getFetched(path).getChildByName(name)).getValue(-1);
    }

    EngineScene scene;
    EngineScene::ClientPtr client;
};

class PassThrough : public BuiltinOps, public testing::WithParamInterface<const char*> {};

TEST_P(PassThrough, showsWhatItsInputShows) {
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 3}}));
    EXPECT_THAT(show(scene.createOp(GetParam(), {}, {literal})), ElementsAre("+/root", "+/root/a"));
    EXPECT_EQ(valueAt("/root/a"), 3);
}

TEST_P(PassThrough, withoutAnInputShowsNothing) {
    EXPECT_THAT(show(scene.createOp(GetParam())), ElementsAre("-/root"));
}

INSTANTIATE_TEST_SUITE_P(Types, PassThrough,
                         testing::Values("no-op", "WorkingSet.MultipleOnePassResolve",
                                         "WorkingSet.Prune"));

TEST_F(BuiltinOps, literalWithoutASceneShowsNothing) {
    EXPECT_THAT(show(scene.createOp("Scene.Literal")), ElementsAre("-/root"));
}

TEST_F(BuiltinOps, literalShowsAttributesAndChildrenInOrder) {
    EXPECT_THAT(
        show(scene.createOp("Scene.Literal", literalArgs({{"/root/b", 1}, {"/root/a/c", 2}}))),
        ElementsAre("+/root", "+/root/b", "+/root/a", "+/root/a/c"));
    EXPECT_EQ(valueAt("/root/b"), 1);
    EXPECT_EQ(valueAt("/root/a/c"), 2);
    EXPECT_EQ(scene.getFetched("/root/a"), GroupAttribute::Empty());
}

TEST_F(BuiltinOps, literalCooksOnlyTheWayToWhatChanged) {
    const auto op = scene.createOp(
        "Scene.Literal", literalArgs({{"/root/a/x", 1}, {"/root/a/y", 1}, {"/root/b/z", 1}}));
    show(op);
    scene.countCooks();
    scene.setArgs(op, "Scene.Literal",
                  literalArgs({{"/root/a/x", 2}, {"/root/a/y", 1}, {"/root/b/z", 1}}));
    scene.fetch(client);
    EXPECT_EQ(scene.countCooks(), 3U);
}

TEST_F(BuiltinOps, mergeTakesChildrenOfAllInputsInOrder) {
    const auto first =
        scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}, {"/root/b", 1}}));
    const auto second =
        scene.createOp("Scene.Literal", literalArgs({{"/root/c", 2}, {"/root/b/d", 2}}));
    EXPECT_THAT(show(scene.createOp("Scene.Merge", {}, {first, second})),
                ElementsAre("+/root", "+/root/a", "+/root/b", "+/root/c", "+/root/b/d"));
}

TEST_F(BuiltinOps, mergeLetsLaterInputsWinAttributeByAttribute) {
    const auto level =
        [](std::initializer_list<std::pair<std::string_view, VlAttribute::Attribute>> attrs) {
            VlAttribute::GroupBuilder builder;
            builder.set("staticScene.c.x.a", GroupAttribute(attrs));
            return builder.build();
        };
    const auto first = scene.createOp("Scene.Literal",
                                      level({{"one", IntAttribute(1)}, {"both", IntAttribute(1)}}));
    const auto second = scene.createOp(
        "Scene.Literal", level({{"both", IntAttribute(2)}, {"two", IntAttribute(2)}}));
    show(scene.createOp("Scene.Merge", {}, {first, second}));
    EXPECT_EQ(valueAt("/root/x", "one"), 1);
    EXPECT_EQ(valueAt("/root/x", "both"), 2);
    EXPECT_EQ(valueAt("/root/x", "two"), 2);
}

TEST_F(BuiltinOps, mergeOfNothingShowsNothing) {
    EXPECT_THAT(show(scene.createOp("Scene.Merge", {}, {scene.createOp("no-op")})),
                ElementsAre("-/root"));
}

TEST_F(BuiltinOps, mergePassesOverInputsThatShowNothing) {
    const auto literal = scene.createOp("Scene.Literal", literalArgs({{"/root/a", 1}}));
    EXPECT_THAT(show(scene.createOp("Scene.Merge", {}, {scene.createOp("no-op"), literal})),
                ElementsAre("+/root", "+/root/a"));
}

/// The world position of a point of a location.
std::array<double, 3> worldPosition(const EngineScene& scene, const std::string& path,
                                    const std::array<double, 3>& local) {
    VlAttribute::GroupBuilder chain;
    std::size_t end = 0;
    int depth = 0;
    do {
        end = path.find('/', end + 1);
        chain.set("i" + std::to_string(depth++),
                  scene.getFetched(path.substr(0, end)).getChildByName("xform"));
    } while (end != std::string::npos);
    const DoubleAttribute matrix =
        VlScenelib::VlXFormUtil::CalcTransformMatrixAtExistingTimes(chain.build()).first;
    const auto m = matrix.getNearestSample(0);
    std::array<double, 3> world{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        world[axis] = m[12 + axis];
        for (std::size_t from = 0; from < 3; ++from) {
            world[axis] += local[from] * m[from * 4 + axis];
        }
    }
    return world;
}

TEST_F(BuiltinOps, generateLaysOutRotationAndTranslationAtEachLevel) {
    show(scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(35000)}}));
    const std::array<double, 3> local{0.25, -0.5, 0.125};
    for (const auto& [set, group, leaf] :
         {std::array{0, 0, 0}, std::array{3, 7, 99}, std::array{34, 9, 41}}) {
        // The leaf's turn and offset, then the group's, then the set's.
        std::array<double, 3> expected = local;
        const auto apply = [&](double angle, double x, double y, double z) {
            expected = {expected[0] * std::cos(angle) - expected[1] * std::sin(angle) + x,
                        expected[0] * std::sin(angle) + expected[1] * std::cos(angle) + y,
                        expected[2] + z};
        };
        apply((leaf % 7) * 0.2, 1.5 * (leaf % 10), 1.5 * (leaf / 10), 0);
        apply((group % 3) * 0.1, 16.0 * group, 0, 0.5 * (group & 1));
        apply((set % 5) * 0.05, 170.0 * (set % 32), 18.0 * (set / 32), set % 3);
        const std::string path = "/root/set_" + std::to_string(set) + "/group_" +
                                 std::to_string(group) + "/leaf_" + std::to_string(leaf);
        const std::array<double, 3> world = worldPosition(scene, path, local);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            // Sums of a few products of values below 10,000.
            EXPECT_NEAR(world[axis], expected[axis], 1e-9) << path;
        }
        EXPECT_EQ(scene.getFetched(path).getChildByName("bound"),
                  DoubleAttribute({-0.5, 0.5, -0.5, 0.5, -0.5, 0.5}));
    }
}

TEST_F(BuiltinOps, generateMakesExactlySoManyLeaves) {
    struct Row {
        int leaves;
        std::size_t locations;
    };
    for (const Row& row : {Row{0, 1}, Row{1, 4}, Row{100, 103}, Row{101, 105}, Row{1001, 1015}}) {
        EXPECT_EQ(show(scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(row.leaves)}}))
                      .size(),
                  row.locations)
            << row.leaves;
    }
}

TEST_F(BuiltinOps, generateCooksAgainOnlyWhatAnotherCountChanges) {
    const auto op = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(10000)}});
    show(op);
    scene.countCooks();
    scene.setArgs(op, "Scene.Generate", {{"leafCount", IntAttribute(10001)}});
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/set_10", "+/root/set_10/group_0",
                                                 "+/root/set_10/group_0/leaf_0"));
    EXPECT_EQ(scene.countCooks(), 4U);
}

TEST_F(BuiltinOps, generateSharesEqualAttributes) {
    show(scene.createOp("Scene.Generate",
                        {{"leafCount", IntAttribute(2000)}, {"withGeometry", IntAttribute(1)}}));
    const GroupAttribute leaf = scene.getFetched("/root/set_0/group_0/leaf_5");
    EXPECT_EQ(leaf.getHandle(), scene.getFetched("/root/set_1/group_9/leaf_5").getHandle());
    EXPECT_EQ(
        leaf.getChildByName("geometry").getHandle(),
        scene.getFetched("/root/set_0/group_0/leaf_6").getChildByName("geometry").getHandle());
}

TEST_F(BuiltinOps, generatedCubesFaceOutwards) {
    show(scene.createOp("Scene.Generate",
                        {{"leafCount", IntAttribute(1)}, {"withGeometry", IntAttribute(1)}}));
    const GroupAttribute geometry(
        scene.getFetched("/root/set_0/group_0/leaf_0").getChildByName("geometry"));
    const FloatAttribute pointAttribute(geometry.getChildByName("point.P"));
    const FloatAttribute normalAttribute(geometry.getChildByName("point.N"));
    const IntAttribute vertexAttribute(geometry.getChildByName("poly.vertexList"));
    const IntAttribute startAttribute(geometry.getChildByName("poly.startIndex"));
    const auto points = pointAttribute.getNearestSample(0);
    const auto normals = normalAttribute.getNearestSample(0);
    const auto vertices = vertexAttribute.getNearestSample(0);
    const auto starts = startAttribute.getNearestSample(0);
    ASSERT_EQ(starts.size(), 7U);
    for (std::size_t face = 0; face < 6; ++face) {
        std::array<std::array<float, 3>, 3> corner{};
        for (std::size_t i = 0; i < 3; ++i) {
            const auto vertex =
                static_cast<std::size_t>(vertices[static_cast<std::size_t>(starts[face]) + i]);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                corner[i][axis] = points[vertex * 3 + axis];
            }
        }
        const auto first =
            static_cast<std::size_t>(vertices[static_cast<std::size_t>(starts[face])]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const std::size_t u = (axis + 1) % 3;
            const std::size_t v = (axis + 2) % 3;
            const float cross = (corner[1][u] - corner[0][u]) * (corner[2][v] - corner[0][v]) -
                                (corner[1][v] - corner[0][v]) * (corner[2][u] - corner[0][u]);
            EXPECT_EQ(cross, normals[first * 3 + axis]) << "face " << face;
            // Outwards: away from the cube's middle.
            EXPECT_EQ(normals[first * 3 + axis] != 0,
                      normals[first * 3 + axis] * corner[0][axis] > 0);
        }
    }
}

} // namespace
