#include "manipulator/rotations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

// Turns of the components of a transform, against plain matrices.
namespace {

using Bundled::areThreeUpright;
using Bundled::Turn;
using Bundled::turned;
using Bundled::turnWithin;
using Imath::M44d;
using Imath::V3d;
using Values = std::vector<double>;

// Angles of rounded matrices.
constexpr double kTolerance = 1e-9;

M44d rotation(const V3d& axis, double degrees) {
    return M44d().setAxisAngle(axis, degrees * M_PI / 180.0);
}

/// What rotation components do together, outermost first.
M44d product(const Values& values) {
    M44d matrix;
    for (std::size_t i = 0; i < values.size(); i += 4) {
        matrix = rotation(V3d(values[i + 1], values[i + 2], values[i + 3]), values[i]) * matrix;
    }
    return matrix;
}

void expectSame(const M44d& found, const M44d& expected, const std::string& name) {
    EXPECT_TRUE(found.equalWithAbsError(expected, kTolerance)) << name << "\n"
                                                               << found << "is not\n"
                                                               << expected;
}

Values zyx(double z, double y, double x) {
    return {z, 0, 0, 1, y, 0, 1, 0, x, 1, 0, 0};
}

const struct {
    const char* name;
    Values values;
} kRotations[] = {
    {"at rest", zyx(0, 0, 0)},
    {"z, y, x", zyx(20, -35, 50)},
    {"x, y, z", {20, 1, 0, 0, -35, 0, 1, 0, 50, 0, 0, 1}},
    {"y, x, z, one against its axis", {70, 0, 1, 0, 10, -1, 0, 0, 100, 0, 0, 1}},
    {"x, z, y: a left hand's order", {33, 1, 0, 0, 44, 0, 0, 1, -55, 0, 1, 0}},
    {"axes of length 2, between the usual ones", {15, 1.2, 1.6, 0, 25, -1.6, 1.2, 0, 35, 0, 0, 2}},
    {"the middle one upright", zyx(30, 90, 40)},
    {"the middle one beyond that", zyx(30, 130, 40)},
    {"y alone", {60, 0, 1, 0}},
    {"an axis of its own alone", {200, 0.6, 0, -0.8}},
    {"alone, several turns", {-800, 0, 0, 1}},
};

TEST(Rotations, areTurnedAsTheMatrixIs) {
    const unsigned seed = 3;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (const auto& row : kRotations) {
        for (int i = 0; i < 50; ++i) {
            const Turn turn{V3d(any(random), any(random), any(random)).normalized(),
                            400.0 * any(random)};
            const Values found = turned(row.values, turn);
            expectSame(product(found), product(row.values) * rotation(turn.axis, turn.degrees),
                       row.name);
        }
    }
}

TEST(Rotations, threeKeepTheirAxes) {
    for (const auto& row : kRotations) {
        const Values found = turned(row.values, {V3d(1, 2, 3).normalized(), 77});
        ASSERT_EQ(found.size(), row.values.size()) << row.name;
        for (std::size_t i = 0; found.size() == 12 && i < 12; ++i) {
            if (i % 4 != 0) {
                EXPECT_EQ(found[i], row.values[i]) << row.name;
            }
        }
    }
}

TEST(Rotations, turnAroundAComponentsOwnAxisChangesItsAngleAloneAndCountsTurns) {
    const struct {
        const char* name;
        Values values;
        V3d axis;
        double degrees;
        Values expected;
    } rows[] = {
        {"the outermost", zyx(20, -35, 50), {0, 0, 1}, 30, zyx(50, -35, 50)},
        {"two turns of it", zyx(20, -35, 50), {0, 0, 1}, 750, zyx(770, -35, 50)},
        {"back again, seen from below", zyx(20, -35, 50), {0, 0, -1}, 750, zyx(-730, -35, 50)},
        {"the innermost, while the others rest", zyx(0, 0, 50), {1, 0, 0}, -400, zyx(0, 0, -350)},
        {"the middle one, while the outer rests", zyx(0, 10, 50), {0, 1, 0}, 30, zyx(0, 40, 50)},
        {"the middle one beyond upright", zyx(0, 80, 0), {0, 1, 0}, 100, zyx(0, 180, 0)},
        {"one alone", {60, 0, 1, 0}, {0, 1, 0}, 400, {460, 0, 1, 0}},
        {"one alone, against its axis", {60, 0, -1, 0}, {0, 1, 0}, 400, {-340, 0, -1, 0}},
    };
    for (const auto& row : rows) {
        const Values found = turned(row.values, {row.axis, row.degrees});
        ASSERT_EQ(found.size(), row.expected.size()) << row.name;
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i], row.expected[i], kTolerance) << row.name << ", value " << i;
        }
    }
}

