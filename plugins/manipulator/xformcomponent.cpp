#include "manipulator/xformcomponent.h"

#include "VlAttribute/GroupBuilder.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace Bundled {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

constexpr const char* kMadeGroup = "interactive";

const GroupAttribute& restingGroup() {
    static const GroupAttribute group{{"translate", DoubleAttribute({0, 0, 0}, 3)},
                                      {"rotateZ", DoubleAttribute({0, 0, 0, 1}, 4)},
                                      {"rotateY", DoubleAttribute({0, 0, 1, 0}, 4)},
                                      {"rotateX", DoubleAttribute({0, 1, 0, 0}, 4)},
                                      {"scale", DoubleAttribute({1, 1, 1}, 3)}};
    return group;
}

/// The values of a component in the scene's conventions; nothing for others.
std::vector<double> readValues(const GroupAttribute& group, const std::string& name) {
    const DoubleAttribute component(group.getChildByName(name));
    const auto values = component.getNearestSample(0.0f);
    const bool isRotation = std::string_view(name).substr(0, 6) == "rotate";
    return values.size() == (isRotation ? 4U : 3U)
               ? std::vector<double>(values.begin(), values.end())
               : std::vector<double>();
}

/// A partial transform matches names by their beginning, so one that begins like this one and
/// stands before it would be taken for it.
bool isFirstOfItsPrefix(const GroupAttribute& group, const std::string& name) {
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        const std::string_view each = group.getChildName(i);
        if (each.substr(0, name.size()) == name) {
            return each == name;
        }
    }
    return false;
}

std::string unusedGroupName(const GroupAttribute& xform) {
    std::string name = kMadeGroup;
    for (int number = 2; xform.getChildByName(name); ++number) {
        name = kMadeGroup + std::to_string(number);
    }
    return name;
}

} // namespace

XformComponent XformComponent::find(const GroupAttribute& xform, const std::string& name) {
    XformComponent component;
    component.name = name;
    for (std::int64_t i = xform.getNumberOfChildren(); i-- > 0;) {
        const GroupAttribute group(xform.getChildByIndex(i));
        if (!group || !isFirstOfItsPrefix(group, name)) {
            continue;
        }
        component.values = readValues(group, name);
        if (!component.values.empty()) {
            component.group = std::string(xform.getChildName(i));
            return component;
        }
    }
    component.group = unusedGroupName(xform);
    component.made = restingGroup();
    component.values = readValues(component.made, name);
    return component;
}

std::string XformComponent::attributeName() const {
    return exists() ? "xform." + group + "." + name : "xform." + group;
}

VlAttribute::Attribute XformComponent::attribute(const std::vector<double>& newValues) const {
    const DoubleAttribute value(std::span<const double>(newValues),
                                static_cast<std::int64_t>(newValues.size()));
    return exists() ? VlAttribute::Attribute(value)
                    : GroupBuilder().update(made).set(name, value).build();
}

} // namespace Bundled
