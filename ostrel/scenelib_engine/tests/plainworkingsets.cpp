#include "plainworkingsets.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <set>

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

namespace {

struct PlainSet {
    std::string name;
    std::set<std::string> include;
    std::set<std::string> exclude;
    bool childrenInherit = true;
    bool isPolished = false;

    [[nodiscard]] bool includes(const std::string& path) const {
        if (exclude.contains(path)) {
            return false;
        }
        if (include.contains(path)) {
            return true;
        }
        const std::size_t slash = path.rfind('/');
        return childrenInherit && slash > 0 && includes(path.substr(0, slash));
    }
    static bool hasBelow(const std::set<std::string>& paths, const std::string& path) {
        return std::any_of(paths.begin(), paths.end(),
                           [&](const std::string& each) { return each.starts_with(path + "/"); });
    }
    /// Whether it includes the location or one below it by name.
    [[nodiscard]] bool leads(const std::string& path) const {
        return std::any_of(include.begin(), include.end(), [&](const std::string& each) {
            return !exclude.contains(each) && (each == path || each.starts_with(path + "/"));
        });
    }
    [[nodiscard]] bool keeps(const std::string& path) const {
        return includes(path) || leads(path);
    }
};

std::set<std::string> readPaths(const Attribute& attribute) {
    std::set<std::string> paths;
    const StringAttribute list(attribute);
    for (const std::string_view path : list.getNearestSample(0)) {
        const bool isPath = path.starts_with("/") && !path.ends_with("/") &&
                            path.find("//") == std::string_view::npos;
        if (isPath) {
            paths.emplace(path);
        }
    }
    return paths;
}

std::vector<PlainSet> readSets(const GroupAttribute& args) {
    std::vector<PlainSet> sets;
    const GroupAttribute groups(args.getChildByName("workingSetsInfo"));
    for (std::int64_t i = 0; i < groups.getNumberOfChildren(); ++i) {
        const GroupAttribute group(groups.getChildByIndex(i));
        if (group) {
            sets.push_back({std::string(groups.getChildName(i)),
                            readPaths(group.getChildByName("include")),
                            readPaths(group.getChildByName("exclude")),
                            IntAttribute(group.getChildByName("childrenInherit")).getValue(1) != 0,
                            IntAttribute(group.getChildByName("polish")).getValue(0) != 0});
        }
    }
    return sets;
}

void resolve(PlainLocation& location, const std::string& path, const std::vector<PlainSet>& sets,
             const std::string& outputGroup) {
    GroupBuilder attrs;
    attrs.update(location.attrs);
    for (const PlainSet& set : sets) {
        if (path != "/root" && !set.keeps(path)) {
            continue;
        }
        const bool handsOn = set.includes(path) && set.childrenInherit;
        std::vector<std::string> kept;
        std::vector<std::string> dropped;
        bool hasIncludedChildren = false;
        for (const std::string& name : location.getChildNames()) {
            const std::string child = path + "/" + name;
            (set.keeps(child) ? kept : dropped).push_back(name);
            hasIncludedChildren = hasIncludedChildren || set.leads(child);
        }
        std::ranges::sort(kept);
        std::ranges::sort(dropped);
        GroupBuilder group;
        if (set.isPolished) {
            group.set("polished.included", IntAttribute(set.includes(path)));
            group.set("polished.hasIncludedChildren", IntAttribute(hasIncludedChildren));
            group.set("polished.childrenInheritInclusion", IntAttribute(handsOn));
        }
        if (!handsOn) {
            group.set("keptChildren", StringAttribute(kept));
        } else if (PlainSet::hasBelow(set.exclude, path)) {
            group.set("droppedChildren", StringAttribute(dropped));
        }
        attrs.set(outputGroup + "." + set.name, group.build());
    }
    location.attrs = attrs.build();
    for (auto& [name, child] : location.children) {
        resolve(child, path + "/" + name, sets, outputGroup);
    }
}

bool contains(const Attribute& list, const std::string& name) {
    const StringAttribute names(list);
    for (const std::string_view each : names.getNearestSample(0)) {
        if (each == name) {
            return true;
        }
    }
    return false;
}

/// Whether some set keeps all that is below, which needs no looking at.
bool isWholeKept(const GroupAttribute& sets) {
    for (std::int64_t i = 0; i < sets.getNumberOfChildren(); ++i) {
        const GroupAttribute set(sets.getChildByIndex(i));
        if (!set.getChildByName("keptChildren") && !set.getChildByName("droppedChildren")) {
            return true;
        }
    }
    return sets.getNumberOfChildren() == 0;
}

bool isChildKept(const GroupAttribute& sets, const std::string& name) {
    for (std::int64_t i = 0; i < sets.getNumberOfChildren(); ++i) {
        const GroupAttribute set(sets.getChildByIndex(i));
        const Attribute kept = set.getChildByName("keptChildren");
        if (kept ? contains(kept, name) : !contains(set.getChildByName("droppedChildren"), name)) {
            return true;
        }
    }
    return false;
}

void prune(PlainLocation& location, const std::string& groupName) {
    const GroupAttribute sets(location.attrs.getChildByName(groupName));
    if (isWholeKept(sets)) {
        return;
    }
    std::erase_if(location.children,
                  [&](const auto& child) { return !isChildKept(sets, child.first); });
    for (auto& [name, child] : location.children) {
        prune(child, groupName);
    }
}

} // namespace

PlainScene resolveWorkingSetsPlainly(const GroupAttribute& args, const PlainScene& input) {
    PlainScene scene = input;
    const std::vector<PlainSet> sets = readSets(args);
    const std::string outputGroup =
        StringAttribute(args.getChildByName("outputGroupName")).getValue();
    if (scene && !sets.empty() && !outputGroup.empty()) {
        resolve(*scene, "/root", sets, outputGroup);
    }
    return scene;
}

PlainScene pruneWorkingSetsPlainly(const GroupAttribute& args, const PlainScene& input) {
    PlainScene scene = input;
    const std::string groupName = StringAttribute(args.getChildByName("groupName")).getValue();
    if (scene && !groupName.empty()) {
        prune(*scene, groupName);
    }
    return scene;
}
