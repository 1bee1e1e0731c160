// A viewport's list of cameras and its active camera.

#include "support/viewporttest.h"
#include "vlviewportcamerahost.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

class ViewportCameras : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        journal.take();
    }
    VlViewportCameraHostStruct* add(const std::string& name) {
        return viewport->addCamera("Recording", name);
    }

    std::string messageOfAdding(const std::string& pluginName) {
        try {
            viewport->addCamera(pluginName, "camera");
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    std::unique_ptr<VlViewportHostStruct> viewport;
};

TEST_F(ViewportCameras, loadFailuresThrowTheirTextsAndLeaveAllAsItWas) {
    auto* before = add("camera");
    EXPECT_EQ(messageOfAdding("Missing"),
              "Couldn't load ViewportCamera plugin type 'Missing'. The API version of the plugin "
              "might not match the one currently supported: v2. In that case the plugin needs to "
              "be recompiled and linked against this version of Ostrel.");
    EXPECT_EQ(messageOfAdding("NoSuite"),
              "Error getting ViewportCamera plugin suite for 'NoSuite'.");
    EXPECT_EQ(messageOfAdding("NullCreate"),
              "Failed to create ViewportCamera plugin instance for 'NullCreate'.");
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
    EXPECT_EQ(viewport->getCameraByName("camera"), before);
    EXPECT_FALSE(plugins.instance("camera1").isDestroyed);
}

TEST_F(ViewportCameras, areListedInOrderOfAddition) {
    auto* b = add("b");
    auto* a = add("a");
    EXPECT_EQ(viewport->getNumberOfCameras(), 2u);
    EXPECT_EQ(viewport->getCameraByIndex(0), b);
    EXPECT_EQ(viewport->getCameraByIndex(1), a);
    EXPECT_EQ(viewport->getCameraByName("a"), a);
    EXPECT_STREQ(viewport->getCameraName(0), "b");
    EXPECT_STREQ(viewport->getCameraName(1), "a");
    EXPECT_EQ(viewport->getCameraIndex("b"), 0);
    EXPECT_EQ(viewport->getActiveCamera(), nullptr) << "adding makes none active";
}

TEST_F(ViewportCameras, lookupsAnswerSilentlyForWhatIsNotThere) {
    add("a");
    EXPECT_EQ(viewport->getCameraByName("b"), nullptr);
    EXPECT_EQ(viewport->getCameraByIndex(1), nullptr);
    EXPECT_EQ(viewport->getCameraByIndex(4000000000u), nullptr);
    EXPECT_STREQ(viewport->getCameraName(1), "");
    EXPECT_STREQ(viewport->getCameraName(2), "");
    EXPECT_EQ(viewport->getCameraIndex("b"), -1);
    viewport->removeCameraByName("b");
    viewport->removeCamera(nullptr);
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
}

TEST_F(ViewportCameras, removalMovesLaterIndicesDown) {
    add("a");
    auto* b = add("b");
    auto* c = add("c");
    viewport->removeCameraByName("a");
    EXPECT_TRUE(plugins.instance("camera1").isDestroyed);
    EXPECT_EQ(viewport->getCameraIndex("a"), -1);
    EXPECT_EQ(viewport->getCameraIndex("b"), 0);
    EXPECT_EQ(viewport->getCameraIndex("c"), 1);
    EXPECT_EQ(viewport->getCameraByName("b"), b);
    viewport->removeCamera(b);
    EXPECT_EQ(viewport->getCameraByIndex(0), c);
    EXPECT_EQ(viewport->getCameraByName("c"), c);
}

TEST_F(ViewportCameras, removalIsByIdentityAndIgnoresOthersCameras) {
    const auto another = makeViewport("another");
    auto* foreign = another->addCamera("Recording", "a");
    add("a");
    viewport->removeCamera(foreign);
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
    EXPECT_EQ(another->getNumberOfCameras(), 1u);
    another->removeCamera(foreign);
    EXPECT_TRUE(plugins.instance("camera1").isDestroyed);
}

TEST_F(ViewportCameras, removalAtTheCountThrowsAndBeyondItDoesNothing) {
    add("a");
    try {
        viewport->removeCameraByIndex(1);
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
    EXPECT_NO_THROW(viewport->removeCameraByIndex(2));
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
}

TEST_F(ViewportCameras, removalFromAnEmptyListThrowsAtZero) {
    EXPECT_THROW(viewport->removeCameraByIndex(0), std::out_of_range);
    EXPECT_NO_THROW(viewport->removeCameraByIndex(1));
}

TEST_F(ViewportCameras, removalOfTheActiveCameraDoesNothingAndSaysNothing) {
    auto* camera = add("a");
    viewport->setActiveCamera(camera);
    journal.take();
    viewport->removeCameraByIndex(0);
    viewport->removeCameraByName("a");
    viewport->removeCamera(camera);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
}

TEST_F(ViewportCameras, addWithANameInUseReplacesTheCameraAtTheEnd) {
    add("a");
    auto* b = add("b");
    journal.take();
    auto* replacement = add("a");
    EXPECT_EQ(journal.take(), (Lines{"camera3.create", "camera1.destroy"}));
    EXPECT_EQ(viewport->getNumberOfCameras(), 2u);
    EXPECT_EQ(viewport->getCameraByIndex(0), b);
    EXPECT_EQ(viewport->getCameraByIndex(1), replacement);
    EXPECT_EQ(viewport->getCameraIndex("a"), 1);
    EXPECT_EQ(viewport->getActiveCamera(), nullptr);
}

TEST_F(ViewportCameras, addWithTheNameOfTheActiveCameraKeepsAnActiveCamera) {
    viewport->setActiveCamera(add("a"));
    viewport->setZoom(2.0f);
    journal.take();
    auto* replacement = add("a");
    EXPECT_EQ(viewport->getActiveCamera(), replacement);
    EXPECT_EQ(viewport->getNumberOfCameras(), 1u);
    EXPECT_EQ(journal.take(), (Lines{"camera2.create", "camera1.destroy"}));
    EXPECT_EQ(replacement->panZoomMatrix, Imath::M44d()) << "taking over recomputes nothing";
}

TEST_F(ViewportCameras, activeCameraMayBeAnotherViewports) {
    const auto another = makeViewport("another");
    auto* foreign = another->addCamera("Recording", "a");
    viewport->setActiveCamera(foreign);
    EXPECT_EQ(viewport->getActiveCamera(), foreign);
    another->removeCamera(foreign);
    EXPECT_EQ(viewport->getActiveCamera(), nullptr) << "a camera that ends is active nowhere";
}

TEST_F(ViewportCameras, activeCameraMayBeNone) {
    viewport->setActiveCamera(add("a"));
    viewport->setActiveCamera(nullptr);
    EXPECT_EQ(viewport->getActiveCamera(), nullptr);
    viewport->removeCameraByName("a");
    EXPECT_EQ(viewport->getNumberOfCameras(), 0u);
}

TEST_F(ViewportCameras, endOfAViewportForgetsItInAForeignCamera) {
    auto* camera = add("a");
    {
        const auto another = makeViewport("another");
        another->setActiveCamera(camera);
    }
    // The camera must not write to the viewport that is gone.
    viewport->removeCamera(camera);
    EXPECT_TRUE(plugins.instance("camera1").isDestroyed);
}

TEST_F(ViewportCameras, matricesWithoutAnActiveCameraAreTheIdentity) {
    const Imath::M44d identity;
    EXPECT_TRUE(
        std::equal(identity.getValue(), identity.getValue() + 16, viewport->getViewMatrix()));
    EXPECT_TRUE(
        std::equal(identity.getValue(), identity.getValue() + 16, viewport->getProjectionMatrix()));
}

TEST_F(ViewportCameras, matricesAreTheActiveCameras) {
    auto* camera = add("a");
    viewport->setActiveCamera(camera);
    EXPECT_EQ(viewport->getViewMatrix(), camera->getViewMatrix());
    EXPECT_EQ(viewport->getProjectionMatrix(), camera->getProjectionMatrix());
    viewport->setPanAndZoomActive(true);
    EXPECT_EQ(viewport->getProjectionMatrix(), camera->getProjectionMatrix());
}

} // namespace
} // namespace ViewerAPI::test
