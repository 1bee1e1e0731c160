#include "scene/scenemirror.h"

#include "support/geometries.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Bundled;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

constexpr std::uint32_t kAttributes = kVlLocationEventAttributesChanged;
constexpr std::uint32_t kXform = kVlLocationEventXformChanged;
constexpr std::uint32_t kHiddenChange = kVlLocationEventHiddenChanged;

void tell(SceneMirror& mirror, const std::string& path, const GroupAttribute& attributes,
          const Imath::M44d& xform = {}, std::uint32_t flags = 0) {
    mirror.apply({path, attributes, matrixAttribute(xform), flags | kAttributes | kXform});
}

void remove(SceneMirror& mirror, const std::string& path) {
    mirror.apply({path, {}, {}, kVlLocationEventRemoved});
}

using Runs = std::vector<std::pair<std::size_t, std::size_t>>;

Runs takeChanges(Batch& batch) {
    Runs runs;
    batch.takeChanges(
        [&runs](std::size_t first, std::size_t count) { runs.emplace_back(first, count); });
    return runs;
}

GroupAttribute color(float r, float g, float b) {
    return GroupAttribute{{"baseColor", FloatAttribute({r, g, b}, 3)}};
}

TEST(SceneMirror, tenThousandEqualCubesAreOneGeometryInOneBatch) {
    SceneMirror mirror;
    for (int i = 0; i < 10000; ++i) {
        // Each with attributes of its own making: content decides, not identity.
        tell(mirror, "/root/cube" + std::to_string(i), cubeLocation(), translation(i, 0, 0));
    }
    mirror.update();
    EXPECT_EQ(mirror.getGeometries().size(), 1u);
    ASSERT_EQ(mirror.getBatches().size(), 1u);
    EXPECT_EQ(mirror.getBatches()[0]->instances.size(), 10000u);
}

TEST(SceneMirror, keepsBatchesApartByMaterial) {
    SceneMirror mirror;
    tell(mirror, "/root/red", cubeLocation(1.0f, color(1, 0, 0)));
    tell(mirror, "/root/blue", cubeLocation(1.0f, color(0, 0, 1)));
    tell(mirror, "/root/red2", cubeLocation(1.0f, color(1, 0, 0)));
    EXPECT_EQ(mirror.getBatches().size(), 2u);
    EXPECT_EQ(mirror.getGeometries().size(), 1u);
    EXPECT_EQ(mirror.getMaterials().size(), 2u);
}

TEST(SceneMirror, recomputesOnlyWhatMovedAndWhatIsBelow) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty());
    for (int group = 0; group < 10; ++group) {
        const std::string path = "/root/g" + std::to_string(group);
        tell(mirror, path, GroupAttribute::Empty());
        for (int leaf = 0; leaf < 20; ++leaf) {
            tell(mirror, path + "/l" + std::to_string(leaf), cubeLocation());
        }
    }
    mirror.update();
    const auto before = mirror.getWorldXformComputations();
    mirror.apply({"/root/g3", {}, matrixAttribute(translation(5, 0, 0)), kXform});
    mirror.update();
    EXPECT_EQ(mirror.getWorldXformComputations() - before, 21u);
    mirror.update();
    EXPECT_EQ(mirror.getWorldXformComputations() - before, 21u) << "nothing changed since";
    EXPECT_EQ(mirror.getWorldXform("/root/g3/l7"), translation(5, 0, 0));
    EXPECT_EQ(mirror.getWorldXform("/root/g4/l7"), Imath::M44d());
}

TEST(SceneMirror, computesALocationOnceThatMovedTogetherWithItsParent) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty());
    tell(mirror, "/root/a", cubeLocation());
    mirror.update();
    const auto before = mirror.getWorldXformComputations();
    mirror.apply({"/root/a", {}, matrixAttribute(translation(0, 1, 0)), kXform});
    mirror.apply({"/root", {}, matrixAttribute(translation(5, 0, 0)), kXform});
    mirror.update();
    EXPECT_EQ(mirror.getWorldXformComputations() - before, 2u);
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(5, 1, 0));
}

