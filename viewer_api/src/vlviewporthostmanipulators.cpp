// The viewport's active manipulators, at most one of each plug-in.

#include "stringvalues.h"
#include "vlmanipulatorhost.h"
#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace ViewerAPI {

namespace {

constexpr const char* kActiveManipulatorsChanged = "__ACTIVE_MANIPULATORS_CHANGED";

} // namespace

void VlViewportHostStruct::activateManipulator(const std::string& pluginName,
                                               const VlAttribute::StringAttribute& locationPaths,
                                               bool signal) {
    const HostCall call(*this);
    makeGLContextCurrent();
    if (getActiveManipulator(pluginName)) {
        return;
    }
    std::unique_ptr<VlManipulatorHostStruct, RetireHostObject> created(
        new VlManipulatorHostStruct(pluginName, this, toStrings(locationPaths)));
    // The plug-in may have activated itself once more while it was made.
    if (getActiveManipulator(pluginName)) {
        return;
    }
    activeManipulators.push_back(created.get());
    created.release();
    if (signal) {
        signalActiveManipulatorsChanged(pluginName);
    }
}

void VlViewportHostStruct::deactivateManipulator(const std::string& pluginName, bool signal) {
    const HostCall call(*this);
    makeGLContextCurrent();
    VlManipulatorHostStruct* const manipulator = getActiveManipulator(pluginName);
    if (!manipulator) {
        return;
    }
    // The name may be the manipulator's own.
    const std::string endedName = pluginName;
    std::erase(activeManipulators, manipulator);
    HostObject::retire(manipulator);
    if (signal) {
        signalActiveManipulatorsChanged(endedName);
    }
}

void VlViewportHostStruct::deactivateAllManipulators(bool signal) {
    if (activeManipulators.empty()) {
        return;
    }
    const HostCall call(*this);
    endManipulators();
    if (signal) {
        signalActiveManipulatorsChanged("");
    }
}

void VlViewportHostStruct::endManipulators() {
    // A destroy entry may still look at the list, and even add to it.
    while (!activeManipulators.empty()) {
        makeGLContextCurrent();
        for (VlManipulatorHostStruct* const manipulator : std::exchange(activeManipulators, {})) {
            HostObject::retire(manipulator);
        }
    }
}

void VlViewportHostStruct::signalActiveManipulatorsChanged(const std::string& manipulatorName) {
    const VlAttribute::GroupAttribute change{
        {"viewportName", VlAttribute::StringAttribute(name)},
        {"manipulatorName", VlAttribute::StringAttribute(manipulatorName)}};
    if (viewerDelegate) {
        viewerDelegate->callPythonCallback(kActiveManipulatorsChanged, change);
    }
}

uint32_t VlViewportHostStruct::getNumberOfActiveManipulators() const {
    return static_cast<uint32_t>(activeManipulators.size());
}

VlManipulatorHostStruct* VlViewportHostStruct::getActiveManipulatorByIndex(uint32_t index) const {
    return index < activeManipulators.size() ? activeManipulators[index] : nullptr;
}

VlManipulatorHostStruct*
VlViewportHostStruct::getActiveManipulator(const std::string& pluginName) const {
    const auto found = std::ranges::find_if(activeManipulators, [&](const auto* manipulator) {
        return manipulator->pluginName == pluginName;
    });
    return found == activeManipulators.end() ? nullptr : *found;
}

void VlViewportHostStruct::onLocationChanged(const std::string& path,
                                             const VlAttribute::GroupAttribute& attributes) {
    if (activeManipulators.empty()) {
        return;
    }
    const HostCall call(*this);
    // The application, which is asked what may be edited, may activate and deactivate meanwhile.
    const std::vector<VlManipulatorHostStruct*> snapshot = activeManipulators;
    for (VlManipulatorHostStruct* const manipulator : snapshot) {
        if (std::ranges::find(activeManipulators, manipulator) != activeManipulators.end() &&
            manipulator->onLocationChanged(path, attributes)) {
            setDirty(true);
        }
    }
}

} // namespace ViewerAPI
