#include "ops/workingsets.h"

#include "locationpath.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <utility>

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

void addPaths(NamedLocation& top, const GroupAttribute& set, const char* list,
              NamedLocation::Mark mark) {
    const StringAttribute paths(set.getChildByName(list));
    for (const std::string_view path : paths.getNearestSample(0)) {
        if (const auto names = splitPath(path)) {
            top.add(*names, mark);
        }
    }
}

/// Fills in what stands below each location, when all are marked.
void summarise(NamedLocation& location) {
    location.leadsToIncluded = location.mark == NamedLocation::Mark::Included;
    for (const auto& [name, child] : location.children) {
        summarise(*child);
        location.leadsToIncluded = location.leadsToIncluded || child->leadsToIncluded;
        location.excludesBelow = location.excludesBelow || child->excludesBelow ||
                                 child->mark == NamedLocation::Mark::Excluded;
    }
}

} // namespace

const NamedLocation* NamedLocation::findChild(std::string_view name) const {
    const auto found = children.find(name);
    return found == children.end() ? nullptr : found->second.get();
}

void NamedLocation::add(const std::vector<std::string_view>& path, Mark pathMark) {
    NamedLocation* location = this;
    for (const std::string_view name : path) {
        auto child = location->children.find(name);
        if (child == location->children.end()) {
            child = location->children.emplace(name, std::make_unique<NamedLocation>()).first;
        }
        location = child->second.get();
    }
    location->mark = std::max(location->mark, pathMark);
}

bool operator==(const NamedLocation& left, const NamedLocation& right) {
    return left.mark == right.mark &&
           std::ranges::equal(left.children, right.children, [](const auto& a, const auto& b) {
               return a.first == b.first && *a.second == *b.second;
           });
}

WorkingSet::WorkingSet(std::string outputName, const GroupAttribute& set)
    : output(std::move(outputName)),
      childrenInherit(IntAttribute(set.getChildByName("childrenInherit")).getValue(1) != 0),
      isPolished(IntAttribute(set.getChildByName("polish")).getValue(0) != 0) {
    addPaths(top, set, "include", NamedLocation::Mark::Included);
    addPaths(top, set, "exclude", NamedLocation::Mark::Excluded);
    summarise(top);
}

} // namespace VlScenelibEngine
