#include "locationpath.h"

#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

namespace ViewerAPI {

LocationPath::LocationPath(std::string_view text) {
    if (text.empty()) {
        return;
    }
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("LocationPath: a path of " + std::to_string(text.size()) +
                                " characters");
    }
    void* memory = ::operator new(sizeof(Block) + text.size() + 1);
    block_ = new (memory) Block{1, static_cast<std::uint32_t>(text.size())};
    std::memcpy(LocationPath::text(block_), text.data(), text.size());
    LocationPath::text(block_)[text.size()] = '\0';
}

std::ostream& operator<<(std::ostream& out, const LocationPath& path) {
    return out << path.view();
}

} // namespace ViewerAPI
