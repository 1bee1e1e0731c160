#include "pluginlibrary.h"

#include "VlPluginSystem/PluginManager.h"
#include "pluginkinds.h"
#include "pluginregistry.h"

#include <dlfcn.h>
#include <link.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

// A library that claims more has surely gone wrong.
constexpr int kMaximumPlugins = 1 << 16;

// One log line names this many complaints and counts the others.
constexpr std::size_t kNamedComplaints = 8;

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

// The dynamic loader begins its texts with the file's name, which ours have already.
std::string loaderError(const std::string& file) {
    const char* const text = dlerror();
    std::string error = text ? text : "unknown error";
    const std::string prefix = file + ": ";
    if (error.starts_with(prefix)) {
        error.erase(0, prefix.size());
    }
    return error;
}

// Calls an entry of the library. What it throws becomes a std::runtime_error that names the entry.
template <class Function, class... Arguments>
auto call(const char* entry, Function* function, Arguments... arguments) {
    try {
        return function(arguments...);
    } catch (const std::exception& exception) {
        throw std::runtime_error(std::string(entry) + " threw " + quoted(exception.what()));
    } catch (...) {
        throw std::runtime_error(std::string(entry) + " threw an exception");
    }
}

// Empty when the record may be registered, otherwise why not.
std::string findFault(const VlPluginRecord* record) {
    if (!record) {
        return "is null";
    }
    if (!record->typeName || !*record->typeName) {
        return "has no type name";
    }
    if (!record->name || !*record->name) {
        return "has no name";
    }
    const auto version = spokenVersion(record->typeName);
    if (version && *version != record->apiVersion) {
        return "is " + std::string(record->typeName) + " " + quoted(record->name) + " in version " +
               std::to_string(record->apiVersion) + ", and only version " +
               std::to_string(*version) + " is spoken here";
    }
    return {};
}

// Looking a name up in a library finds those of the libraries that it depends on as well.
bool isDefinedBy(void* library, void* address) {
    link_map* own = nullptr;
    void* owner = nullptr;
    Dl_info information{};
    return dlinfo(library, RTLD_DI_LINKMAP, &own) == 0 &&
           dladdr1(address, &information, &owner, RTLD_DL_LINKMAP) != 0 && owner == own;
}

std::string joined(const std::vector<std::string>& complaints) {
    std::string result;
    for (std::size_t i = 0; i < complaints.size() && i < kNamedComplaints; ++i) {
        result += (i ? "; " : "") + complaints[i];
    }
    if (complaints.size() > kNamedComplaints) {
        result += "; and " + std::to_string(complaints.size() - kNamedComplaints) + " more";
    }
    return result;
}

} // namespace

PluginLibrary::PluginLibrary(const std::string& path) : handle(nullptr) {
    // The loader searches its own folders for a name without a slash, and opens the program itself
    // for an empty one.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    // It also waits for ever on a pipe.
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (path.empty() || status.type() == std::filesystem::file_type::not_found) {
        throw std::runtime_error("no such file");
    }
    if (status.type() == std::filesystem::file_type::none) {
        throw std::runtime_error(error.message());
    }
    if (status.type() == std::filesystem::file_type::directory) {
        throw std::runtime_error("it is a directory");
    }
    if (status.type() != std::filesystem::file_type::regular) {
        throw std::runtime_error("it is no regular file");
    }
    handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        throw std::runtime_error(loaderError(file));
    }
}

PluginLibrary::~PluginLibrary() {
    if (!isKept) {
        dlclose(handle);
    }
}

template <class Function>
Function* PluginLibrary::findEntry(const char* name) const {
    void* const address = dlsym(handle, name);
    if (!address || !isDefinedBy(handle, address)) {
        throw std::runtime_error("it lacks the entry " + std::string(name));
    }
    return reinterpret_cast<Function*>(address);
}

void PluginLibrary::connect() {
    setPluginHost = findEntry<std::remove_pointer_t<decltype(setPluginHost)>>("vlSetPluginHost");
    getNumberOfPlugins =
        findEntry<std::remove_pointer_t<decltype(getNumberOfPlugins)>>("vlGetNumberOfPlugins");
    getPlugin = findEntry<std::remove_pointer_t<decltype(getPlugin)>>("vlGetPlugin");
    const int answer = call("vlSetPluginHost", setPluginHost, PluginManager::getHost());
    if (answer != 0) {
        throw std::runtime_error("it refuses this host, which speaks version " +
                                 std::to_string(VL_PLUGIN_API_VERSION) +
                                 " (vlSetPluginHost answered " + std::to_string(answer) + ")");
    }
}

int PluginLibrary::registerPlugins(std::string& complaints) const {
    std::vector<std::string> found;
    int registered = 0;
    try {
        const int count = call("vlGetNumberOfPlugins", getNumberOfPlugins);
        if (count < 0 || count > kMaximumPlugins) {
            throw std::runtime_error("it claims " + std::to_string(count) + " plug-ins");
        }
        for (int i = 0; i < count; ++i) {
            const VlPluginRecord* const record = call("vlGetPlugin", getPlugin, i);
            std::string fault = findFault(record);
            if (fault.empty() && !PluginRegistry::get().addPlugin(*record)) {
                fault = "is " + std::string(record->typeName) + " " + quoted(record->name) +
                        ", which is there already";
            }
            if (fault.empty()) {
                ++registered;
            } else {
                found.push_back("record " + std::to_string(i) + " " + fault);
            }
        }
    } catch (const std::runtime_error& error) {
        found.emplace_back(error.what());
    }
    complaints = joined(found);
    return registered;
}
