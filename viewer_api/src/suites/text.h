#pragma once

namespace ViewerAPI {

/// A text argument of a suite entry, with null as the empty text: no path, no name of a plug-in.
inline const char* textOf(const char* text) {
    return text ? text : "";
}

} // namespace ViewerAPI
