#pragma once

#include <string>

namespace ViewerAPI {

/// A text that a plug-in passed; a null pointer counts as the empty text.
inline std::string textOf(const char* text) {
    return text ? std::string(text) : std::string();
}

/// Writes host object, plug-in instance and plug-in suite of a host object, or three nulls.
template <class Host>
void writeTriple(Host* object, void** host, void** instance, const void** suite) {
    *host = object;
    *instance = object ? object->instance : nullptr;
    *suite = object ? object->suite : nullptr;
}

} // namespace ViewerAPI
