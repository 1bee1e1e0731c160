#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/PickRegion.h"
#include "viewer_api/plugin/Triple.h"

#include <cstdint>
#include <span>
#include <string>

namespace ViewerPlugin {

/// The viewport's host object, typed: one method per entry of `ViewportHostSuite`, which documents
/// them. A value as light as a pointer; it owns nothing. The constructor throws when the host
/// doesn't offer the suite. [ui-thread]
class ViewportHost {
public:
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    /// 16 doubles for row vectors, in the host; see the entries for how long.
    using MatrixView = std::span<const double, 16>;

    explicit ViewportHost(VlViewportHandle host)
        : handle(host), suite(&requireHostSuite<ViewportHostSuite>()) {}

    [[nodiscard]] VlViewportHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] std::string getName() const { return suite->getName(handle); }
    [[nodiscard]] Triple getViewerDelegate() const {
        Triple found;
        suite->getViewerDelegate(handle, &found.host, &found.instance, &found.suite);
        return found;
    }

    [[nodiscard]] Triple getActiveCamera() const {
        Triple found;
        suite->getActiveCamera(handle, &found.host, &found.instance, &found.suite);
        return found;
    }
    void setActiveCamera(VlViewportCameraHandle camera) const {
        suite->setActiveCamera(handle, camera);
    }
    Triple addCamera(const std::string& pluginName, const std::string& name) const {
        Triple found;
        suite->addCamera(handle, pluginName.c_str(), name.c_str(), &found.host, &found.instance,
                         &found.suite);
        return found;
    }
    void removeCamera(VlViewportCameraHandle camera) const { suite->removeCamera(handle, camera); }
    void removeCameraByName(const std::string& name) const {
        suite->removeCameraByName(handle, name.c_str());
    }
    void removeCameraByIndex(std::uint32_t index) const {
        suite->removeCameraByIndex(handle, index);
    }
    [[nodiscard]] Triple getCameraByName(const std::string& name) const {
        Triple found;
        suite->getCameraByName(handle, name.c_str(), &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getCameraByIndex(std::uint32_t index) const {
        Triple found;
        suite->getCameraByIndex(handle, index, &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] std::uint32_t getNumberOfCameras() const {
        return suite->getNumberOfCameras(handle);
    }
    [[nodiscard]] std::string getCameraName(std::uint32_t index) const {
        return suite->getCameraName(handle, index);
    }
    [[nodiscard]] int getCameraIndex(const std::string& name) const {
        return suite->getCameraIndex(handle, name.c_str());
    }

    bool event(const GroupAttribute& event) const {
        return suite->event(handle, event.getHandle()) != 0;
    }
    void draw() const { suite->draw(handle); }
    void resize(int width, int height) const { suite->resize(handle, width, height); }
    [[nodiscard]] int getWidth() const { return suite->getWidth(handle); }
    [[nodiscard]] int getHeight() const { return suite->getHeight(handle); }
    [[nodiscard]] bool isDirty() const { return suite->isDirty(handle) != 0; }
    void setDirty(bool dirty) const { suite->setDirty(handle, dirty); }

    Triple addLayer(const std::string& pluginName, const std::string& name) const {
        Triple found;
        suite->addLayer(handle, pluginName.c_str(), name.c_str(), &found.host, &found.instance,
                        &found.suite);
        return found;
    }
    Triple insertLayer(const std::string& pluginName, const std::string& name,
                       std::uint32_t index) const {
        Triple found;
        suite->insertLayer(handle, pluginName.c_str(), name.c_str(), index, &found.host,
                           &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getLayer(const std::string& name) const {
        Triple found;
        suite->getLayer(handle, name.c_str(), &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getLayerByIndex(std::uint32_t index) const {
        Triple found;
        suite->getLayerByIndex(handle, index, &found.host, &found.instance, &found.suite);
        return found;
    }
    void removeLayer(const std::string& name) const { suite->removeLayer(handle, name.c_str()); }
    void removeLayerByIndex(std::uint32_t index) const { suite->removeLayerByIndex(handle, index); }
    [[nodiscard]] std::uint32_t getNumberOfLayers() const {
        return suite->getNumberOfLayers(handle);
    }
    [[nodiscard]] std::string getLayerName(std::uint32_t index) const {
        return suite->getLayerName(handle, index);
    }
    [[nodiscard]] int getLayerIndex(const std::string& name) const {
        return suite->getLayerIndex(handle, name.c_str());
    }

    [[nodiscard]] MatrixView getViewMatrix() const {
        return MatrixView(suite->getViewMatrix(handle), 16);
    }
    [[nodiscard]] MatrixView getProjectionMatrix() const {
        return MatrixView(suite->getProjectionMatrix(handle), 16);
    }

    void activateManipulator(const std::string& pluginName,
                             const VlAttribute::StringAttribute& locationPaths) const {
        suite->activateManipulator(handle, pluginName.c_str(), locationPaths.getHandle());
    }
    void deactivateManipulator(const std::string& pluginName) const {
        suite->deactivateManipulator(handle, pluginName.c_str());
    }
    void deactivateAllManipulators() const { suite->deactivateAllManipulators(handle); }
    [[nodiscard]] std::uint32_t getNumberOfActiveManipulators() const {
        return suite->getNumberOfActiveManipulators(handle);
    }
    [[nodiscard]] Triple getActiveManipulatorByIndex(std::uint32_t index) const {
        Triple found;
        suite->getActiveManipulatorByIndex(handle, index, &found.host, &found.instance,
                                           &found.suite);
        return found;
    }
    [[nodiscard]] Triple getActiveManipulator(const std::string& pluginName) const {
        Triple found;
        suite->getActiveManipulator(handle, pluginName.c_str(), &found.host, &found.instance,
                                    &found.suite);
        return found;
    }

    bool makeGLContextCurrent() const { return suite->makeGLContextCurrent(handle) != 0; }
    bool doneGLContextCurrent() const { return suite->doneGLContextCurrent(handle) != 0; }
    [[nodiscard]] bool isGLContextCurrent() const { return suite->isGLContextCurrent(handle) != 0; }
    bool initializeGLContext() const { return suite->initializeGLContext(handle) != 0; }
    void enableCapability(std::uint32_t capability) const {
        suite->enableCapability(handle, capability);
    }
    void disableCapability(std::uint32_t capability) const {
        suite->disableCapability(handle, capability);
    }

    std::uint64_t addPickableObject(const Attribute& object) const {
        return suite->addPickableObject(handle, object.getHandle());
    }
    /// `depth` may be null; see the entry for when it is written.
    [[nodiscard]] GroupAttribute getPickedObjects(const PickRegion& region, bool deepPicking,
                                                  float* depth = nullptr) const {
        return GroupAttribute(Attribute::CreateAndSteal(suite->getPickedObjects(
            handle, region.x, region.y, region.width, region.height, deepPicking, depth)));
    }

    void setViewFrozen(bool frozen) const { suite->setViewFrozen(handle, frozen); }
    [[nodiscard]] bool isViewFrozen() const { return suite->isViewFrozen(handle) != 0; }
    void setPanAndZoomActive(bool active) const { suite->setPanAndZoomActive(handle, active); }
    [[nodiscard]] bool isPanAndZoomActive() const { return suite->isPanAndZoomActive(handle) != 0; }

private:
    VlViewportHandle handle;
    const ViewportHostSuite* suite;
};

} // namespace ViewerPlugin
