#include "pluginregistry.h"

namespace {

bool matches(const VlPluginRecord& record, std::string_view typeName, std::string_view name,
             std::uint32_t apiVersion) {
    return record.apiVersion == apiVersion && record.name == name && record.typeName == typeName;
}

} // namespace

PluginRegistry::Plugin::Plugin(const VlPluginRecord& source)
    : typeName(source.typeName),
      name(source.name), record{typeName.c_str(), name.c_str(), source.apiVersion, source.suite} {}

PluginRegistry& PluginRegistry::get() {
    static auto* const registry = new PluginRegistry;
    return *registry;
}

bool PluginRegistry::addPlugin(const VlPluginRecord& record) {
    auto plugin = std::make_unique<const Plugin>(record);
    const std::lock_guard lock(mutex);
    for (const auto& present : plugins) {
        if (matches(present->record, record.typeName, record.name, record.apiVersion)) {
            return false;
        }
    }
    plugins.push_back(std::move(plugin));
    return true;
}

bool PluginRegistry::removePlugin(std::string_view typeName, std::string_view name,
                                  std::uint32_t apiVersion) {
    const std::lock_guard lock(mutex);
    return std::erase_if(plugins, [&](const auto& plugin) {
               return matches(plugin->record, typeName, name, apiVersion);
           }) != 0;
}

const VlPluginRecord* PluginRegistry::findPlugin(std::string_view typeName, std::string_view name,
                                                 std::uint32_t apiVersion) const {
    const std::lock_guard lock(mutex);
    for (const auto& plugin : plugins) {
        if (matches(plugin->record, typeName, name, apiVersion)) {
            return &plugin->record;
        }
    }
    return nullptr;
}

std::vector<std::string> PluginRegistry::pluginNames(std::string_view typeName,
                                                     std::uint32_t apiVersion) const {
    std::vector<std::string> names;
    const std::lock_guard lock(mutex);
    for (const auto& plugin : plugins) {
        if (plugin->record.apiVersion == apiVersion && plugin->typeName == typeName) {
            names.push_back(plugin->name);
        }
    }
    return names;
}

void PluginRegistry::setHostSuite(const void* suite, std::string_view name, std::uint32_t version) {
    const std::lock_guard lock(mutex);
    std::pair key(std::string(name), version);
    if (suite) {
        hostSuites.insert_or_assign(std::move(key), suite);
    } else {
        hostSuites.erase(key);
    }
}

const void* PluginRegistry::findHostSuite(std::string_view name, std::uint32_t version) const {
    const std::lock_guard lock(mutex);
    const auto found = hostSuites.find(std::pair(std::string(name), version));
    return found == hostSuites.end() ? nullptr : found->second;
}
