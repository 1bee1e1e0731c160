#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

namespace ViewerAPI {

/// The path of a location as an immutable text that its holders share. One pointer wide; a copy
/// costs one plain addition, so that change records can name their location without copying its
/// path, and keep the name also when the location is gone.
///
/// The count of holders isn't atomic: all holders of a path live on one thread. [ui-thread]
class LocationPath {
public:
    /// The empty path.
    LocationPath() noexcept = default;
    explicit LocationPath(std::string_view text);
    LocationPath(const LocationPath& other) noexcept : block_(other.block_) {
        if (block_) {
            ++block_->holders;
        }
    }
    LocationPath(LocationPath&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    LocationPath& operator=(LocationPath other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~LocationPath() {
        if (block_ && --block_->holders == 0) {
            ::operator delete(block_);
        }
    }

    /// Valid as long as any holder of this path.
    [[nodiscard]] std::string_view view() const noexcept {
        return block_ ? std::string_view(text(block_), block_->length) : std::string_view();
    }
    /// The same, closed by a null character; never null.
    [[nodiscard]] const char* c_str() const noexcept { return block_ ? text(block_) : ""; }
    [[nodiscard]] std::string str() const { return std::string(view()); }
    [[nodiscard]] bool empty() const noexcept { return view().empty(); }
    operator std::string_view() const noexcept { return view(); }

    friend bool operator==(const LocationPath& left, const LocationPath& right) noexcept {
        return left.block_ == right.block_ || left.view() == right.view();
    }
    friend bool operator==(const LocationPath& left, std::string_view right) noexcept {
        return left.view() == right;
    }

    /// What stands before the last "/" of a path; empty for a root ("/root") and for a text
    /// without "/".
    [[nodiscard]] static std::string_view parentOf(std::string_view path) noexcept {
        const std::size_t slash = path.rfind('/');
        return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
    }

    /// Whether the location is the one at `path` or lies below it.
    [[nodiscard]] static bool isAtOrBelow(std::string_view location,
                                          std::string_view path) noexcept {
        return location.starts_with(path) &&
               (location.size() == path.size() || location[path.size()] == '/');
    }

private:
    /// Followed in memory by the text and a null character.
    struct Block {
        std::uint32_t holders;
        std::uint32_t length;
    };
    static char* text(Block* block) noexcept { return reinterpret_cast<char*>(block + 1); }

    Block* block_ = nullptr;
};

std::ostream& operator<<(std::ostream& out, const LocationPath& path);

} // namespace ViewerAPI
