#pragma once

#include "VlAttribute/StringAttribute.h"

#include <string>
#include <vector>

namespace ViewerAPI {

/// The strings of the time sample nearest to 0; none of a null attribute.
inline std::vector<std::string> toStrings(const VlAttribute::StringAttribute& attribute) {
    const auto values = attribute.getNearestSample(0.0F);
    std::vector<std::string> strings;
    strings.reserve(values.size());
    for (const auto value : values) {
        strings.push_back(value.str());
    }
    return strings;
}

} // namespace ViewerAPI
