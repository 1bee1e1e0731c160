#include "VlPluginSystem/PluginManager.h"

#include "pluginregistry.h"

namespace {

// Called from C: what it can throw for want of memory becomes "unknown".
const void* getSuite(const char* name, std::uint32_t version) {
    try {
        return name ? PluginManager::getHostSuite(name, version) : nullptr;
    } catch (...) {
        return nullptr;
    }
}

constexpr VlPluginHost kHost = {&getSuite};

} // namespace

namespace PluginManager {

const VlPluginRecord* getPlugin(std::string_view typeName, std::string_view name,
                                std::uint32_t apiVersion) {
    return PluginRegistry::get().findPlugin(typeName, name, apiVersion);
}

const void* getPluginSuite(const VlPluginRecord* plugin) noexcept {
    return plugin ? plugin->suite : nullptr;
}

void getPluginNames(std::string_view typeName, std::vector<std::string>& names,
                    std::uint32_t apiVersion) {
    names = PluginRegistry::get().pluginNames(typeName, apiVersion);
}

const void* getHostSuite(std::string_view name, std::uint32_t version) {
    if (name == VL_PLUGIN_HOST_SUITE) {
        return version == VL_PLUGIN_API_VERSION ? &kHost : nullptr;
    }
    return PluginRegistry::get().findHostSuite(name, version);
}

const VlPluginHost* getHost() noexcept {
    return &kHost;
}

} // namespace PluginManager
