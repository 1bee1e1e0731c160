#include "plugininstance.h"

#include "pluginentries.h"

#include "VlLogging/VlLoggerGlue.h"
#include "VlPluginSystem/PluginManager.h"

#include <array>
#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <string>

namespace ViewerAPI {
namespace {

constexpr const char* kQuoteStop = "'.";

/// In the order of PluginKind. A delegate's third text writes the kind as two words. Viewports and
/// cameras name the version in their first text, because theirs is the interface that plug-ins are
/// most often built against in another version.
constexpr std::array<PluginKindInfo, 7> kPluginKinds{{
    {"ViewerDelegatePlugin", 3, "Couldn't load ViewerDelegate plugin type '", kQuoteStop,
     "Error getting ViewerDelegate plugin suite for '",
     "Failed to create Viewer Delegate plugin instance for '"},
    {"ViewerDelegateComponentPlugin", 2, "Couldn't load ViewerDelegateComponent plugin type '",
     kQuoteStop, "Error getting ViewerDelegateComponent plugin suite for '",
     "Failed to create ViewerDelegateComponent plugin instance for '"},
    {"ViewportPlugin", 2, "Couldn't load Viewport plugin type '", "' v2.",
     "Error getting Viewport plugin suite for '",
     "Failed to create Viewport plugin instance for '"},
    {"ViewportLayerPlugin", 2, "Couldn't load ViewportLayer plugin type '", kQuoteStop,
     "Error getting ViewportLayer plugin suite for '",
     "Failed to create ViewportLayer plugin instance for '"},
    {"ViewportCameraPlugin", 2, "Couldn't load ViewportCamera plugin type '",
     "'. The API version of the plugin might not match the one currently supported: v2. In that "
     "case the plugin needs to be recompiled and linked against this version of Ostrel.",
     "Error getting ViewportCamera plugin suite for '",
     "Failed to create ViewportCamera plugin instance for '"},
    {"ManipulatorPlugin", 2, "Couldn't load Manipulator plugin type '", kQuoteStop,
     "Error getting Manipulator plugin suite for '",
     "Failed to create Manipulator plugin instance for '"},
    {"ManipulatorHandlePlugin", 1, "Couldn't load ManipulatorHandle plugin type '", kQuoteStop,
     "Error getting ManipulatorHandle plugin suite for '",
     "Failed to create ManipulatorHandle plugin instance for '"},
}};

[[noreturn]] void throwText(const char* prefix, std::string_view pluginName, const char* suffix) {
    std::ostringstream text;
    text << prefix << pluginName << suffix;
    throw std::runtime_error(text.str());
}

} // namespace

const PluginKindInfo& pluginKindInfo(PluginKind kind) {
    return kPluginKinds[static_cast<std::size_t>(kind)];
}

const void* loadPluginSuite(PluginKind kind, std::string_view pluginName) {
    const PluginKindInfo& info = pluginKindInfo(kind);
    const VlPluginRecord* const plugin =
        PluginManager::getPlugin(info.typeName, pluginName, info.apiVersion);
    if (!plugin) {
        throwText(info.notLoadedPrefix, pluginName, info.notLoadedSuffix);
    }
    return PluginManager::getPluginSuite(plugin);
}

const void* findPluginSuite(PluginKind kind, std::string_view pluginName) {
    const void* const suite = loadPluginSuite(kind, pluginName);
    const char* const prefix = pluginKindInfo(kind).noSuitePrefix;
    if (!suite) {
        throwText(prefix, pluginName, kQuoteStop);
    }
    if (const std::string missing = getMissingEntries(kind, suite); !missing.empty()) {
        throwText(prefix, pluginName, ("': it lacks the functions " + missing + ".").c_str());
    }
    return suite;
}

void throwPluginCreateFailed(PluginKind kind, std::string_view pluginName) {
    throwText(pluginKindInfo(kind).createFailedPrefix, pluginName, kQuoteStop);
}

void logPluginDestroyFailed(const char* reason) noexcept {
    try {
        static const VlLoggerGlue logger("ViewerAPI.PluginInstance");
        if (logger.errorEnabled()) {
            logger.error(std::string("A plug-in threw from its destroy entry: ") + reason,
                         "viewer_api/src/plugininstance", __LINE__);
        }
    } catch (...) {
        // A destructor is under way: there is nobody left to tell.
    }
}

} // namespace ViewerAPI
