#include "scene/number.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"

namespace Bundled {

std::optional<double> number(const VlAttribute::GroupAttribute& group, const char* name) {
    return number(group.getChildByName(name));
}

std::optional<double> number(const VlAttribute::Attribute& attribute) {
    if (const VlAttribute::DoubleAttribute doubles{attribute}; doubles.getNumberOfValues() > 0) {
        return doubles.getValue(0.0);
    }
    if (const VlAttribute::FloatAttribute floats{attribute}; floats.getNumberOfValues() > 0) {
        return static_cast<double>(floats.getValue(0.0f));
    }
    if (const VlAttribute::IntAttribute ints{attribute}; ints.getNumberOfValues() > 0) {
        return static_cast<double>(ints.getValue(0));
    }
    return std::nullopt;
}

} // namespace Bundled
