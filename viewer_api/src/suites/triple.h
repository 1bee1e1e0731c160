#pragma once

namespace ViewerAPI {

/// Writes a host object, its plug-in instance and its plug-in suite to the three places of a suite
/// entry; three nulls for no object.
template <class Host>
void writeTriple(Host* object, void** host, void** instance, const void** suite) {
    *host = object;
    if constexpr (requires { object->pluginHandle; }) {
        *instance = object ? object->pluginHandle : nullptr;
        *suite = object ? object->pluginSuite : nullptr;
    } else if constexpr (requires { object->pluginInstance; }) {
        *instance = object ? object->pluginInstance : nullptr;
        *suite = object ? object->pluginSuite : nullptr;
    } else {
        *instance = object ? object->instance : nullptr;
        *suite = object ? object->suite : nullptr;
    }
}

} // namespace ViewerAPI
