#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/PickRegion.h"
#include "viewer_api/plugin/Triple.h"

#include <cstdint>

namespace ViewerPlugin {

/// A layer's host object, typed; see `ViewportLayerHostSuite`. A viewport plug-in makes one from
/// the host of a layer's triple to drive that layer. The constructor throws when the host doesn't
/// offer the suite. [ui-thread]
class ViewportLayerHost {
public:
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;

    explicit ViewportLayerHost(VlViewportLayerHandle host)
        : handle(host), suite(&requireHostSuite<ViewportLayerHostSuite>()) {}

    [[nodiscard]] VlViewportLayerHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] Triple getViewport() const {
        Triple found;
        suite->getViewport(handle, &found.host, &found.instance, &found.suite);
        return found;
    }
    bool event(const GroupAttribute& event) const {
        return suite->event(handle, event.getHandle()) != 0;
    }
    /// [gl-current]
    void draw() const { suite->draw(handle); }
    /// [gl-current]
    void hover(bool isHovering, int x, int y) const { suite->hover(handle, isHovering, x, y); }
    std::uint64_t addPickableObject(const Attribute& object) const {
        return suite->addPickableObject(handle, object.getHandle());
    }
    /// `depth` may be null; see the entry for when it is written.
    [[nodiscard]] GroupAttribute getPickedObjects(const PickRegion& region, bool deepPicking,
                                                  float* depth = nullptr) const {
        return GroupAttribute(Attribute::CreateAndSteal(suite->getPickedObjects(
            handle, region.x, region.y, region.width, region.height, deepPicking, depth)));
    }

private:
    VlViewportLayerHandle handle;
    const ViewportLayerHostSuite* suite;
};

} // namespace ViewerPlugin
