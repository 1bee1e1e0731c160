#pragma once

#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/Triple.h"

namespace ViewerPlugin {

/// The component's host object, typed; see `ViewerDelegateComponentHostSuite`. The constructor
/// throws when the host doesn't offer the suite. [ui-thread]
class ViewerDelegateComponentHost {
public:
    explicit ViewerDelegateComponentHost(VlViewerDelegateComponentHandle host)
        : handle(host), suite(&requireHostSuite<ViewerDelegateComponentHostSuite>()) {}

    [[nodiscard]] VlViewerDelegateComponentHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] Triple getViewerDelegate() const {
        Triple found;
        suite->getViewerDelegate(handle, &found.host, &found.instance, &found.suite);
        return found;
    }

private:
    VlViewerDelegateComponentHandle handle;
    const ViewerDelegateComponentHostSuite* suite;
};

} // namespace ViewerPlugin
