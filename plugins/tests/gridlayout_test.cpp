#include "layer/gridlayout.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Bundled::GridLayout;
using Imath::Box3d;

TEST(GridLayout, withoutASceneLiesAroundTheOrigin) {
    const GridLayout layout = GridLayout::around(Box3d());
    EXPECT_EQ(layout, GridLayout());
}

TEST(GridLayout, spacingIsAPowerOfTenThatFitsTheScene) {
    struct Row {
        double extent;
        float spacing;
    };
    for (const Row& row : {Row{0.02, 0.001f}, Row{1.5, 0.1f}, Row{9.9, 0.1f}, Row{30.0, 1.0f},
                           Row{2500.0, 100.0f}}) {
        const GridLayout layout =
            GridLayout::around(Box3d({0, 0, 0}, {row.extent, row.extent / 2, 0}));
        EXPECT_NEAR(layout.spacing / row.spacing, 1.0f, 1e-5f) << row.extent;
        EXPECT_GT(layout.radius, 2 * row.extent);
    }
}

TEST(GridLayout, liesAtHeightZeroUnderTheSceneAndOnItsOwnLines) {
    const GridLayout layout = GridLayout::around(Box3d({100, 40, 200}, {120, 60, 220}));
    EXPECT_EQ(layout.centre.y, 0.0f);
    EXPECT_NEAR(layout.centre.x, 110.0f, 5.0f);
    EXPECT_NEAR(layout.centre.z, 210.0f, 5.0f);
    EXPECT_EQ(std::fmod(layout.centre.x, 10 * layout.spacing), 0.0f);
}

TEST(GridLayout, aSceneOfOnePointHasAGridToo) {
    const GridLayout layout = GridLayout::around(Box3d({5, 5, 5}, {5, 5, 5}));
    EXPECT_GT(layout.spacing, 0.0f);
    EXPECT_GT(layout.radius, 0.0f);
}

} // namespace
