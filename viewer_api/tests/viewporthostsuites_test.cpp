// The three tables of the viewport family, as a plug-in calls them: order of arguments, triples,
// conversions at the border.

#include "suites/viewportcamerahostsuite.h"
#include "suites/viewporthostsuite.h"
#include "suites/viewportlayerhostsuite.h"
#include "support/viewporttest.h"
#include "vlviewportcamerahost.h"
#include "vlviewportlayerhost.h"

#include "VlAttribute/GroupAttribute.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;

// Starts with something in each place, so that nulls show as written.
struct Triple {
    static inline int something = 0;
    void* host = &something;
    void* instance = &something;
    const void* suite = &something;
};

template <class Host>
testing::AssertionResult names(const Triple& triple, const Host* object) {
    if (!object) {
        if (!triple.host && !triple.instance && !triple.suite) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "not three nulls";
    }
    if (triple.host == object && triple.instance == object->pluginHandle &&
        triple.suite == object->pluginSuite) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "not the object's triple";
}

constexpr const VlViewportCameraHostStruct* kNoCamera = nullptr;
constexpr const VlViewportLayerHostStruct* kNoLayer = nullptr;

class ViewportSuites : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        journal.take();
    }
    // What a plug-in has: its own pointer and the tables.
    const ViewportHostSuite& suite = *getViewportHostSuite();
    const ViewportLayerHostSuite& layerSuite = *getViewportLayerHostSuite();
    const ViewportCameraHostSuite& cameraSuite = *getViewportCameraHostSuite();
    std::unique_ptr<VlViewportHostStruct> viewport;
};

TEST_F(ViewportSuites, accessorsGiveTheSameTableEveryTime) {
    EXPECT_EQ(getViewportHostSuite(), &suite);
    EXPECT_EQ(getViewportLayerHostSuite(), &layerSuite);
    EXPECT_EQ(getViewportCameraHostSuite(), &cameraSuite);
}

TEST_F(ViewportSuites, getNameIsTheNameTextItself) {
    EXPECT_EQ(suite.getName(viewport.get()), viewport->name.c_str());
    EXPECT_STREQ(suite.getName(viewport.get()), "view");
}

TEST_F(ViewportSuites, getReservedIsZeroWhateverItIsGiven) {
    EXPECT_EQ(suite.getReserved(viewport.get()), 0);
    EXPECT_EQ(suite.getReserved(nullptr), 0);
}

