#pragma once

#include <cstdint>
#include <exception>
#include <string_view>

namespace ViewerAPI {

/// The seven kinds of plug-in that the viewer makes instances of.
enum class PluginKind {
    ViewerDelegate,
    ViewerDelegateComponent,
    Viewport,
    ViewportLayer,
    ViewportCamera,
    Manipulator,
    ManipulatorHandle
};

/// What tells one kind from another when an instance is made.
struct PluginKindInfo {
    /// Type name under which the plug-in manager lists the kind.
    const char* typeName;
    /// Version asked of the plug-in. It need not be that of the host suite that the plug-in uses,
    /// which it fetches by itself.
    std::uint32_t apiVersion;
    /// Failure texts: each is prefix + plug-in name + suffix.
    const char* notLoadedPrefix;
    const char* notLoadedSuffix;
    const char* noSuitePrefix;
    const char* createFailedPrefix;
};

[[nodiscard]] const PluginKindInfo& pluginKindInfo(PluginKind kind);

/// The suite of a registered plug-in, borrowed from the plug-in manager for the process's life;
/// null when the plug-in has none. Throws std::runtime_error with the kind's text when it is not
/// there. [ui-thread]
[[nodiscard]] const void* loadPluginSuite(PluginKind kind, std::string_view pluginName);

/// The same, where having no suite, or one with an entry missing, is an error too: with the kind's
/// text, and the names of what is missing.
[[nodiscard]] const void* findPluginSuite(PluginKind kind, std::string_view pluginName);

/// Throws the kind's text for a create entry that answered null.
[[noreturn]] void throwPluginCreateFailed(PluginKind kind, std::string_view pluginName);

/// Logs that a plug-in threw from its destroy entry, the one place where an exception can't travel.
void logPluginDestroyFailed(const char* reason) noexcept;

/// Makes a plug-in instance for a host object. `Suite` is the kind's table, `host` the pointer
/// that the plug-in passes to its host suite. `suite` and `instance` are the host object's fields:
/// the suite is stored before the create entry runs, since the plug-in may call back from there.
/// Throws std::runtime_error, and whatever the create entry throws; the instance is null then, and
/// there is nothing to destroy. [ui-thread]
template <class Suite>
void createPluginInstance(PluginKind kind, std::string_view pluginName, void* host,
                          const Suite*& suite, void*& instance) {
    instance = nullptr;
    suite = static_cast<const Suite*>(findPluginSuite(kind, pluginName));
    instance = suite->create(host);
    if (!instance) {
        throwPluginCreateFailed(kind, pluginName);
    }
}

/// Gives an instance back through the suite's destroy entry, from a host object's destructor.
/// Nothing happens without an instance. An exception ends here, with a logged line. [ui-thread]
template <class Suite>
void destroyPluginInstance(const Suite* suite, void*& instance) noexcept {
    if (!suite || !instance) {
        return;
    }
    void* const ended = instance;
    instance = nullptr;
    try {
        suite->destroy(ended);
    } catch (const std::exception& error) {
        logPluginDestroyFailed(error.what());
    } catch (...) {
        logPluginDestroyFailed("unknown C++ exception");
    }
}

} // namespace ViewerAPI
