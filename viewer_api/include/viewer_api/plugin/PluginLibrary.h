#pragma once

#include "viewer_api/plugin/HostSuites.h"

#include <cstddef>
#include <vector>

namespace ViewerPlugin {

/// The plug-ins of this library, in order of registration. Filled while the library loads, before
/// its entry points can be called.
inline std::vector<VlPluginRecord>& pluginRecords() {
    static std::vector<VlPluginRecord> records;
    return records;
}

/// Adds a class to the records; `name` must live as long as the library.
template <typename Plugin>
bool registerPlugin(const char* name) {
    pluginRecords().push_back(
        {Plugin::typeName, name, Plugin::apiVersion, &Plugin::template table<Plugin>});
    return true;
}

} // namespace ViewerPlugin

/// Registers a class that derives from one of the base classes of this folder, under the name by
/// which the application asks for it. Stands in a source file, outside all namespaces, as often as
/// the library has plug-ins; the library's entry points come with it.
#define VL_REGISTER_PLUGIN(Class, name)                                                            \
    [[maybe_unused]] static const bool VL_REGISTERED_AT(__LINE__) =                                \
        ::ViewerPlugin::registerPlugin<Class>(name)
#define VL_REGISTERED_AT(line) VL_REGISTERED_AT_(line)
#define VL_REGISTERED_AT_(line) vlRegistered##line

// The entry points, once per library however many of its sources register something: inline, but
// kept although nothing in the library calls them.
#define VL_LIBRARY_ENTRY extern "C" [[gnu::used]] VL_PLUGIN_EXPORT inline

VL_LIBRARY_ENTRY int vlGetNumberOfPlugins(void) {
    return static_cast<int>(ViewerPlugin::pluginRecords().size());
}

VL_LIBRARY_ENTRY const VlPluginRecord* vlGetPlugin(int index) {
    const auto& records = ViewerPlugin::pluginRecords();
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < records.size() ? &records[place] : nullptr;
}

VL_LIBRARY_ENTRY int vlSetPluginHost(const VlPluginHost* host) {
    if (!host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION)) {
        return 1;
    }
    ViewerPlugin::pluginHost() = host;
    return 0;
}

#undef VL_LIBRARY_ENTRY