TEST_F(ViewportSuites, getViewerDelegateOfAViewportThatStandsAloneWritesNulls) {
    Triple triple;
    suite.getViewerDelegate(viewport.get(), &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(names(triple, kNoLayer));
}

TEST_F(ViewportSuites, getActiveCameraWithNoneWritesThreeNulls) {
    Triple triple;
    suite.getActiveCamera(viewport.get(), &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(names(triple, kNoCamera));
}

TEST_F(ViewportSuites, camerasAreAddedFoundActivatedAndRemoved) {
    Triple a, b, found;
    suite.addCamera(viewport.get(), "Recording", "a", &a.host, &a.instance, &a.suite);
    suite.addCamera(viewport.get(), "Recording", "b", &b.host, &b.instance, &b.suite);
    EXPECT_TRUE(names(a, viewport->getCameraByName("a")));
    EXPECT_TRUE(names(b, viewport->getCameraByName("b")));
    EXPECT_EQ(suite.getNumberOfCameras(viewport.get()), 2u);
    EXPECT_STREQ(suite.getCameraName(viewport.get(), 1), "b");
    EXPECT_STREQ(suite.getCameraName(viewport.get(), 2), "");
    EXPECT_EQ(suite.getCameraIndex(viewport.get(), "b"), 1);
    EXPECT_EQ(suite.getCameraIndex(viewport.get(), "c"), -1);

    suite.getCameraByName(viewport.get(), "b", &found.host, &found.instance, &found.suite);
    EXPECT_TRUE(names(found, viewport->cameras[1]));
    suite.getCameraByIndex(viewport.get(), 0, &found.host, &found.instance, &found.suite);
    EXPECT_TRUE(names(found, viewport->cameras[0]));

    suite.setActiveCamera(viewport.get(), b.host);
    suite.getActiveCamera(viewport.get(), &found.host, &found.instance, &found.suite);
    EXPECT_TRUE(names(found, viewport->cameras[1]));

    suite.removeCamera(viewport.get(), b.host);
    EXPECT_EQ(suite.getNumberOfCameras(viewport.get()), 2u) << "the active camera stays";
    suite.removeCamera(viewport.get(), &found);
    EXPECT_EQ(suite.getNumberOfCameras(viewport.get()), 2u) << "an unknown camera is ignored";
    suite.removeCamera(viewport.get(), a.host);
    EXPECT_EQ(suite.getNumberOfCameras(viewport.get()), 1u);
    suite.setActiveCamera(viewport.get(), nullptr);
    suite.removeCameraByName(viewport.get(), "b");
    EXPECT_EQ(suite.getNumberOfCameras(viewport.get()), 0u);
}

TEST_F(ViewportSuites, camerasThatAreNotThereWriteNulls) {
    viewport->addCamera("Recording", "a");
    Triple byName, byNull, atCount, beyond;
    suite.getCameraByName(viewport.get(), "b", &byName.host, &byName.instance, &byName.suite);
    suite.getCameraByName(viewport.get(), nullptr, &byNull.host, &byNull.instance, &byNull.suite);
    suite.getCameraByIndex(viewport.get(), 1, &atCount.host, &atCount.instance, &atCount.suite);
    suite.getCameraByIndex(viewport.get(), ~0u, &beyond.host, &beyond.instance, &beyond.suite);
    for (const Triple& triple : {byName, byNull, atCount, beyond}) {
        EXPECT_TRUE(names(triple, kNoCamera));
    }
}

TEST_F(ViewportSuites, removeCameraByIndexLetsTheRangeErrorThrough) {
    EXPECT_THROW(suite.removeCameraByIndex(viewport.get(), 0), std::out_of_range);
    viewport->addCamera("Recording", "a");
    suite.removeCameraByIndex(viewport.get(), 0);
    EXPECT_EQ(viewport->getNumberOfCameras(), 0u);
}

TEST_F(ViewportSuites, loadFailuresComeThroughTheTable) {
    Triple triple;
    EXPECT_THROW(suite.addCamera(viewport.get(), "Missing", "a", &triple.host, &triple.instance,
                                 &triple.suite),
                 std::runtime_error);
    EXPECT_THROW(suite.addLayer(viewport.get(), "Missing", "a", &triple.host, &triple.instance,
                                &triple.suite),
                 std::runtime_error);
    EXPECT_THROW(suite.insertLayer(viewport.get(), "Missing", "a", 0, &triple.host,
                                   &triple.instance, &triple.suite),
                 std::runtime_error);
    EXPECT_THROW(suite.addLayer(viewport.get(), nullptr, nullptr, &triple.host, &triple.instance,
                                &triple.suite),
                 std::runtime_error);
    EXPECT_EQ(viewport->getNumberOfLayers(), 0u);
}

TEST_F(ViewportSuites, eventDrawAndResizeReachTheViewport) {
    viewport->setup(7);
    plugins.answers["viewport1.event"] = 5;
    const GroupAttribute data = GroupAttribute::Empty();
    EXPECT_EQ(suite.event(viewport.get(), data.getHandle()), 1) << "a bool comes out as 0 or 1";
    journal.take();
    suite.draw(viewport.get());
    EXPECT_THAT(journal.take(), testing::Contains("swapBuffers dc7"));
    suite.resize(viewport.get(), 320, 200);
    EXPECT_EQ(suite.getWidth(viewport.get()), 320);
    EXPECT_EQ(suite.getHeight(viewport.get()), 200);
}

TEST_F(ViewportSuites, flagsAreReducedToBoolsFirst) {
    suite.setDirty(viewport.get(), -8);
    EXPECT_EQ(suite.isDirty(viewport.get()), 1);
    suite.setDirty(viewport.get(), 0);
    EXPECT_EQ(suite.isDirty(viewport.get()), 0);
    suite.setPanAndZoomActive(viewport.get(), 256);
    EXPECT_EQ(suite.isPanAndZoomActive(viewport.get()), 1);
    suite.setPanAndZoomActive(viewport.get(), 0);
    EXPECT_EQ(suite.isPanAndZoomActive(viewport.get()), 0);
    EXPECT_EQ(suite.isViewFrozen(viewport.get()), 0);
}

TEST_F(ViewportSuites, layersAreAddedInsertedFoundAndRemoved) {
    Triple b, a, found;
    suite.addLayer(viewport.get(), "Recording", "b", &b.host, &b.instance, &b.suite);
    suite.insertLayer(viewport.get(), "Recording", "a", 0, &a.host, &a.instance, &a.suite);
    EXPECT_TRUE(names(a, viewport->getLayerByIndex(0)));
    EXPECT_TRUE(names(b, viewport->getLayerByIndex(1)));
    EXPECT_EQ(suite.getNumberOfLayers(viewport.get()), 2u);
    EXPECT_STREQ(suite.getLayerName(viewport.get(), 0), "a");
    EXPECT_STREQ(suite.getLayerName(viewport.get(), 2), "");
    EXPECT_EQ(suite.getLayerIndex(viewport.get(), "b"), 1);
    EXPECT_EQ(suite.getLayerIndex(viewport.get(), "c"), -1);
    suite.getLayer(viewport.get(), "a", &found.host, &found.instance, &found.suite);
    EXPECT_TRUE(names(found, viewport->getLayerByIndex(0)));
    suite.getLayerByIndex(viewport.get(), 1, &found.host, &found.instance, &found.suite);
    EXPECT_TRUE(names(found, viewport->getLayerByIndex(1)));
    suite.removeLayer(viewport.get(), "a");
    suite.removeLayerByIndex(viewport.get(), 0);
    EXPECT_EQ(suite.getNumberOfLayers(viewport.get()), 0u);
}

TEST_F(ViewportSuites, layersThatAreNotThereWriteNulls) {
    viewport->addLayer("Recording", "a");
    Triple byName, byNull, atCount, inserted;
    suite.getLayer(viewport.get(), "b", &byName.host, &byName.instance, &byName.suite);
    suite.getLayer(viewport.get(), nullptr, &byNull.host, &byNull.instance, &byNull.suite);
    suite.getLayerByIndex(viewport.get(), 1, &atCount.host, &atCount.instance, &atCount.suite);
    suite.insertLayer(viewport.get(), "Recording", "c", 2, &inserted.host, &inserted.instance,
                      &inserted.suite);
    for (const Triple& triple : {byName, byNull, atCount, inserted}) {
        EXPECT_TRUE(names(triple, kNoLayer));
    }
}

TEST_F(ViewportSuites, nullNamesFindAndRemoveNothing) {
    viewport->addLayer("Recording", "");
    viewport->addCamera("Recording", "");
    EXPECT_EQ(suite.getLayerIndex(viewport.get(), nullptr), -1);
    EXPECT_EQ(suite.getCameraIndex(viewport.get(), nullptr), -1);
    suite.removeLayer(viewport.get(), nullptr);
    suite.removeCameraByName(viewport.get(), nullptr);
    EXPECT_EQ(viewport->getNumberOfLayers(), 1u);
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
}

TEST_F(ViewportSuites, matricesAreTheViewports) {
    EXPECT_EQ(suite.getViewMatrix(viewport.get()), viewport->fallbackViewMatrix.getValue());
    EXPECT_EQ(suite.getProjectionMatrix(viewport.get()),
              viewport->fallbackProjectionMatrix.getValue());
    auto* camera = viewport->addCamera("Recording", "a");
    viewport->setActiveCamera(camera);
    EXPECT_EQ(suite.getViewMatrix(viewport.get()), camera->getViewMatrix());
    EXPECT_EQ(suite.getProjectionMatrix(viewport.get()), camera->getProjectionMatrix());
}

TEST_F(ViewportSuites, contextEntriesAnswerZeroOrOne) {
    EXPECT_EQ(suite.makeGLContextCurrent(viewport.get()), 0);
    EXPECT_EQ(suite.doneGLContextCurrent(viewport.get()), 1);
    EXPECT_EQ(suite.isGLContextCurrent(viewport.get()), 0);
    viewport->windowId = 7;
    EXPECT_EQ(suite.initializeGLContext(viewport.get()), 1);
    EXPECT_EQ(suite.makeGLContextCurrent(viewport.get()), 1);
    EXPECT_EQ(suite.isGLContextCurrent(viewport.get()), 1);
    windows.failing = {"getDC"};
    EXPECT_EQ(suite.initializeGLContext(viewport.get()), 0);
}

TEST_F(ViewportSuites, initializeGLContextFetchesTheDeviceContextAnewAndReleasesNone) {
    viewport->setup(7);
    journal.take();
    suite.initializeGLContext(viewport.get());
    EXPECT_EQ(journal.take(), (Lines{"getDC 7", "setPixelFormat dc7 33 described"}));
}

TEST_F(ViewportSuites, capabilitiesReachTheRecord) {
    suite.enableCapability(viewport.get(), 2929);
    suite.enableCapability(viewport.get(), 2929);
    suite.disableCapability(viewport.get(), 2929);
    EXPECT_EQ(journal.take(), (Lines{"glEnable 2929", "glDisable 2929"}));
}

TEST_F(ViewportSuites, layerEntriesReachTheLayer) {
    auto* layer = viewport->addLayer("Recording", "a");
    Triple triple;
    layerSuite.getViewport(layer, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(names(triple, viewport.get()));
    journal.take();
    plugins.answers["layer1.event"] = -1;
    const GroupAttribute data = GroupAttribute::Empty();
    EXPECT_EQ(layerSuite.event(layer, data.getHandle()), 1);
    layerSuite.draw(layer);
    layerSuite.hover(layer, 16, 3, 4);
    EXPECT_EQ(journal.take(), (Lines{"layer1.event", "layer1.draw", "layer1.hover 1 3 4"}));
}

TEST_F(ViewportSuites, cameraEntriesReachTheCamera) {
    auto* camera = viewport->addCamera("Recording", "a");
    std::array<double, 16> matrix{};
    for (size_t i = 0; i < 16; ++i) {
        matrix[i] = static_cast<double>(i * i);
    }
    cameraSuite.setViewMatrix(camera, matrix.data());
    EXPECT_EQ(std::memcmp(cameraSuite.getViewMatrix(camera), matrix.data(), sizeof matrix), 0);
    cameraSuite.setProjectionMatrix(camera, matrix.data());
    EXPECT_EQ(std::memcmp(cameraSuite.getProjectionMatrix(camera), matrix.data(), sizeof matrix),
              0);
    cameraSuite.setCenterOfInterest(camera, 1.5);
    EXPECT_EQ(cameraSuite.getCenterOfInterest(camera), 1.5);
    cameraSuite.setFOV(camera, 2.5);
    EXPECT_EQ(cameraSuite.getFOV(camera), 2.5);
    cameraSuite.setOrthographicWidth(camera, 3.5);
    EXPECT_EQ(cameraSuite.getOrthographicWidth(camera), 3.5);

    double a = 0, b = 0, c = 0, d = 0;
    cameraSuite.setNearFar(camera, 4.0, 5.0);
    cameraSuite.getNearFar(camera, &a, &b);
    EXPECT_EQ((std::array{a, b}), (std::array{4.0, 5.0}));
    cameraSuite.setScreenWindow(camera, 6, 7, 8, 9);
    cameraSuite.getScreenWindow(camera, &a, &b, &c, &d);
    EXPECT_EQ((std::array{a, b, c, d}), (std::array{6.0, 7.0, 8.0, 9.0}));
    EXPECT_EQ(camera->screenWindowBottom, 8.0);
    EXPECT_EQ(camera->screenWindowTop, 9.0);

    Triple triple;
    cameraSuite.getViewport(camera, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(names(triple, viewport.get()));

    EXPECT_EQ(cameraSuite.hasLocationPath(camera), 0);
    EXPECT_EQ(cameraSuite.getLocationPath(camera), nullptr);
    cameraSuite.setLocationPath(camera, "/root/cam");
    EXPECT_EQ(cameraSuite.hasLocationPath(camera), 1);
    EXPECT_STREQ(cameraSuite.getLocationPath(camera), "/root/cam");
    EXPECT_EQ(cameraSuite.isInteractionDisabled(camera), 0);
    cameraSuite.disableInteraction(camera, 64);
    EXPECT_EQ(cameraSuite.isInteractionDisabled(camera), 1);
}

TEST_F(ViewportSuites, cameraVectorsAreWrittenComponentByComponent) {
    auto* camera = viewport->addCamera("Recording", "a");
    std::array<double, 16> matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1};
    cameraSuite.setViewMatrix(camera, matrix.data());
    using Entry = void (*)(VlViewportCameraHandle, double*, double*, double*);
    const auto read = [camera](Entry entry) {
        std::array<double, 3> vector{};
        entry(camera, &vector[0], &vector[1], &vector[2]);
        return vector;
    };
    EXPECT_EQ(read(cameraSuite.getOrigin), (std::array{1.0, 2.0, 3.0}));
    EXPECT_EQ(read(cameraSuite.getDirection), (std::array{0.0, 0.0, -1.0}));
    EXPECT_EQ(read(cameraSuite.getUp), (std::array{0.0, 1.0, 0.0}));
    EXPECT_EQ(read(cameraSuite.getLeft), (std::array{-1.0, 0.0, 0.0}));
}

TEST_F(ViewportSuites, viewportOfACameraThatOutlivedItWritesNulls) {
    auto* camera = viewport->addCamera("Recording", "a");
    auto alone = makeViewport("other");
    viewport.swap(alone);
    alone.reset();
    Triple triple;
    cameraSuite.getViewport(camera, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(names(triple, kNoLayer));
}

} // namespace
} // namespace ViewerAPI::test
