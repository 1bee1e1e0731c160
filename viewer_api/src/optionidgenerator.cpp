#include "optionidgenerator.h"

#include "VlAttribute/StringAttribute.h"

namespace ViewerAPI {

VlOptionIdGeneratorHostStruct& VlOptionIdGeneratorHostStruct::instance() {
    static VlOptionIdGeneratorHostStruct generator;
    return generator;
}

std::uint64_t VlOptionIdGeneratorHostStruct::generate(const char* name) {
    const std::uint64_t optionId = VlAttribute::StringAttribute(name).getHash().first << 16U;
    std::string& known = OptionIdTable[optionId];
    // Assigning an equal name could move the text that a caller of lookUp still holds.
    if (known != name)
        known = name;
    return optionId;
}

const char* VlOptionIdGeneratorHostStruct::lookUp(std::uint64_t optionId) const {
    const auto found = OptionIdTable.find(optionId);
    return found == OptionIdTable.end() ? "" : found->second.c_str();
}

} // namespace ViewerAPI
