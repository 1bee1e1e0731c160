#include "optionidgenerator.h"

#include "VlAttribute/StringAttribute.h"

#include <string_view>

namespace ViewerAPI {

VlOptionIdGeneratorHostStruct& VlOptionIdGeneratorHostStruct::instance() {
    static VlOptionIdGeneratorHostStruct generator;
    return generator;
}

std::uint64_t VlOptionIdGeneratorHostStruct::generate(const char* name) {
    const std::string_view text = name ? name : "";
    const std::uint64_t optionId = VlAttribute::StringAttribute(text).getHash().first << 16U;
    std::string& known = OptionIdTable[optionId];
    // Assigning an equal name could move the text that a caller of lookUp still holds.
    if (known != text) {
        known = text;
    }
    return optionId;
}

const char* VlOptionIdGeneratorHostStruct::lookUp(std::uint64_t optionId) const {
    const auto found = OptionIdTable.find(optionId);
    return found == OptionIdTable.end() ? "" : found->second.c_str();
}

} // namespace ViewerAPI
