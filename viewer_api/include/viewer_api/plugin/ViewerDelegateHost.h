#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/PathList.h"
#include "viewer_api/plugin/Triple.h"

#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace ViewerPlugin {

/// The delegate's host object, typed: one method per entry of `ViewerDelegateHostSuite`, which
/// documents them. A value as light as a pointer; it owns nothing. The constructor throws when the
/// host doesn't offer the suite. [ui-thread]
class ViewerDelegateHost {
public:
    using Attribute = VlAttribute::Attribute;
    using DoubleAttribute = VlAttribute::DoubleAttribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    using StringAttribute = VlAttribute::StringAttribute;
    using Paths = std::span<const std::string>;

    /// How much of a location's transform `getPartialXform` takes in besides the named component.
    struct PartialXformScope {
        bool component = true;
        bool parentXform = true;
        bool groupsBefore = true;
        bool groupsAfter = false;
    };

    explicit ViewerDelegateHost(VlViewerDelegateHandle host)
        : handle(host), suite(&requireHostSuite<ViewerDelegateHostSuite>()) {}

    [[nodiscard]] VlViewerDelegateHandle getHandle() const noexcept { return handle; }

    int setViewOp(int opId) const { return suite->setViewOp(handle, opId); }

    [[nodiscard]] GroupAttribute getAttributes(const std::string& path,
                                               VlSceneView view = kVlViewerDelegatePrimary) const {
        return group(suite->getAttributes(handle, path.c_str(), view));
    }
    [[nodiscard]] GroupAttribute
    getLiveAttributes(const std::string& path, VlSceneView view = kVlViewerDelegatePrimary) const {
        return group(suite->getLiveAttributes(handle, path.c_str(), view));
    }
    [[nodiscard]] GroupAttribute
    getCookedAttributes(const std::string& path,
                        VlSceneView view = kVlViewerDelegatePrimary) const {
        return group(suite->getCookedAttributes(handle, path.c_str(), view));
    }
    /// The matrix, and whether it is absolute.
    [[nodiscard]] std::pair<DoubleAttribute, bool>
    getLocalXform(const std::string& path, VlSceneView view = kVlViewerDelegatePrimary) const {
        std::uint8_t isAbsolute = 0;
        DoubleAttribute matrix =
            doubles(suite->getLocalXform(handle, path.c_str(), &isAbsolute, view));
        return {std::move(matrix), isAbsolute != 0};
    }
    [[nodiscard]] DoubleAttribute getWorldXform(const std::string& path,
                                                VlSceneView view = kVlViewerDelegatePrimary) const {
        return doubles(suite->getWorldXform(handle, path.c_str(), view));
    }
    [[nodiscard]] DoubleAttribute
    getParentXform(const std::string& path, VlSceneView view = kVlViewerDelegatePrimary) const {
        return doubles(suite->getParentXform(handle, path.c_str(), view));
    }
    [[nodiscard]] DoubleAttribute
    getPartialXform(const std::string& path, const std::string& groupName,
                    const std::string& componentName, const PartialXformScope& scope,
                    VlSceneView view = kVlViewerDelegatePrimary) const {
        return doubles(suite->getPartialXform(
            handle, path.c_str(), groupName.c_str(), componentName.c_str(), scope.component, view,
            scope.parentXform, scope.groupsBefore, scope.groupsAfter));
    }

    void openLocations(Paths paths) const { each(suite->openLocations, paths); }
    void closeLocations(Paths paths) const { each(suite->closeLocations, paths); }
    void pinLocations(Paths paths) const { each(suite->pinLocations, paths); }
    void unpinLocations(Paths paths) const { each(suite->unpinLocations, paths); }
    void activateSourceLocations(Paths paths) const { each(suite->activateSourceLocations, paths); }
    void deactivateSourceLocations(Paths paths) const {
        each(suite->deactivateSourceLocations, paths);
    }
    void hideLocations(Paths paths) const { each(suite->hideLocations, paths); }
    void unhideLocations(Paths paths) const { each(suite->unhideLocations, paths); }
    void unhideAllLocations() const { suite->unhideAllLocations(handle); }
    [[nodiscard]] StringAttribute getHiddenLocations() const {
        return strings(suite->getHiddenLocations(handle));
    }
    [[nodiscard]] StringAttribute getDescendantLocations(const std::string& path) const {
        return strings(suite->getDescendantLocations(handle, path.c_str()));
    }

    void setWorkingSetVisibilityEnabled(bool enabled) const {
        suite->setWorkingSetVisibilityEnabled(handle, enabled);
    }
    [[nodiscard]] bool getWorkingSetVisibilityEnabled() const {
        return suite->getWorkingSetVisibilityEnabled(handle) != 0;
    }
    void setVisibilityWorkingSet(const GroupAttribute& workingSet) const {
        suite->setVisibilityWorkingSet(handle, workingSet.getHandle());
    }

