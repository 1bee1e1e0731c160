#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>

namespace ViewerAPI {

/// What it takes to cook one proxy. Two jobs are the same exactly when their keys are equal.
struct ProxyJob {
    std::uint64_t key = 0;
    VlAttribute::GroupAttribute proxyAttrs; ///< the location's `proxies`
    VlAttribute::GroupAttribute systemArgs; ///< with the time at which the proxy is shown
};

/// The job of a location with these `proxies`, while the application has these system args (null
/// counts as empty).
///
/// `static` 1 fixes the time at 1, `currentFrame` at that frame; otherwise it is the application's,
/// but not before `firstFrame` and not after `lastFrame`. Locations that load the same at the same
/// time have the same job, however that time came about.
[[nodiscard]] ProxyJob makeProxyJob(const VlAttribute::GroupAttribute& proxyAttrs,
                                    const VlAttribute::GroupAttribute& systemArgs);

} // namespace ViewerAPI
