#pragma once

#include "viewer_api/VlPlugin.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The plug-ins and host suites of the process. [any-thread]
class PluginRegistry {
public:
    /// Never destroyed: plug-ins may ask for suites while the process ends.
    static PluginRegistry& get();

    PluginRegistry(const PluginRegistry&) = delete;
    PluginRegistry& operator=(const PluginRegistry&) = delete;

    /// Copies the record, whose texts must not be null. False when its kind, name and version are
    /// there already.
    bool addPlugin(const VlPluginRecord& record);
    bool removePlugin(std::string_view typeName, std::string_view name, std::uint32_t apiVersion);
    [[nodiscard]] const VlPluginRecord* findPlugin(std::string_view typeName, std::string_view name,
                                                   std::uint32_t apiVersion) const;
    [[nodiscard]] std::vector<std::string> pluginNames(std::string_view typeName,
                                                       std::uint32_t apiVersion) const;

    void setHostSuite(const void* suite, std::string_view name, std::uint32_t version);
    [[nodiscard]] const void* findHostSuite(std::string_view name, std::uint32_t version) const;

private:
    // Where a record's texts live. Neither moves once made, as records are handed out.
    struct Plugin {
        explicit Plugin(const VlPluginRecord& source);

        std::string typeName;
        std::string name;
        VlPluginRecord record;
    };

    PluginRegistry() = default;

    mutable std::mutex mutex;
    std::vector<std::unique_ptr<const Plugin>> plugins; // in the order of registration
    std::map<std::pair<std::string, std::uint32_t>, const void*> hostSuites;
};
