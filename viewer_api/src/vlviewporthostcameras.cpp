// The viewport's cameras: its list of them, the active one, and the pan and zoom that act on it.

#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace ViewerAPI {

VlViewportCameraHostStruct* VlViewportHostStruct::addCamera(const std::string& pluginName,
                                                            const std::string& cameraName) {
    HostCall call(*this);
    std::unique_ptr<VlViewportCameraHostStruct, RetireHostObject> created(
        new VlViewportCameraHostStruct(pluginName, this));
    VlViewportCameraHostStruct* camera = created.get();
    const auto found = cameraIndexByName.find(cameraName);
    if (found != cameraIndexByName.end() && found->second < cameras.size()) {
        // Removal passes over the active camera, so the new one takes over first; it has no
        // projection yet that pan and zoom could be applied to.
        const uint32_t index = found->second;
        if (cameras[index] == activeCamera) {
            storeActiveCamera(camera);
        }
        removeCameraByIndex(index);
    }
    cameras.reserve(cameras.size() + 1);
    cameraIndexByName[cameraName] = getNumberOfCameras();
    cameras.push_back(created.release());
    return camera;
}

void VlViewportHostStruct::storeActiveCamera(VlViewportCameraHostStruct* camera) {
    if (activeCamera) {
        std::erase(activeCamera->activeIn_, this);
    }
    activeCamera = camera;
    if (camera) {
        camera->activeIn_.push_back(this);
    }
}

void VlViewportHostStruct::setActiveCamera(VlViewportCameraHostStruct* camera) {
    storeActiveCamera(camera);
    updateActiveCamera();
}

VlViewportCameraHostStruct*
VlViewportHostStruct::getCameraByName(const std::string& cameraName) const {
    const int index = getCameraIndex(cameraName);
    return index < 0 ? nullptr : getCameraByIndex(static_cast<uint32_t>(index));
}

VlViewportCameraHostStruct* VlViewportHostStruct::getCameraByIndex(uint32_t index) const {
    return index < cameras.size() ? cameras[index] : nullptr;
}

void VlViewportHostStruct::removeCameraByName(const std::string& cameraName) {
    const int index = getCameraIndex(cameraName);
    if (index >= 0) {
        removeCameraByIndex(static_cast<uint32_t>(index));
    }
}

void VlViewportHostStruct::removeCameraByIndex(uint32_t index) {
    if (index > cameras.size()) {
        return;
    }
    // Callers tell "one past the end" from "far out" by this error.
    if (index == cameras.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    if (cameras[index] == activeCamera) {
        return;
    }
    HostCall call(*this);
    std::unique_ptr<VlViewportCameraHostStruct, RetireHostObject> camera(cameras[index]);
    cameras.erase(cameras.begin() + index);
    auto ended = cameraIndexByName.end();
    for (auto entry = cameraIndexByName.begin(); entry != cameraIndexByName.end(); ++entry) {
        if (entry->second == index) {
            ended = entry;
        } else if (entry->second > index) {
            --entry->second;
        }
    }
    if (ended != cameraIndexByName.end()) {
        cameraIndexByName.erase(ended);
    }
}

void VlViewportHostStruct::removeCamera(const VlViewportCameraHostStruct* camera) {
    const auto found = std::ranges::find(cameras, camera);
    if (found != cameras.end()) {
        removeCameraByIndex(static_cast<uint32_t>(found - cameras.begin()));
    }
}

uint32_t VlViewportHostStruct::getNumberOfCameras() const {
    return static_cast<uint32_t>(cameras.size());
}

const char* VlViewportHostStruct::getCameraName(uint32_t index) const {
    for (const auto& [cameraName, cameraIndex] : cameraIndexByName) {
        if (cameraIndex == index) {
            return cameraName.c_str();
        }
    }
    return "";
}

int VlViewportHostStruct::getCameraIndex(const std::string& cameraName) const {
    const auto found = cameraIndexByName.find(cameraName);
    return found == cameraIndexByName.end() ? -1 : static_cast<int>(found->second);
}

const double* VlViewportHostStruct::getViewMatrix() const {
    return activeCamera ? activeCamera->getViewMatrix() : fallbackViewMatrix.getValue();
}

const double* VlViewportHostStruct::getProjectionMatrix() const {
    return activeCamera ? activeCamera->getProjectionMatrix() : fallbackProjectionMatrix.getValue();
}

void VlViewportHostStruct::setHorizontalOffset(float offset) {
    horizontalOffset = offset;
    updateActiveCamera();
}

void VlViewportHostStruct::setVerticalOffset(float offset) {
    verticalOffset = offset;
    updateActiveCamera();
}

void VlViewportHostStruct::setZoom(float factor) {
    zoom = factor;
    updateActiveCamera();
}

void VlViewportHostStruct::setPanAndZoomActive(bool isActive) {
    isPanAndZoomActive = isActive;
    updateActiveCamera();
}

void VlViewportHostStruct::updateActiveCamera() {
    if (activeCamera) {
        activeCamera->updatePanZoomProjection();
    }
}

void VlViewportHostStruct::leaveCameras() {
    storeActiveCamera(nullptr);
    for (VlViewportCameraHostStruct* camera : cameras) {
        camera->leaveViewport();
    }
}

} // namespace ViewerAPI
