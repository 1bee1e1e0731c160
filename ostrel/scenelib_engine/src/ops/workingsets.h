#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VlScenelibEngine {

/// What a working set says of one location and, by name, of those below it. There is one of them
/// for each path that the set names and for each ancestor of one.
class NamedLocation {
public:
    enum class Mark : unsigned char { None, Included, Excluded };

    NamedLocation() = default;
    NamedLocation(NamedLocation&&) noexcept = default;
    NamedLocation& operator=(NamedLocation&&) noexcept = default;

    Mark mark = Mark::None;
    /// Whether the set includes this location or one below it by name.
    bool leadsToIncluded = false;
    /// Whether the set excludes a location below this one by name.
    bool excludesBelow = false;
    std::map<std::string, std::unique_ptr<NamedLocation>, std::less<>> children;

    /// Null when the set names nothing at or below the child.
    [[nodiscard]] const NamedLocation* findChild(std::string_view name) const;
    /// Marks a location at or below this one; `path` begins below this one. Excluded prevails.
    void add(const std::vector<std::string_view>& path, Mark pathMark);

    /// Whether the two say the same of everything.
    friend bool operator==(const NamedLocation& left, const NamedLocation& right);
};

/// One of the sets that "WorkingSet.MultipleOnePassResolve" resolves.
struct WorkingSet {
    WorkingSet(std::string outputName, const VlAttribute::GroupAttribute& set);

    /// The dotted name of the group that it writes.
    std::string output;
    /// Whether a location is included because its parent is.
    bool childrenInherit = true;
    /// Whether the integers for viewers are written.
    bool isPolished = false;
    /// What stands above the root.
    NamedLocation top;
};

} // namespace VlScenelibEngine