TEST(SceneMirror, stopsWhereAMoveChangesNothing) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty(), translation(1, 2, 3));
    tell(mirror, "/root/a", cubeLocation());
    mirror.update();
    const auto before = mirror.getWorldXformComputations();
    mirror.apply({"/root", {}, matrixAttribute(translation(1, 2, 3)), kXform});
    mirror.update();
    EXPECT_EQ(mirror.getWorldXformComputations() - before, 1u);
}

TEST(SceneMirror, worldIsLocalTimesParent) {
    SceneMirror mirror;
    Imath::M44d scale;
    scale.setScale(2.0);
    tell(mirror, "/root", GroupAttribute::Empty(), scale);
    tell(mirror, "/root/a", cubeLocation(), translation(1, 0, 0));
    mirror.update();
    const Imath::M44d world = mirror.getWorldXform("/root/a");
    EXPECT_EQ(Imath::V3d(0.0) * world, Imath::V3d(2, 0, 0));
}

TEST(SceneMirror, absoluteTransformIgnoresTheParent) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty(), translation(100, 0, 0));
    tell(mirror, "/root/a", cubeLocation(), translation(1, 0, 0), kVlLocationEventXformAbsolute);
    tell(mirror, "/root/a/b", cubeLocation(), translation(0, 1, 0));
    mirror.update();
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(1, 0, 0));
    EXPECT_EQ(mirror.getWorldXform("/root/a/b"), translation(1, 1, 0));
}

TEST(SceneMirror, takesTheHiddenBitAsItComesAndDoesNotInheritIt) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty(), {}, kVlLocationEventHidden | kHiddenChange);
    tell(mirror, "/root/shown", cubeLocation());
    tell(mirror, "/root/hidden", cubeLocation(), {}, kVlLocationEventHidden | kHiddenChange);
    ASSERT_EQ(mirror.getBatches().size(), 1u);
    EXPECT_EQ(mirror.getBatches()[0]->instances.size(), 1u);
    mirror.apply({"/root/hidden", {}, {}, kHiddenChange});
    EXPECT_EQ(mirror.getBatches()[0]->instances.size(), 2u);
}

TEST(SceneMirror, leavesFieldsAloneWhoseChangeBitIsNotSet) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation(), translation(1, 0, 0));
    // Neither the null attributes and xform nor the hidden and absolute bits are news.
    mirror.apply({"/root/a", {}, {}, kVlLocationEventHidden | kVlLocationEventXformAbsolute});
    tell(mirror, "/root", GroupAttribute::Empty(), translation(0, 5, 0));
    mirror.update();
    ASSERT_EQ(mirror.getBatches().size(), 1u);
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(1, 5, 0));
}

TEST(SceneMirror, removalCoversEverythingBelow) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty());
    tell(mirror, "/root/a", cubeLocation());
    tell(mirror, "/root/a/b", cubeLocation());
    tell(mirror, "/root/ab", cubeLocation());
    remove(mirror, "/root/a");
    mirror.update();
    EXPECT_FALSE(mirror.hasLocation("/root/a"));
    EXPECT_FALSE(mirror.hasLocation("/root/a/b"));
    EXPECT_TRUE(mirror.hasLocation("/root/ab")) << "a longer name is no descendant";
    EXPECT_EQ(mirror.getLocationPaths(), (std::vector<std::string>{"/root", "/root/ab"}));
    ASSERT_EQ(mirror.getBatches().size(), 1u);
    EXPECT_EQ(mirror.getBatches()[0]->instances.size(), 1u);
}

TEST(SceneMirror, removalOfAnUnknownLocationDoesNothing) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation());
    remove(mirror, "/root/b");
    EXPECT_EQ(mirror.getNumberOfLocations(), 1u);
}

