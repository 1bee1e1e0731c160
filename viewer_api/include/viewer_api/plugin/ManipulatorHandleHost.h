#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/Triple.h"

#include <cstdint>

namespace ViewerPlugin {

/// A manipulator handle's host object, typed: one method per entry of `ManipulatorHandleHostSuite`,
/// which documents them. A manipulator makes one from the host of a handle's triple to drive that
/// handle. A value as light as a pointer; it owns nothing. The constructor throws when the host
/// doesn't offer the suite. [ui-thread]
class ManipulatorHandleHost {
public:
    using Attribute = VlAttribute::Attribute;
    using DoubleAttribute = VlAttribute::DoubleAttribute;
    using GroupAttribute = VlAttribute::GroupAttribute;

    explicit ManipulatorHandleHost(VlManipulatorHandleHandle host)
        : handle(host), suite(&requireHostSuite<ManipulatorHandleHostSuite>()) {}

    [[nodiscard]] VlManipulatorHandleHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] Triple getManipulator() const {
        Triple found;
        suite->getManipulator(handle, &found.host, &found.instance, &found.suite);
        return found;
    }

    [[nodiscard]] DoubleAttribute getCombinedXform() const {
        return doubles(suite->getCombinedXform(handle));
    }
    void setLocalXform(const DoubleAttribute& xform) const {
        suite->setLocalXform(handle, xform.getHandle());
    }
    /// Null until it is set.
    [[nodiscard]] DoubleAttribute getLocalXform() const {
        return doubles(suite->getLocalXform(handle));
    }

    bool event(const GroupAttribute& event) const {
        return suite->event(handle, event.getHandle()) != 0;
    }
    /// [gl-current]
    void draw() const { suite->draw(handle); }
    /// [gl-current]
    void pickerDraw(std::uint64_t pickerId) const { suite->pickerDraw(handle, pickerId); }
    void notifyPlugin() const { suite->notifyPlugin(handle); }

    bool setEngaged(bool engaged) const { return suite->setEngaged(handle, engaged) != 0; }
    [[nodiscard]] bool isEngaged() const { return suite->isEngaged(handle) != 0; }
    bool setMarked(bool marked) const { return suite->setMarked(handle, marked) != 0; }
    [[nodiscard]] bool isMarked() const { return suite->isMarked(handle) != 0; }

private:
    static DoubleAttribute doubles(VlAttributeStruct* stolen) {
        return DoubleAttribute(Attribute::CreateAndSteal(stolen));
    }

    VlManipulatorHandleHandle handle;
    const ManipulatorHandleHostSuite* suite;
};

} // namespace ViewerPlugin
