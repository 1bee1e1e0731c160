#include "ops/import/safename.h"

#include <algorithm>

namespace VlScenelibEngine {

std::string safeName(std::string_view text, std::string_view fallback) {
    constexpr std::size_t kLongest = 255;
    std::size_t length = std::min(text.size(), kLongest);
    const auto isContinuation = [&](std::size_t at) { // of a UTF-8 sequence
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    while (length > 0 && isContinuation(length)) {
        --length;
    }
    std::string name(text.substr(0, length));
    for (char& c : name) {
        if (c == '/' || c == '.' || static_cast<unsigned char>(c) < ' ' || c == '\x7F') {
            c = '_';
        }
    }
    return name.empty() ? std::string(fallback) : name;
}

std::string SiblingNames::unique(const std::string& name) {
    const auto [entry, isNew] = nextNumbers.try_emplace(name, 2);
    if (isNew) {
        return name;
    }
    // References to the map's content outlive what is added to it.
    std::size_t& number = entry->second;
    std::string candidate;
    do {
        candidate = name + "_" + std::to_string(number++);
    } while (!nextNumbers.try_emplace(candidate, 2).second);
    return candidate;
}

} // namespace VlScenelibEngine