TEST(SceneMirror, takesLocationsBeforeTheirParents) {
    SceneMirror mirror;
    tell(mirror, "/root/world/a/b", cubeLocation(), translation(1, 0, 0));
    mirror.update();
    EXPECT_EQ(mirror.getNumberOfLocations(), 1u);
    EXPECT_FALSE(mirror.hasLocation("/root/world"));
    EXPECT_EQ(mirror.getLocationPaths(), std::vector<std::string>{"/root/world/a/b"});
    tell(mirror, "/root/world", GroupAttribute::Empty(), translation(0, 7, 0));
    mirror.update();
    EXPECT_EQ(mirror.getWorldXform("/root/world/a/b"), translation(1, 7, 0));
}

TEST(SceneMirror, locationThatGetsAChildOrLosesItKeepsItsPlace) {
    SceneMirror mirror;
    tell(mirror, "/root", GroupAttribute::Empty(), translation(0, 5, 0));
    tell(mirror, "/root/a", cubeLocation(), translation(1, 0, 0));
    mirror.update();
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(1, 5, 0));
    tell(mirror, "/root/a/b", cubeLocation(), translation(0, 0, 2));
    mirror.update();
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(1, 5, 0));
    EXPECT_EQ(mirror.getWorldXform("/root/a/b"), translation(1, 5, 2));
    remove(mirror, "/root/a/b");
    mirror.update();
    EXPECT_EQ(mirror.getWorldXform("/root/a"), translation(1, 5, 0));
}

TEST(SceneMirror, passesOverWhatIsNoPath) {
    SceneMirror mirror;
    tell(mirror, "", cubeLocation());
    tell(mirror, "root", cubeLocation());
    EXPECT_EQ(mirror.getNumberOfLocations(), 0u);
    tell(mirror, "/oot", cubeLocation());
    EXPECT_FALSE(mirror.hasLocation("root"));
    EXPECT_FALSE(mirror.hasLocation(""));
}

TEST(SceneMirror, dropsGeometryAndMaterialWithTheirLastUser) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation(1.0f, color(1, 0, 0)));
    tell(mirror, "/root/b", cubeLocation(1.0f, color(1, 0, 0)));
    remove(mirror, "/root/a");
    EXPECT_EQ(mirror.getGeometries().size(), 1u);
    tell(mirror, "/root/b", GroupAttribute::Empty());
    EXPECT_EQ(mirror.getGeometries().size(), 0u);
    EXPECT_EQ(mirror.getMaterials().size(), 0u);
    EXPECT_TRUE(mirror.getBatches().empty());
}

TEST(SceneMirror, hiddenGeometryStaysShared) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation(), {}, kVlLocationEventHidden | kHiddenChange);
    EXPECT_TRUE(mirror.getBatches().empty());
    EXPECT_EQ(mirror.getGeometries().size(), 1u);
}

TEST(SceneMirror, selectionCoversDescendantsNowAndLater) {
    SceneMirror mirror;
    tell(mirror, "/root/a", GroupAttribute::Empty());
    tell(mirror, "/root/a/b", cubeLocation());
    const char* paths[] = {"/root/a", "/root/z"};
    mirror.setSelection(paths);
    tell(mirror, "/root/a/c", cubeLocation());
    tell(mirror, "/root/z", cubeLocation());
    tell(mirror, "/root/y", cubeLocation());
    mirror.update();
    const Batch& batch = *mirror.getBatches()[0];
    for (std::size_t i = 0; i < batch.nodes.size(); ++i) {
        const std::string path = mirror.getPath(batch.nodes[i]);
        EXPECT_EQ(batch.instances[i].selected, path == "/root/y" ? 0.0f : 1.0f) << path;
    }
    mirror.setSelection({});
    mirror.update();
    for (const Instance& instance : batch.instances) {
        EXPECT_EQ(instance.selected, 0.0f);
    }
}

TEST(SceneMirror, boundsCoverWhatIsVisible) {
    SceneMirror mirror;
    EXPECT_TRUE(mirror.getBounds().isEmpty());
    tell(mirror, "/root/a", cubeLocation(2.0f), translation(10, 0, 0));
    tell(mirror, "/root/b", cubeLocation(2.0f), translation(-50, 0, 0),
         kVlLocationEventHidden | kHiddenChange);
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({9, -1, -1}, {11, 1, 1}));
    mirror.apply({"/root/a", {}, matrixAttribute(translation(20, 0, 0)), kXform});
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({19, -1, -1}, {21, 1, 1}));
}

