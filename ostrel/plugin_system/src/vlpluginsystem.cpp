#include "VlPluginSystem/VlPluginSystem.h"

#include "VlLogging/VlLoggerGlue.h"
#include "pluginlibrary.h"
#include "pluginregistry.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace {

constexpr const char* kSource = "ostrel/plugin_system/src/vlpluginsystem";

const VlLoggerGlue& logger() {
    static const auto* const glue = new VlLoggerGlue("VlPluginSystem");
    return *glue;
}

// Always one line, whatever the names and reasons contain.
void logError(std::string text, int line) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    logger().error(text, kSource, line);
}

// The libraries that were taken, by handle, and how many plug-ins each brought. Loading is
// serialised; the mutex is recursive because a library may load others when it gets its host.
struct LoadedLibraries {
    std::recursive_mutex mutex;
    std::map<void*, int> counts;
};

LoadedLibraries& loadedLibraries() {
    static auto* const libraries = new LoadedLibraries;
    return *libraries;
}

int load(const std::string& path) {
    LoadedLibraries& loaded = loadedLibraries();
    const std::lock_guard lock(loaded.mutex);
    PluginLibrary library(path);
    const auto [entry, isNew] = loaded.counts.try_emplace(library.getHandle(), 0);
    if (!isNew) {
        return entry->second;
    }
    try {
        library.connect();
    } catch (...) {
        loaded.counts.erase(entry);
        throw;
    }
    library.keep();
    std::string complaints;
    const int count = library.registerPlugins(complaints);
    if (!complaints.empty()) {
        logError((count ? "Passed over plug-ins of library '" : "Skipped plug-in library '") +
                     path + "': " + complaints + ".",
                 __LINE__);
    }
    entry->second = count;
    return count;
}

} // namespace

namespace VlPluginSystem {

void addHostSuite(const void* suite, std::string_view name, std::uint32_t version) {
    PluginRegistry::get().setHostSuite(suite, name, version);
}

int loadLibrary(const std::string& path) {
    try {
        return load(path);
    } catch (const std::runtime_error& error) {
        logError("Skipped plug-in library '" + path + "': " + error.what() + ".", __LINE__);
        return 0;
    }
}

int loadDirectory(const std::string& path) {
    std::vector<std::string> files;
    try {
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            if (entry.path().extension() == ".so" && !entry.is_directory()) {
                files.push_back(entry.path().string());
            }
        }
    } catch (const std::filesystem::filesystem_error& error) {
        logError("Skipped plug-in directory '" + path + "': " + error.code().message() + ".",
                 __LINE__);
        return 0;
    }
    std::sort(files.begin(), files.end());
    int count = 0;
    for (const std::string& file : files) {
        count += loadLibrary(file);
    }
    return count;
}

bool registerPlugin(const VlPluginRecord& record) {
    if (!record.typeName || !record.name) {
        logError("Passed over a plug-in without a type name or a name.", __LINE__);
        return false;
    }
    if (!PluginRegistry::get().addPlugin(record)) {
        logError("Passed over " + std::string(record.typeName) + " '" + record.name +
                     "': it is there already.",
                 __LINE__);
        return false;
    }
    return true;
}

bool unregisterPlugin(std::string_view typeName, std::string_view name, std::uint32_t apiVersion) {
    return PluginRegistry::get().removePlugin(typeName, name, apiVersion);
}

} // namespace VlPluginSystem
