#include "pluginkinds.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"

namespace {

struct PluginKind {
    std::string_view typeName;
    std::uint32_t version;
};

constexpr PluginKind kKinds[] = {
    {VL_VIEWER_DELEGATE_PLUGIN_TYPE, VL_VIEWER_DELEGATE_PLUGIN_API_VERSION},
    {VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE, VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION},
    {VL_VIEWPORT_PLUGIN_TYPE, VL_VIEWPORT_PLUGIN_API_VERSION},
    {VL_VIEWPORT_LAYER_PLUGIN_TYPE, VL_VIEWPORT_LAYER_PLUGIN_API_VERSION},
    {VL_VIEWPORT_CAMERA_PLUGIN_TYPE, VL_VIEWPORT_CAMERA_PLUGIN_API_VERSION},
    {VL_MANIPULATOR_PLUGIN_TYPE, VL_MANIPULATOR_PLUGIN_API_VERSION},
    {VL_MANIPULATOR_HANDLE_PLUGIN_TYPE, VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION},
};

} // namespace

std::optional<std::uint32_t> spokenVersion(std::string_view typeName) noexcept {
    for (const PluginKind& kind : kKinds) {
        if (kind.typeName == typeName) {
            return kind.version;
        }
    }
    return std::nullopt;
}
