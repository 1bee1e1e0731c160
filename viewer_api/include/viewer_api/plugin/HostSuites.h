#pragma once

#include "viewer_api/ManipulatorHandleHostSuite.h"
#include "viewer_api/ManipulatorHostSuite.h"
#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/ViewerDelegateComponentHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewportCameraHostSuite.h"
#include "viewer_api/ViewportHostSuite.h"
#include "viewer_api/ViewportLayerHostSuite.h"
#include "viewer_api/VlPlugin.h"

#include <cstdint>
#include <stdexcept>
#include <string>

/// The C++ layer for authors of plug-ins: a base class per kind of plug-in, typed wrappers over the
/// host suites, and one line that registers a class. Header-only, over the C tables alone.
namespace ViewerPlugin {

/// The host that this library was opened by. [any-thread]
inline const VlPluginHost*& pluginHost() noexcept {
    static const VlPluginHost* host = nullptr;
    return host;
}

/// The name and version under which the host offers a suite.
template <typename Suite>
struct SuiteKey;

template <>
struct SuiteKey<ViewerDelegateHostSuite> {
    static constexpr const char* name = VL_VIEWER_DELEGATE_HOST_SUITE;
    static constexpr std::uint32_t version = VL_VIEWER_DELEGATE_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ViewerDelegateComponentHostSuite> {
    static constexpr const char* name = VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE;
    static constexpr std::uint32_t version = VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ViewportHostSuite> {
    static constexpr const char* name = VL_VIEWPORT_HOST_SUITE;
    static constexpr std::uint32_t version = VL_VIEWPORT_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ViewportLayerHostSuite> {
    static constexpr const char* name = VL_VIEWPORT_LAYER_HOST_SUITE;
    static constexpr std::uint32_t version = VL_VIEWPORT_LAYER_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ViewportCameraHostSuite> {
    static constexpr const char* name = VL_VIEWPORT_CAMERA_HOST_SUITE;
    static constexpr std::uint32_t version = VL_VIEWPORT_CAMERA_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ManipulatorHostSuite> {
    static constexpr const char* name = VL_MANIPULATOR_HOST_SUITE;
    static constexpr std::uint32_t version = VL_MANIPULATOR_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<ManipulatorHandleHostSuite> {
    static constexpr const char* name = VL_MANIPULATOR_HANDLE_HOST_SUITE;
    static constexpr std::uint32_t version = VL_MANIPULATOR_HANDLE_HOST_SUITE_VERSION;
};

template <>
struct SuiteKey<OptionIdGeneratorHostSuite> {
    static constexpr const char* name = VL_OPTION_ID_GENERATOR_HOST_SUITE;
    static constexpr std::uint32_t version = VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION;
};

/// A suite that a plug-in can do without: null when the host has none. Asks the host every time.
/// [any-thread]
template <typename Suite>
const Suite* findHostSuite() {
    if (!pluginHost()) {
        return nullptr;
    }
    return static_cast<const Suite*>(
        pluginHost()->getSuite(SuiteKey<Suite>::name, SuiteKey<Suite>::version));
}

/// A suite that a plug-in can't do without, asked for once per process. Throws
/// std::runtime_error with the suite's name and version when the host has none; from a plug-in's
/// constructor this becomes the failure to create it. [any-thread]
template <typename Suite>
const Suite& requireHostSuite() {
    static const Suite& suite = []() -> const Suite& {
        const Suite* found = findHostSuite<Suite>();
        if (!found) {
            throw std::runtime_error("The host offers no suite \"" +
                                     std::string(SuiteKey<Suite>::name) + "\" version " +
                                     std::to_string(SuiteKey<Suite>::version) + ".");
        }
        return *found;
    }();
    return suite;
}

} // namespace ViewerPlugin
