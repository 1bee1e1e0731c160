#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace VlAttribute {

/// A view of text that is followed by a zero byte.
class CStringView : public std::string_view {
public:
    constexpr CStringView() noexcept : std::string_view("", 0) {}
    /// `text[length]` must be 0.
    constexpr CStringView(const char* text, std::size_t length) noexcept
        : std::string_view(text, length) {}

    [[nodiscard]] constexpr const char* c_str() const noexcept { return data(); }
    [[nodiscard]] std::string str() const { return std::string(*this); }
};

/// The strings of one sample of a `StringAttribute`: a view that lives as long as any handle on
/// the attribute.
class StringSample {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = CStringView;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = CStringView;

        Iterator() noexcept = default;
        Iterator(const StringSample* owner, std::size_t position) noexcept
            : sample(owner), index(position) {}
        CStringView operator*() const noexcept { return (*sample)[index]; }
        Iterator& operator++() noexcept {
            ++index;
            return *this;
        }
        Iterator operator++(int) noexcept {
            Iterator before = *this;
            ++index;
            return before;
        }
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        const StringSample* sample = nullptr;
        std::size_t index = 0;
    };

    StringSample() noexcept = default;
    /// The strings `first` to `first + stringCount - 1` of `text`. String i ends at
    /// `stringEnds[i]`, where its zero byte stands, and begins behind the one before it.
    StringSample(const char* text, const std::uint32_t* stringEnds, std::size_t first,
                 std::size_t stringCount) noexcept
        : characters(text), ends(stringEnds), offset(first), count(stringCount) {}

    [[nodiscard]] std::size_t size() const noexcept { return count; }
    [[nodiscard]] bool empty() const noexcept { return count == 0; }
    /// `index` must be below size().
    [[nodiscard]] CStringView operator[](std::size_t index) const noexcept {
        const std::size_t at = offset + index;
        const std::size_t begin = at == 0 ? 0 : ends[at - 1] + std::size_t{1};
        return {characters + begin, ends[at] - begin};
    }
    [[nodiscard]] CStringView front() const noexcept { return (*this)[0]; }
    [[nodiscard]] Iterator begin() const noexcept { return {this, 0}; }
    [[nodiscard]] Iterator end() const noexcept { return {this, count}; }

private:
    const char* characters = nullptr;
    const std::uint32_t* ends = nullptr;
    std::size_t offset = 0;
    std::size_t count = 0;
};

} // namespace VlAttribute