TEST(Rotations, anglesGoAlongWithoutLeaps) {
    // Far from where the middle one is upright, and the others may change as they like.
    const V3d axis = V3d(0.1, 0.2, 1.0).normalized();
    const Values begin = zyx(170, 20, -100);
    Values before = begin;
    for (int degrees = 1; degrees <= 720; ++degrees) {
        const Values found = turned(begin, {axis, double(degrees)});
        for (std::size_t i = 0; i < 12; ++i) {
            EXPECT_LT(std::abs(found[i] - before[i]), 3.0) << degrees << " degrees, value " << i;
        }
        before = found;
    }
    EXPECT_NEAR(before[0], 170 + 720, kTolerance);
}

TEST(Rotations, noTurnChangesNothing) {
    for (const auto& row : kRotations) {
        const Values found = turned(row.values, {V3d(0, 0, 1), 0.0});
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i], row.values[i], 1e-7) << row.name << ", value " << i;
        }
    }
}

TEST(Rotations, turnThatIsNotFiniteChangesNothing) {
    for (const auto& row : kRotations) {
        for (const double degrees : {HUGE_VAL, -HUGE_VAL, std::nan("")}) {
            EXPECT_EQ(turned(row.values, {V3d(0, 0, 1), degrees}), row.values) << row.name;
        }
    }
}

TEST(Rotations, onlyThreeUprightAxesMakeAnyRotationOfAngles) {
    EXPECT_TRUE(areThreeUpright(zyx(1, 2, 3)));
    EXPECT_FALSE(areThreeUpright(Values{1, 0, 0, 1, 2, 0, 1, 0, 3, 0, 0, 1})) << "z twice";
    EXPECT_FALSE(areThreeUpright(Values{1, 0, 0, 1, 2, 0, 1, 0.1, 3, 1, 0, 0})) << "askew";
    EXPECT_FALSE(areThreeUpright(Values{1, 0, 0, 1, 2, 0, 1, 0, 3, 0, 0, 0})) << "no axis";
    EXPECT_FALSE(areThreeUpright(Values{1, 0, 0, 1}));
    EXPECT_FALSE(areThreeUpright(Values{}));
}

/// What a turn within a space does, seen from the world.
M44d seenFromWorld(const M44d& worldToSpace, const Turn& turn) {
    return worldToSpace * rotation(turn.axis, turn.degrees) * worldToSpace.inverse();
}

TEST(TurnWithin, isTheSameTurnWhereSizesAreEven) {
    const M44d spaces[] = {M44d(), M44d().setScale(3.0),
                           rotation(V3d(1, 2, 3).normalized(), 50) * M44d().setScale(0.2)};
    const V3d axis = V3d(2, -1, 1).normalized();
    const V3d arm = axis.cross(V3d(0, 0, 1)).normalized();
    for (const M44d& worldToSpace : spaces) {
        for (const double degrees : {30.0, -30.0, 200.0, 1000.0}) {
            const Turn within = turnWithin(worldToSpace, {axis, degrees}, arm);
            EXPECT_NEAR(within.degrees, degrees, kTolerance);
            expectSame(seenFromWorld(worldToSpace, within), rotation(axis, degrees), "turn");
        }
    }
}

TEST(TurnWithin, keepsThePlaneAndTakesTheArmAlongWhereSizesAreUneven) {
    const M44d spaces[] = {M44d().setScale(V3d(2, 0.5, 1.3)), M44d().setScale(V3d(2, 0.5, -1.3)),
                           rotation(V3d(1, 2, 3).normalized(), 50) * M44d().setScale(V3d(3, 1, 1)),
                           M44d().setShear(V3d(0.7, 0.2, -0.4))};
    const V3d axis = V3d(2, -1, 1).normalized();
    const V3d arm = axis.cross(V3d(0, 0, 1)).normalized();
    for (const M44d& worldToSpace : spaces) {
        for (double degrees = -720.0; degrees <= 720.0; degrees += 45.0) {
            const M44d seen =
                seenFromWorld(worldToSpace, turnWithin(worldToSpace, {axis, degrees}, arm));
            V3d to;
            seen.multDirMatrix(arm, to);
            V3d expected;
            rotation(axis, degrees).multDirMatrix(arm, expected);
            EXPECT_NEAR((to.normalized() - expected).length(), 0.0, kTolerance) << degrees;
            V3d inPlane;
            seen.multDirMatrix(axis.cross(arm), inPlane);
            EXPECT_NEAR(inPlane.normalized().dot(axis), 0.0, kTolerance) << degrees;
        }
    }
}

TEST(TurnWithin, countsTurns) {
    const M44d uneven = M44d().setScale(V3d(2, 0.5, 1.3));
    double before = 0.0;
    for (int degrees = 1; degrees <= 1080; ++degrees) {
        const double within = turnWithin(uneven, {{0, 0, 1}, double(degrees)}, {1, 0, 0}).degrees;
        EXPECT_GT(within, before) << degrees;
        EXPECT_LT(within, before + 10.0) << degrees;
        before = within;
    }
    EXPECT_NEAR(before, 1080.0, kTolerance);
}

} // namespace
