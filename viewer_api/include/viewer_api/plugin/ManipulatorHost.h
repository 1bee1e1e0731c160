#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/Triple.h"

#include <cstdint>
#include <string>

namespace ViewerPlugin {

/// A manipulator's host object, typed: one method per entry of `ManipulatorHostSuite`, which
/// documents them. A viewport or layer makes one from the host of a manipulator's triple to drive
/// that manipulator. A value as light as a pointer; it owns nothing. The constructor throws when
/// the host doesn't offer the suite. [ui-thread]
class ManipulatorHost {
public:
    using Attribute = VlAttribute::Attribute;
    using DoubleAttribute = VlAttribute::DoubleAttribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    using StringAttribute = VlAttribute::StringAttribute;

    explicit ManipulatorHost(VlManipulatorHandle host)
        : handle(host), suite(&requireHostSuite<ManipulatorHostSuite>()) {}

    [[nodiscard]] VlManipulatorHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] std::string getPluginName() const { return suite->getPluginName(handle); }
    [[nodiscard]] Triple getViewport() const {
        Triple found;
        suite->getViewport(handle, &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] StringAttribute getLocationPaths() const {
        return StringAttribute(Attribute::CreateAndSteal(suite->getLocationPaths(handle)));
    }
    [[nodiscard]] bool isEditable() const { return suite->isEditable(handle) != 0; }

    bool event(const GroupAttribute& event) const {
        return suite->event(handle, event.getHandle()) != 0;
    }
    /// [gl-current]
    bool draw() const { return suite->draw(handle) != 0; }
    /// [gl-current]
    bool pickerDraw(std::uint64_t pickerId) const {
        return suite->pickerDraw(handle, pickerId) != 0;
    }

    [[nodiscard]] DoubleAttribute getXform() const { return doubles(suite->getXform(handle)); }
    void setXform(const DoubleAttribute& xform) const {
        suite->setXform(handle, xform.getHandle());
    }
    [[nodiscard]] DoubleAttribute calculateXform() const {
        return doubles(suite->calculateXform(handle));
    }

    [[nodiscard]] Attribute getValue(const std::string& path, const std::string& name) const {
        return Attribute::CreateAndSteal(suite->getValue(handle, path.c_str(), name.c_str()));
    }
    bool setValue(const std::string& path, const std::string& name, const Attribute& value,
                  bool isFinal) const {
        return suite->setValue(handle, path.c_str(), name.c_str(), value.getHandle(), isFinal) != 0;
    }
    void openManipulationGroup(const std::string& path) const {
        suite->openManipulationGroup(handle, path.c_str());
    }
    void closeManipulationGroup(const std::string& path) const {
        suite->closeManipulationGroup(handle, path.c_str());
    }

    Triple addManipulatorHandle(const std::string& pluginName, const std::string& name) const {
        Triple found;
        suite->addManipulatorHandle(handle, pluginName.c_str(), name.c_str(), &found.host,
                                    &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] Triple getManipulatorHandle(const std::string& name) const {
        Triple found;
        suite->getManipulatorHandle(handle, name.c_str(), &found.host, &found.instance,
                                    &found.suite);
        return found;
    }
    [[nodiscard]] Triple getManipulatorHandleByIndex(std::uint32_t index) const {
        Triple found;
        suite->getManipulatorHandleByIndex(handle, index, &found.host, &found.instance,
                                           &found.suite);
        return found;
    }
    void removeManipulatorHandle(const std::string& name) const {
        suite->removeManipulatorHandle(handle, name.c_str());
    }
    void removeManipulatorHandleByIndex(std::uint32_t index) const {
        suite->removeManipulatorHandleByIndex(handle, index);
    }
    [[nodiscard]] std::uint32_t getNumberOfManipulatorHandles() const {
        return suite->getNumberOfManipulatorHandles(handle);
    }
    [[nodiscard]] std::string getManipulatorHandleName(std::uint32_t index) const {
        return suite->getManipulatorHandleName(handle, index);
    }

    /// Of every manipulator plug-in there is; asks no manipulator.
    [[nodiscard]] static GroupAttribute getRegisteredManipulatorsInfo() {
        return GroupAttribute(Attribute::CreateAndSteal(
            requireHostSuite<ManipulatorHostSuite>().getRegisteredManipulatorsInfo()));
    }

private:
    static DoubleAttribute doubles(VlAttributeStruct* stolen) {
        return DoubleAttribute(Attribute::CreateAndSteal(stolen));
    }

    VlManipulatorHandle handle;
    const ManipulatorHostSuite* suite;
};

} // namespace ViewerPlugin
