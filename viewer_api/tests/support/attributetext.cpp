#include "support/attributetext.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <sstream>
#include <string_view>
#include <type_traits>

namespace ViewerAPI::test {

using namespace VlAttribute;

namespace {

template <class Sample>
std::string valuesText(const Sample& sample) {
    std::ostringstream out;
    const char* separator = "";
    for (const auto& value : sample) {
        out << separator;
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(value)>>) {
            out << value;
        } else {
            out << '"' << std::string_view(value) << '"';
        }
        separator = " ";
    }
    return sample.size() == 1 ? out.str() : "(" + out.str() + ")";
}

std::string groupText(const GroupAttribute& group) {
    std::string text = "{";
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        text += i == 0 ? "" : " ";
        text += std::string(group.getChildName(i)) + "=" + textOf(group.getChildByIndex(i));
    }
    return text + "}";
}

} // namespace

std::string textOf(const Attribute& attribute) {
    switch (attribute.getType()) {
    case AttributeType::Int:
        return valuesText(IntAttribute(attribute).getNearestSample(0.0F));
    case AttributeType::Float:
        return valuesText(FloatAttribute(attribute).getNearestSample(0.0F));
    case AttributeType::Double:
        return valuesText(DoubleAttribute(attribute).getNearestSample(0.0F));
    case AttributeType::String:
        return valuesText(StringAttribute(attribute).getNearestSample(0.0F));
    case AttributeType::Group:
        return groupText(GroupAttribute(attribute));
    case AttributeType::None:
        break;
    }
    return "null";
}

std::string textOf(VlAttributeStruct* borrowed) {
    return textOf(Attribute::CreateAndRetain(borrowed));
}

} // namespace ViewerAPI::test
