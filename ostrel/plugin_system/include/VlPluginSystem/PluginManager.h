#pragma once

#include "viewer_api/VlPlugin.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Finds plug-ins and host suites. The registry lives for the process; VlPluginSystem fills it.
/// [any-thread]
namespace PluginManager {

/// The plug-in of exactly this kind, name and version; null when there is none. The record is the
/// registry's, and always the same one for the same plug-in.
[[nodiscard]] const VlPluginRecord* getPlugin(std::string_view typeName, std::string_view name,
                                              std::uint32_t apiVersion);

/// The plug-in's table. Null for a null record and for a plug-in that has none.
[[nodiscard]] const void* getPluginSuite(const VlPluginRecord* plugin) noexcept;

/// Replaces `names` by those of all plug-ins of the kind and version, in the order in which they
/// were registered.
void getPluginNames(std::string_view typeName, std::vector<std::string>& names,
                    std::uint32_t apiVersion);

/// The host suite of exactly this name and version; null when there is none.
[[nodiscard]] const void* getHostSuite(std::string_view name, std::uint32_t version);

/// What plug-in libraries are given as their host: getHostSuite as a C table. Lasts for the
/// process, never null. Offers itself under VL_PLUGIN_HOST_SUITE.
[[nodiscard]] const VlPluginHost* getHost() noexcept;

} // namespace PluginManager
