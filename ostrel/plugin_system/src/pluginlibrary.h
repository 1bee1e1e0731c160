#pragma once

#include "viewer_api/VlPlugin.h"

#include <string>

/// A plug-in library while it is being loaded. Closes the library when it ends, unless keep() was
/// called.
class PluginLibrary {
public:
    /// Opens the file. Throws std::runtime_error with the reason.
    explicit PluginLibrary(const std::string& path);
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    /// The same for every opening of the same file while the library is in the process.
    [[nodiscard]] void* getHandle() const noexcept { return handle; }

    /// Finds the three entries and gives the library its host. Throws std::runtime_error with the
    /// reason when one is missing or the host is refused.
    void connect();

    /// Registers the library's plug-ins; how many. What is passed over is written to `complaints`,
    /// which stays empty when all is well.
    int registerPlugins(std::string& complaints) const;

    /// Leaves the library in the process for good.
    void keep() noexcept { isKept = true; }

private:
    template <class Function>
    Function* findEntry(const char* name) const;

    void* handle;
    bool isKept = false;
    decltype(&vlSetPluginHost) setPluginHost = nullptr;
    decltype(&vlGetNumberOfPlugins) getNumberOfPlugins = nullptr;
    decltype(&vlGetPlugin) getPlugin = nullptr;
};
