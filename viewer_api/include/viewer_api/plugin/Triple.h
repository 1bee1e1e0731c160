#pragma once

namespace ViewerPlugin {

/// How the host hands out another plug-in: its host object, its instance and its suite; all null
/// when there is none. Nothing is owned.
struct Triple {
    void* host = nullptr;
    void* instance = nullptr;
    const void* suite = nullptr;

    explicit operator bool() const noexcept { return host != nullptr; }
    friend bool operator==(const Triple&, const Triple&) = default;
};

/// The C++ object behind a triple when it is of class `Plugin`, one that this library registered;
/// otherwise null. The suite tells: each class has a table of its own. Borrowed from the host.
template <typename Plugin>
Plugin* pluginCast(const Triple& triple) noexcept {
    if (!triple.instance || triple.suite != &Plugin::template table<Plugin>) {
        return nullptr;
    }
    return static_cast<Plugin*>(static_cast<typename Plugin::Kind*>(triple.instance));
}

} // namespace ViewerPlugin
