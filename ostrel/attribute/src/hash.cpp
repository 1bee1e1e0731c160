#include "VlAttribute/Hash.h"

namespace VlAttribute {

std::string Hash::str() const {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(32);
    for (const std::uint64_t word : {first, second}) {
        for (int shift = 60; shift >= 0; shift -= 4) {
            text += kDigits[(word >> shift) & 0xf];
        }
    }
    return text;
}

} // namespace VlAttribute