TEST(SceneMirror, boundsPassOverWhatIsTooFarToBeDrawn) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation(2.0f));
    tell(mirror, "/root/far", cubeLocation(2.0f), translation(1e30, 0, 0));
    tell(mirror, "/root/endless", cubeLocation(2.0f), translation(HUGE_VAL, 0, 0));
    tell(mirror, "/root/nowhere", cubeLocation(2.0f), translation(std::nan(""), 0, 0));
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({-1, -1, -1}, {1, 1, 1}));
    tell(mirror, "/root/far", cubeLocation(2.0f), translation(1e12, 0, 0));
    mirror.update();
    EXPECT_GT(mirror.getBounds().max.x, 9e11);
}

TEST(SceneMirror, boundsFollowSingleLocationsOfALargeBatch) {
    SceneMirror mirror;
    for (int i = 0; i < 3000; ++i) {
        tell(mirror, "/root/c" + std::to_string(i), cubeLocation(2.0f), translation(i, 0, 0));
    }
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({-1, -1, -1}, {3000, 1, 1}));
    tell(mirror, "/root/c1500", cubeLocation(2.0f), translation(0, 50, 0));
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({-1, -1, -1}, {3000, 51, 1}));
    remove(mirror, "/root/c1500");
    remove(mirror, "/root/c2999");
    mirror.update();
    EXPECT_EQ(mirror.getBounds(), Imath::Box3d({-1, -1, -1}, {2999, 1, 1}));
}

TEST(SceneMirror, forgottenUploadsCountAsChanged) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation());
    tell(mirror, "/root/b", cubeLocation());
    mirror.update();
    Batch& batch = *mirror.getBatches()[0];
    EXPECT_EQ(takeChanges(batch), (Runs{{0, 2}}));
    EXPECT_EQ(takeChanges(batch), Runs{});
    mirror.forgetUploads();
    EXPECT_EQ(takeChanges(batch), (Runs{{0, 2}}));
}

TEST(SceneMirror, locationsThatMovedFarApartAreUploadedAlone) {
    SceneMirror mirror;
    constexpr std::size_t kBlock = Batch::kBlockSize;
    for (std::size_t i = 0; i < 10 * kBlock; ++i) {
        tell(mirror, "/root/c" + std::to_string(i), cubeLocation());
    }
    mirror.update();
    Batch& batch = *mirror.getBatches()[0];
    takeChanges(batch);
    for (const std::size_t i : {3 * kBlock + 1, 7 * kBlock - 1, 7 * kBlock}) {
        tell(mirror, "/root/c" + std::to_string(i), cubeLocation(), translation(1, 0, 0));
    }
    mirror.update();
    EXPECT_EQ(takeChanges(batch), (Runs{{3 * kBlock, kBlock}, {6 * kBlock, 2 * kBlock}}));
}

TEST(SceneMirror, changesOfInstancesThatWentAreNotUploaded) {
    SceneMirror mirror;
    tell(mirror, "/root/a", cubeLocation());
    tell(mirror, "/root/b", cubeLocation());
    mirror.update();
    remove(mirror, "/root/b");
    EXPECT_EQ(takeChanges(*mirror.getBatches()[0]), (Runs{{0, 1}}));
}

TEST(SceneMirror, drawsPointsOnlyOfLocationsThatSayTheyAre) {
    const GroupAttribute geometry{
        {"point", GroupAttribute{{"P", FloatAttribute({0.0f, 0.0f, 0.0f}, 3)}}}};
    SceneMirror mirror;
    tell(mirror, "/root/points",
         GroupAttribute{{"type", StringAttribute("points")}, {"geometry", geometry}});
    tell(mirror, "/root/camera",
         GroupAttribute{{"type", StringAttribute("camera")}, {"geometry", geometry}});
    ASSERT_EQ(mirror.getBatches().size(), 1u);
    EXPECT_EQ(mirror.getPath(mirror.getBatches()[0]->nodes[0]), "/root/points");
}

} // namespace
