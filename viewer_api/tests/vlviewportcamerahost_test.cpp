// A camera by itself: its parameters, its matrices and what is derived from them.

#include "support/viewporttest.h"
#include "vlviewportcamerahost.h"

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr int kRandomRounds = 500;

// Matrices of the plain evaluation: row vectors, row after row.
using Matrix = std::array<double, 16>;
using Vector = std::array<double, 3>;

constexpr Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Matrix counted() {
    Matrix matrix;
    for (size_t i = 0; i < 16; ++i) {
        matrix[i] = static_cast<double>(i) + 0.5;
    }
    return matrix;
}

Matrix matrixAt(const double* values) {
    Matrix matrix;
    std::copy_n(values, 16, matrix.begin());
    return matrix;
}

struct Product {
    Matrix value;
    // An n-term dot product is off by at most n * epsilon times the sum of its terms' sizes,
    // whatever the order of additions.
    Matrix tolerance;
};

Product product(const Matrix& left, const Matrix& right) {
    Product result{};
    for (size_t row = 0; row < 4; ++row) {
        for (size_t column = 0; column < 4; ++column) {
            long double sum = 0;
            double sizes = 0;
            for (size_t k = 0; k < 4; ++k) {
                const double a = left[row * 4 + k], b = right[k * 4 + column];
                sum += static_cast<long double>(a) * b;
                sizes += std::abs(a * b);
            }
            result.value[row * 4 + column] = static_cast<double>(sum);
            result.tolerance[row * 4 + column] = 4 * kEpsilon * sizes;
        }
    }
    return result;
}

Matrix scaled(Matrix matrix, double factor) {
    for (double& value : matrix) {
        value *= factor;
    }
    return matrix;
}

void expectNear(const Matrix& got, const Matrix& wanted, const Matrix& tolerance) {
    for (size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(got[i], wanted[i], tolerance[i]) << "entry " << i;
    }
}

// Zoom first, then the offsets, which therefore are in units of the unzoomed picture's half size.
Matrix plainPanZoom(double horizontal, double vertical, double zoom) {
    Matrix matrix = kIdentity;
    matrix[0] = matrix[5] = zoom;
    matrix[12] = -horizontal * zoom;
    matrix[13] = -vertical * zoom;
    return matrix;
}

class VlViewportCameraHost : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        camera = viewport->addCamera("Recording", "camera");
        journal.take();
    }
    Matrix projection() const { return matrixAt(camera->getProjectionMatrix()); }
    Matrix underlying() const { return matrixAt(camera->projectionMatrix.getValue()); }

    std::unique_ptr<VlViewportHostStruct> viewport;
    VlViewportCameraHostStruct* camera = nullptr;
};

TEST_F(VlViewportCameraHost, startsFromItsDefaults) {
    EXPECT_EQ(camera->viewport, viewport.get());
    EXPECT_EQ(matrixAt(camera->getViewMatrix()), kIdentity);
    EXPECT_EQ(projection(), kIdentity);
    EXPECT_EQ(camera->panZoomMatrix, Imath::M44d());
    EXPECT_EQ(camera->panZoomProjectionMatrix, Imath::M44d());
    EXPECT_EQ(camera->getCenterOfInterest(), 20.0);
    EXPECT_EQ(camera->getFOV(), 45.0);
    EXPECT_EQ(camera->getOrthographicWidth(), 30.0);
    double nearPlane = 0, farPlane = 0, left = 0, right = 0, bottom = 0, top = 0;
    camera->getNearFar(nearPlane, farPlane);
    EXPECT_EQ(nearPlane, 0.1);
    EXPECT_EQ(farPlane, 100000.0);
    camera->getScreenWindow(left, right, bottom, top);
    EXPECT_EQ(left, -1.0);
    EXPECT_EQ(right, 1.0);
    EXPECT_EQ(bottom, -1.0);
    EXPECT_EQ(top, 1.0);
    EXPECT_FALSE(camera->hasLocationPath());
    EXPECT_EQ(camera->getLocationPath(), nullptr);
    EXPECT_FALSE(camera->isInteractionDisabled);
}

struct NearFarRow {
    const char* name;
    double nearPlane, farPlane, nearRead, farRead;
};

class VlViewportCameraNearFar : public VlViewportCameraHost,
                                public testing::WithParamInterface<NearFarRow> {};