    void selectLocation(const std::string& path) const {
        suite->selectLocation(handle, path.c_str());
    }
    void selectLocations(Paths paths) const { each(suite->selectLocations, paths); }
    [[nodiscard]] StringAttribute getSelectedLocations() const {
        return strings(suite->getSelectedLocations(handle));
    }

    [[nodiscard]] GroupAttribute getCompatibleManipulatorsInfo(Paths paths) const {
        PathList list(paths);
        return group(suite->getCompatibleManipulatorsInfo(handle, list.data(), list.size()));
    }
    Attribute callPythonCallback(const std::string& name, const Attribute& value = {}) const {
        return Attribute::CreateAndSteal(
            suite->callPythonCallback(handle, name.c_str(), value.getHandle()));
    }

    Triple addComponent(const std::string& pluginName, const std::string& name) const {
        Triple found;
        suite->addComponent(handle, pluginName.c_str(), name.c_str(), &found.host, &found.instance,
                            &found.suite);
        return found;
    }
    Triple insertComponent(const std::string& pluginName, const std::string& name,
                           std::uint32_t index) const {
        Triple found;
        suite->insertComponent(handle, pluginName.c_str(), name.c_str(), index, &found.host,
                               &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getComponent(const std::string& name) const {
        Triple found;
        suite->getComponent(handle, name.c_str(), &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getComponentByIndex(std::uint32_t index) const {
        Triple found;
        suite->getComponentByIndex(handle, index, &found.host, &found.instance, &found.suite);
        return found;
    }
    void removeComponent(const std::string& name) const {
        suite->removeComponent(handle, name.c_str());
    }
    void removeComponentByIndex(std::uint32_t index) const {
        suite->removeComponentByIndex(handle, index);
    }
    [[nodiscard]] std::uint32_t getNumberOfComponents() const {
        return suite->getNumberOfComponents(handle);
    }
    [[nodiscard]] std::string getComponentName(std::uint32_t index) const {
        return suite->getComponentName(handle, index);
    }
    [[nodiscard]] int getComponentIndex(const std::string& name) const {
        return suite->getComponentIndex(handle, name.c_str());
    }

    void addViewport(VlViewportHandle viewport, const std::string& name) const {
        suite->addViewport(handle, viewport, name.c_str());
    }
    [[nodiscard]] Triple getViewport(const std::string& name) const {
        Triple found;
        suite->getViewport(handle, name.c_str(), &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getViewportByIndex(std::uint32_t index) const {
        Triple found;
        suite->getViewportByIndex(handle, index, &found.host, &found.instance, &found.suite);
        return found;
    }
    void removeViewport(const std::string& name) const {
        suite->removeViewport(handle, name.c_str());
    }
    void removeViewportByIndex(std::uint32_t index) const {
        suite->removeViewportByIndex(handle, index);
    }
    [[nodiscard]] std::uint32_t getNumberOfViewports() const {
        return suite->getNumberOfViewports(handle);
    }
    [[nodiscard]] std::string getViewportName(std::uint32_t index) const {
        return suite->getViewportName(handle, index);
    }

    bool setManipulatedAttribute(const std::string& path, const std::string& name,
                                 const Attribute& value, bool isFinal) const {
        return suite->setManipulatedAttribute(handle, path.c_str(), name.c_str(), value.getHandle(),
                                              isFinal) != 0;
    }
    void openManipulationGroup(const std::string& path) const {
        suite->openManipulationGroup(handle, path.c_str());
    }
    void closeManipulationGroup(const std::string& path) const {
        suite->closeManipulationGroup(handle, path.c_str());
    }

    void setBoundingBoxesEnabled(bool enabled) const {
        suite->setBoundingBoxesEnabled(handle, enabled);
    }
    void setProxyGeometryEnabled(bool enabled) const {
        suite->setProxyGeometryEnabled(handle, enabled);
    }
    [[nodiscard]] bool isProcessing() const { return suite->isProcessing(handle) != 0; }

    /// `excludePath` "" excludes nothing.
    [[nodiscard]] DoubleAttribute computeMergedExtent(Paths paths,
                                                      const std::string& excludePath = {}) const {
        PathList list(paths);
        return doubles(suite->computeMergedExtent(
            handle, list.data(), list.size(), excludePath.empty() ? nullptr : excludePath.c_str()));
    }

private:
    void each(void (*entry)(VlViewerDelegateHandle, const char**, std::uint32_t),
              Paths paths) const {
        PathList list(paths);
        entry(handle, list.data(), list.size());
    }
    static GroupAttribute group(VlAttributeStruct* stolen) {
        return GroupAttribute(Attribute::CreateAndSteal(stolen));
    }
    static DoubleAttribute doubles(VlAttributeStruct* stolen) {
        return DoubleAttribute(Attribute::CreateAndSteal(stolen));
    }
    static StringAttribute strings(VlAttributeStruct* stolen) {
        return StringAttribute(Attribute::CreateAndSteal(stolen));
    }

    VlViewerDelegateHandle handle;
    const ViewerDelegateHostSuite* suite;
};

} // namespace ViewerPlugin
