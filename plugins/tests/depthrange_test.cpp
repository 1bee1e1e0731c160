#include "camera/camerapose.h"
#include "camera/depthrange.h"
#include "camera/projection.h"

#include <gtest/gtest.h>

// The distances between which things are drawn, for scenes of all sizes.
namespace {

using namespace Bundled;
using Imath::Box3d;
using Imath::M44d;
using Imath::V3d;

const Box3d kCube(V3d(-1), V3d(1));

/// Looks at the origin along -z.
M44d viewFrom(double distance) {
    return M44d().setTranslation(V3d(0, 0, -distance));
}

TEST(DepthRange, holdsASceneThatIsSeenFromOutside) {
    for (const double distance : {1.5, 3.0, 10.0, 1e3, 1e6}) {
        for (const bool isPerspective : {true, false}) {
            const auto range =
                DepthRange::around(kCube, viewFrom(distance), isPerspective, distance);
            EXPECT_LT(range.nearPlane, distance - 1.0) << distance;
            EXPECT_GT(range.farPlane, distance + 1.0) << distance;
        }
    }
}

TEST(DepthRange, growsWithTheScene) {
    const auto small = DepthRange::around(kCube, viewFrom(5), true, 5);
    for (const double scale : {1e-6, 1e-4, 1e-2, 1e3, 1e7, 1e12}) {
        const Box3d box(kCube.min * scale, kCube.max * scale);
        const auto scaled = DepthRange::around(box, viewFrom(5 * scale), true, 5 * scale);
        EXPECT_NEAR(scaled.nearPlane / scale, small.nearPlane, 1e-9);
        EXPECT_NEAR(scaled.farPlane / scale, small.farPlane, 1e-9);
    }
}

TEST(DepthRange, ofAPerspectiveIsPositiveAndBounded) {
    const Box3d boxes[] = {kCube, Box3d(), Box3d(V3d(0), V3d(0)), Box3d(V3d(1e9), V3d(1e9))};
    for (const Box3d& box : boxes) {
        for (const double distance : {-1e6, -2.0, 0.0, 1e-9, 0.5, 1e9}) {
            for (const double center : {1e-9, 1.0, 1e9}) {
                const auto range = DepthRange::around(box, viewFrom(distance), true, center);
                EXPECT_GT(range.nearPlane, 0.0);
                EXPECT_GT(range.farPlane, range.nearPlane);
                EXPECT_LE(range.farPlane / range.nearPlane,
                          std::max(1e5, 2.0 * range.farPlane / center) * 1.001);
            }
        }
    }
}

TEST(DepthRange, cutsNothingOffAtTheCentreOfInterestOfACameraAmongThings) {
    // As near as the bounded ratio lets it.
    for (const double center : {0.01, 0.1, 1.0}) {
        EXPECT_LT(DepthRange::around(kCube, viewFrom(0.2), true, center).nearPlane, center / 10);
    }
}

TEST(DepthRange, holdsWhatTheCameraLooksAtAlsoWhenALocationStrayedFarOff) {
    for (const double stray : {1e3, 1e6, 1e9, 1e15}) {
        for (const V3d& direction : {V3d(1, 0, 0), V3d(0, 0, -1), V3d(0, 0, 1)}) {
            Box3d box = kCube;
            box.extendBy(direction * stray);
            const auto range = DepthRange::around(box, viewFrom(4), true, 4);
            EXPECT_GT(range.nearPlane, 0.0) << stray;
            EXPECT_LT(range.nearPlane, 3.0) << stray;
            EXPECT_GT(range.farPlane, 5.0) << stray;
        }
    }
}

TEST(DepthRange, passesOverACentreOfInterestThatCannotBeMeant) {
    for (const double center : {0.0, -1.0, 5e-324, std::nan("")}) {
        const auto range = DepthRange::around(kCube, viewFrom(0.2), true, center);
        EXPECT_GT(range.nearPlane, 1e-6) << center;
        EXPECT_GT(range.farPlane, range.nearPlane) << center;
    }
}

TEST(DepthRange, ofAnOrthographicCameraReachesBehindIt) {
    const auto range = DepthRange::around(kCube, viewFrom(0), false, 1);
    EXPECT_LT(range.nearPlane, -1.0);
    EXPECT_GT(range.farPlane, 1.0);
}

TEST(DepthRange, takesThePlaceOfAnotherInAProjection) {
    Lens lens;
    lens.aspect = 1.7;
    lens.left = -0.3;
    Lens other = lens;
    other.nearPlane = 2.0;
    other.farPlane = 30.0;
    EXPECT_TRUE(withDepthRange(perspectiveProjection(lens), {2.0, 30.0})
                    .equalWithAbsError(perspectiveProjection(other), 1e-12));
    EXPECT_TRUE(withDepthRange(orthographicProjection(lens), {2.0, 30.0})
                    .equalWithAbsError(orthographicProjection(other), 1e-12));
}

TEST(DepthRange, leavesOtherProjectionsAlone) {
    M44d odd = perspectiveProjection(Lens{});
    odd[2][3] = -0.5;
    EXPECT_EQ(withDepthRange(odd, {1.0, 2.0}), odd);
}

} // namespace