TEST_P(VlViewportCameraNearFar, isCorrectedWhenReadAndStoredAsGiven) {
    const NearFarRow& row = GetParam();
    camera->setNearFar(row.nearPlane, row.farPlane);
    double nearPlane = 0, farPlane = 0;
    camera->getNearFar(nearPlane, farPlane);
    EXPECT_EQ(nearPlane, row.nearRead);
    EXPECT_EQ(farPlane, row.farRead);
    EXPECT_EQ(camera->near, row.nearPlane);
    EXPECT_EQ(camera->far, row.farPlane);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
}

INSTANTIATE_TEST_SUITE_P(Pairs, VlViewportCameraNearFar,
                         testing::Values(NearFarRow{"bothZero", 0.0, 0.0, 0.001, 0.002},
                                         NearFarRow{"farBeforeNear", 10.0, 5.0, 10.0, 10.001},
                                         NearFarRow{"negative", -3.0, -2.0, 0.001, 0.002},
                                         NearFarRow{"closer", 1.0, 1.0005, 1.0, 1.001},
                                         NearFarRow{"usual", 0.5, 500.0, 0.5, 500.0}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(VlViewportCameraHost, parametersAreStoredAndTellThePluginOnceEach) {
    camera->setCenterOfInterest(-2.5);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
    EXPECT_EQ(camera->getCenterOfInterest(), -2.5);
    camera->setFOV(179.0);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
    EXPECT_EQ(camera->getFOV(), 179.0);
    camera->setOrthographicWidth(-7.0);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
    EXPECT_EQ(camera->getOrthographicWidth(), -7.0);
    camera->setScreenWindow(-2, 3, -4, 5);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
    double left = 0, right = 0, bottom = 0, top = 0;
    camera->getScreenWindow(left, right, bottom, top);
    EXPECT_EQ((std::array{left, right, bottom, top}), (std::array{-2.0, 3.0, -4.0, 5.0}));
}

TEST_F(VlViewportCameraHost, aParameterIsStoredBeforeThePluginIsTold) {
    double seen = 0;
    plugins.hooks["camera1.setDirty"] = [&](auto&) { seen = camera->getFOV(); };
    camera->setFOV(60.0);
    EXPECT_EQ(seen, 60.0);
}

TEST_F(VlViewportCameraHost, orthographicWidthOfZeroIsIgnoredAltogether) {
    camera->setOrthographicWidth(0.0);
    camera->setOrthographicWidth(-0.0);
    EXPECT_EQ(camera->getOrthographicWidth(), 30.0);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(VlViewportCameraHost, orthographicWidthThatIsNotANumberPasses) {
    camera->setOrthographicWidth(std::nan(""));
    EXPECT_TRUE(std::isnan(camera->getOrthographicWidth()));
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
}

TEST_F(VlViewportCameraHost, matricesLocationAndInteractionTellNobody) {
    camera->setViewMatrix(counted().data());
    camera->setProjectionMatrix(counted().data());
    camera->setLocationPath("/root/cam");
    camera->disableInteraction(true);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(matrixAt(camera->getViewMatrix()), counted());
    EXPECT_TRUE(camera->isInteractionDisabled);
}

TEST_F(VlViewportCameraHost, setDirtyPassesTheBitsOn) {
    camera->setDirty(0);
    camera->setDirty(6);
    EXPECT_EQ(journal.take(), (Lines{"camera1.setDirty 0", "camera1.setDirty 6"}));
}

TEST_F(VlViewportCameraHost, locationPathIsCopiedAndEmptyMeansNone) {
    std::string path = "/root/cam";
    camera->setLocationPath(path.c_str());
    path = "changed";
    EXPECT_TRUE(camera->hasLocationPath());
    EXPECT_STREQ(camera->getLocationPath(), "/root/cam");
    camera->setLocationPath(camera->getLocationPath());
    EXPECT_STREQ(camera->getLocationPath(), "/root/cam");
    for (const char* none : {"", static_cast<const char*>(nullptr)}) {
        camera->setLocationPath("/root/cam");
        camera->setLocationPath(none);
        EXPECT_FALSE(camera->hasLocationPath());
        EXPECT_EQ(camera->getLocationPath(), nullptr);
    }
}

TEST_F(VlViewportCameraHost, matrixPointersStayAndFollowChanges) {
    const double* view = camera->getViewMatrix();
    const double* projectionBefore = camera->getProjectionMatrix();
    camera->setViewMatrix(counted().data());
    camera->setProjectionMatrix(counted().data());
    EXPECT_EQ(camera->getViewMatrix(), view);
    EXPECT_EQ(matrixAt(view), counted());
    EXPECT_EQ(camera->getProjectionMatrix(), projectionBefore);
    EXPECT_EQ(matrixAt(projectionBefore), counted());
}

TEST_F(VlViewportCameraHost, matrixMayBeSetFromItsOwnPointer) {
    viewport->setActiveCamera(camera);
    camera->setProjectionMatrix(counted().data());
    viewport->setPanAndZoomActive(true);
    viewport->setZoom(2.0f);
    const Matrix before = projection();
    camera->setProjectionMatrix(camera->getProjectionMatrix());
    EXPECT_EQ(projection(), before);
}

TEST_F(VlViewportCameraHost, panAndZoomEqualThePlainEvaluation) {
    const unsigned seed = 3101;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> entry(-10.0, 10.0);
    std::uniform_real_distribution<float> offset(-4.0f, 4.0f), zoom(0.01f, 20.0f);
    viewport->setActiveCamera(camera);
    viewport->setPanAndZoomActive(true);
    for (int round = 0; round < kRandomRounds; ++round) {
        Matrix matrix;
        for (double& value : matrix) {
            value = entry(random);
        }
        viewport->setPanAndZoomActive(false);
        camera->setProjectionMatrix(matrix.data());
        viewport->setHorizontalOffset(offset(random));
        viewport->setVerticalOffset(offset(random));
        viewport->setZoom(zoom(random));
        EXPECT_EQ(projection(), matrix) << "inactive: as it was set";
        viewport->setPanAndZoomActive(true);
        const Product wanted =
            product(matrix, plainPanZoom(viewport->horizontalOffset, viewport->verticalOffset,
                                         viewport->zoom));
        expectNear(projection(), wanted.value, wanted.tolerance);
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(VlViewportCameraHost, projectionSetWhilePanAndZoomAreActiveReadsBackAsItWas) {
    viewport->setActiveCamera(camera);
    viewport->setHorizontalOffset(0.5f);
    viewport->setZoom(4.0f);
    viewport->setPanAndZoomActive(true);
    camera->setProjectionMatrix(counted().data());
    EXPECT_EQ(projection(), counted());
    viewport->setPanAndZoomActive(false);
    EXPECT_EQ(projection(), underlying());
    EXPECT_NE(projection(), counted());
}

TEST_F(VlViewportCameraHost, underlyingProjectionTimesPanAndZoomGivesBackWhatWasSet) {
    const unsigned seed = 3102;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> entry(-10.0, 10.0);
    std::uniform_real_distribution<float> offset(-4.0f, 4.0f), zoom(0.1f, 20.0f);
    viewport->setActiveCamera(camera);
    viewport->setPanAndZoomActive(true);
    for (int round = 0; round < kRandomRounds; ++round) {
        Matrix matrix;
        for (double& value : matrix) {
            value = entry(random);
        }
        viewport->setHorizontalOffset(offset(random));
        viewport->setVerticalOffset(offset(random));
        viewport->setZoom(zoom(random));
        camera->setProjectionMatrix(matrix.data());
        const Product back = product(underlying(), matrixAt(camera->panZoomMatrix.getValue()));
        // Three roundings on the way, each of the same bound as the product's own: the inverse's
        // entries, the product with it, and the product back.
        expectNear(back.value, matrix, scaled(back.tolerance, 4));
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(VlViewportCameraHost, singularPanAndZoomCountsAsTheIdentityWhenAProjectionIsSet) {
    viewport->setActiveCamera(camera);
    viewport->setZoom(0.0f);
    viewport->setPanAndZoomActive(true);
    camera->setProjectionMatrix(counted().data());
    EXPECT_EQ(projection(), counted());
    EXPECT_EQ(underlying(), counted());
}

TEST_F(VlViewportCameraHost, settingAProjectionWhilePanAndZoomAreInactivePreparesTheirMatrix) {
    viewport->setZoom(2.0f);
    camera->setProjectionMatrix(kIdentity.data());
    EXPECT_EQ(matrixAt(camera->panZoomProjectionMatrix.getValue()), plainPanZoom(0, 0, 2));
}

struct PanZoomSetterRow {
    const char* name;
    std::function<void(VlViewportHostStruct&)> set;
    Matrix panZoom;
};

class VlViewportCameraPanZoomSetter : public VlViewportCameraHost,
                                      public testing::WithParamInterface<PanZoomSetterRow> {};

TEST_P(VlViewportCameraPanZoomSetter, bringsTheActiveCameraUpToDateAndCallsNoPlugin) {
    viewport->setActiveCamera(camera);
    // Something stale, which the update has to replace.
    camera->panZoomMatrix.setValue(Imath::M44d(7.0));
    journal.take();
    GetParam().set(*viewport);
    EXPECT_EQ(matrixAt(camera->panZoomMatrix.getValue()), GetParam().panZoom);
    EXPECT_EQ(matrixAt(camera->panZoomProjectionMatrix.getValue()), GetParam().panZoom);
    EXPECT_EQ(journal.take(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(
    Setters, VlViewportCameraPanZoomSetter,
    testing::Values(PanZoomSetterRow{"horizontalOffset",
                                     [](auto& viewport) { viewport.setHorizontalOffset(2); },
                                     plainPanZoom(2, 0, 1)},
                    PanZoomSetterRow{"verticalOffset",
                                     [](auto& viewport) { viewport.setVerticalOffset(-2); },
                                     plainPanZoom(0, -2, 1)},
                    PanZoomSetterRow{"zoom", [](auto& viewport) { viewport.setZoom(4); },
                                     plainPanZoom(0, 0, 4)},
                    PanZoomSetterRow{"active",
                                     [](auto& viewport) { viewport.setPanAndZoomActive(true); },
                                     plainPanZoom(0, 0, 1)}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(VlViewportCameraHost, onlyTheActiveCameraFollowsPanAndZoom) {
    auto* other = viewport->addCamera("Recording", "other");
    viewport->setActiveCamera(other);
    viewport->setZoom(3.0f);
    EXPECT_EQ(camera->panZoomMatrix, Imath::M44d());
    EXPECT_EQ(other->panZoomMatrix[0][0], 3.0);
    viewport->setActiveCamera(camera);
    EXPECT_EQ(camera->panZoomMatrix[0][0], 3.0) << "it catches up when it becomes active";
}

TEST_F(VlViewportCameraHost, panAndZoomAreThoseOfTheCamerasOwnViewport) {
    const auto another = makeViewport("another");
    another->setZoom(5.0f);
    viewport->setZoom(2.0f);
    another->setActiveCamera(camera);
    EXPECT_EQ(camera->panZoomMatrix[0][0], 2.0);
    another->setActiveCamera(nullptr);
}

TEST_F(VlViewportCameraHost, identityViewLooksDownNegativeZWithYUp) {
    EXPECT_EQ(camera->getOrigin(), Imath::V3d(0, 0, 0));
    EXPECT_EQ(camera->getDirection(), Imath::V3d(0, 0, -1));
    EXPECT_EQ(camera->getUp(), Imath::V3d(0, 1, 0));
    EXPECT_EQ(camera->getLeft(), Imath::V3d(-1, 0, 0));
}

// A rotation by the given angle about a unit axis, for row vectors.
std::array<Vector, 3> plainRotation(const Vector& axis, double angle) {
    const double s = std::sin(angle), c = std::cos(angle);
    const auto [x, y, z] = axis;
    return {{{c + x * x * (1 - c), x * y * (1 - c) + z * s, x * z * (1 - c) - y * s},
             {x * y * (1 - c) - z * s, c + y * y * (1 - c), y * z * (1 - c) + x * s},
             {x * z * (1 - c) + y * s, y * z * (1 - c) - x * s, c + z * z * (1 - c)}}};
}

void expectNear(const Imath::V3d& got, const Vector& wanted, double tolerance) {
    EXPECT_NEAR(got.x, wanted[0], tolerance);
    EXPECT_NEAR(got.y, wanted[1], tolerance);
    EXPECT_NEAR(got.z, wanted[2], tolerance);
}

TEST_F(VlViewportCameraHost, vectorsOfARigidViewAreItsTransposeApplied) {
    const unsigned seed = 3103;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0), angle(-7.0, 7.0),
        place(-1000.0, 1000.0);
    for (int round = 0; round < kRandomRounds; ++round) {
        Vector axis = {coordinate(random), coordinate(random), coordinate(random)};
        const double length = std::hypot(axis[0], axis[1], axis[2]);
        for (double& value : axis) {
            value /= length;
        }
        const auto rotation = plainRotation(axis, angle(random));
        const Vector move = {place(random), place(random), place(random)};
        Matrix view = kIdentity;
        for (size_t row = 0; row < 3; ++row) {
            for (size_t column = 0; column < 3; ++column) {
                view[row * 4 + column] = rotation[row][column];
            }
            view[12 + row] = move[row];
        }
        camera->setViewMatrix(view.data());

        // The inverse of a rotation is its transpose; its entries are at most 1 and are found by
        // cofactors (2 products) over a determinant (3 of them): a dozen roundings of numbers of
        // that size, and about as many in the rotation itself.
        const double tolerance = 32 * kEpsilon;
        const Vector up = {rotation[0][1], rotation[1][1], rotation[2][1]};
        const Vector back = {rotation[0][2], rotation[1][2], rotation[2][2]};
        expectNear(camera->getUp(), up, tolerance);
        expectNear(camera->getDirection(), {-back[0], -back[1], -back[2]}, tolerance);
        Vector origin{};
        for (size_t i = 0; i < 3; ++i) {
            for (size_t k = 0; k < 3; ++k) {
                origin[i] -= move[k] * rotation[i][k];
            }
        }
        // The move's entries are up to 1000, and three of them are summed.
        expectNear(camera->getOrigin(), origin, 3 * 1000.0 * tolerance);
        const Imath::V3d left = camera->getLeft();
        // A camera's right is the first row of the inverse.
        expectNear(left, {-rotation[0][0], -rotation[1][0], -rotation[2][0]}, 4 * tolerance);
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(VlViewportCameraHost, upKeepsTheScaleAndDirectionIsNormalised) {
    Matrix view = kIdentity;
    view[5] = 0.5;
    view[10] = 0.25;
    camera->setViewMatrix(view.data());
    EXPECT_EQ(camera->getUp(), Imath::V3d(0, 2, 0));
    EXPECT_EQ(camera->getDirection(), Imath::V3d(0, 0, -1));
    EXPECT_EQ(camera->getLeft(), Imath::V3d(-2, 0, 0));
}

TEST_F(VlViewportCameraHost, directionSurvivesALengthWhoseSquareVanishes) {
    Matrix view = kIdentity;
    view[10] = 1e200;
    camera->setViewMatrix(view.data());
    EXPECT_EQ(camera->getDirection(), Imath::V3d(0, 0, -1));
}

TEST_F(VlViewportCameraHost, singularViewCountsAsTheIdentity) {
    const Matrix zero{};
    camera->setViewMatrix(zero.data());
    EXPECT_EQ(camera->getOrigin(), Imath::V3d(0, 0, 0));
    EXPECT_EQ(camera->getDirection(), Imath::V3d(0, 0, -1));
    EXPECT_EQ(camera->getUp(), Imath::V3d(0, 1, 0));
}

TEST_F(VlViewportCameraHost, staysUsableAfterItsViewport) {
    viewport->setActiveCamera(camera);
    viewport->setZoom(2.0f);
    viewport->setPanAndZoomActive(true);
    viewport.reset();
    EXPECT_EQ(camera->viewport, nullptr);
    camera->setProjectionMatrix(counted().data());
    EXPECT_EQ(projection(), counted()) << "there is no pan and zoom any more";
    journal.take();
    camera->setFOV(30.0);
    EXPECT_EQ(journal.take(), Lines{"camera1.setDirty 1"});
}

TEST_F(VlViewportCameraHost, exceptionOfSetDirtyPassesThroughAndTheValueStays) {
    plugins.hooks["camera1.setDirty"] = [](auto&) { throw std::runtime_error("bad lens"); };
    EXPECT_THROW(camera->setFOV(10.0), std::runtime_error);
    EXPECT_EQ(camera->getFOV(), 10.0);
}

} // namespace
} // namespace ViewerAPI::test
