#include "manipulator/xformcomponents.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "manipulator/rotations.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace Bundled {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using Kind = XformComponents::Kind;

constexpr const char* kMadeGroup = "interactive";
constexpr std::string_view kRotate = "rotate";
constexpr std::size_t kRotationWidth = 4;

const GroupAttribute& restingGroup() {
    static const GroupAttribute group{{"translate", DoubleAttribute({0, 0, 0}, 3)},
                                      {"rotateZ", DoubleAttribute({0, 0, 0, 1}, 4)},
                                      {"rotateY", DoubleAttribute({0, 0, 1, 0}, 4)},
                                      {"rotateX", DoubleAttribute({0, 1, 0, 0}, 4)},
                                      {"scale", DoubleAttribute({1, 1, 1}, 3)}};
    return group;
}

/// The values of a component in the scene's conventions; nothing for others.
std::vector<double> readValues(const GroupAttribute& group, const std::string& name,
                               std::size_t width) {
    const DoubleAttribute component(group.getChildByName(name));
    const auto values = component.getNearestSample(0.0f);
    return values.size() == width ? std::vector<double>(values.begin(), values.end())
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

bool isRotation(std::string_view name) {
    return name.substr(0, kRotate.size()) == kRotate;
}

/// The names of the last rotations of a group that stand side by side, outermost first.
std::vector<std::string> lastRotations(const GroupAttribute& group) {
    std::int64_t end = group.getNumberOfChildren();
    while (end > 0 && !isRotation(group.getChildName(end - 1))) {
        --end;
    }
    std::int64_t begin = end;
    while (begin > 0 && isRotation(group.getChildName(begin - 1))) {
        --begin;
    }
    std::vector<std::string> names;
    for (std::int64_t i = begin; i < end; ++i) {
        names.emplace_back(group.getChildName(i));
    }
    return names;
}

std::string unusedGroupName(const GroupAttribute& xform) {
    std::string name = kMadeGroup;
    for (int number = 2; xform.getChildByName(name); ++number) {
        name = kMadeGroup + std::to_string(number);
    }
    return name;
}

/// The sets of neighbours in a group that could be edited, the best first.
std::vector<std::vector<std::string>> candidates(const GroupAttribute& group, Kind kind) {
    if (kind != Kind::Rotate) {
        return {{kind == Kind::Scale ? "scale" : "translate"}};
    }
    std::vector<std::string> names = lastRotations(group);
    std::vector<std::vector<std::string>> sets;
    for (const std::size_t count : {3U, 1U}) {
        if (names.size() >= count) {
            sets.emplace_back(names.end() - static_cast<std::ptrdiff_t>(count), names.end());
        }
    }
    return sets;
}

} // namespace

XformComponents XformComponents::find(const GroupAttribute& xform, Kind kind) {
    XformComponents components;
    components.width = kind == Kind::Rotate ? kRotationWidth : 3;
    for (std::int64_t i = xform.getNumberOfChildren(); i-- > 0;) {
        const GroupAttribute group(xform.getChildByIndex(i));
        for (const auto& names : candidates(group, kind)) {
            if (components.take(group, names)) {
                components.group = std::string(xform.getChildName(i));
                return components;
            }
        }
    }
    components.group = unusedGroupName(xform);
    components.made = restingGroup();
    components.take(components.made, candidates(components.made, kind).front());
    return components;
}

bool XformComponents::take(const GroupAttribute& from, const std::vector<std::string>& wanted) {
    std::vector<double> found;
    for (const std::string& name : wanted) {
        const std::vector<double> each = readValues(from, name, width);
        found.insert(found.end(), each.begin(), each.end());
    }
    const bool isWhole = found.size() == wanted.size() * width;
    if (!from || !isWhole || !isFirstOfItsPrefix(from, wanted.front()) ||
        (wanted.size() > 1 && !areThreeUpright(found))) {
        return false;
    }
    names = wanted;
    values = std::move(found);
    return true;
}

std::vector<XformComponents::Setting>
XformComponents::settings(const std::vector<double>& newValues) const {
    GroupBuilder whole;
    whole.update(made);
    std::vector<Setting> each;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const DoubleAttribute value(std::span<const double>(newValues).subspan(i * width, width),
                                    static_cast<std::int64_t>(width));
        whole.set(names[i], value);
        each.emplace_back("xform." + group + "." + names[i], value);
    }
    return exists() ? each : std::vector<Setting>{{"xform." + group, whole.build()}};
}

} // namespace Bundled
