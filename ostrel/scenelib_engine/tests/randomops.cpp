#include "randomops.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

std::size_t RandomOps::pick(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

bool RandomOps::chance(int percent) {
    return static_cast<int>(pick(100)) < percent;
}

bool RandomOps::chance(double percent) {
    return std::uniform_real_distribution<double>(0, 100)(random) < percent;
}

std::string RandomOps::pickName() {
    return names[pick(names.size())];
}

std::string RandomOps::pickPath() {
    if (chance(3)) {
        return chance(50) ? "/elsewhere" : "not a path";
    }
    std::string path = "/root";
    for (std::size_t levels = pick(static_cast<std::size_t>(depth) + 1); levels > 0; --levels) {
        path += "/" + pickName();
    }
    return path;
}

// Edits of locations that are there and of some that are not; of a number, or of the group in
// which "Test.Far" shows what it read.
GroupAttribute RandomOps::pickEdits(const GroupAttribute& before) {
    GroupBuilder edits;
    edits.update(before);
    for (std::size_t count = pick(3) + 1; count > 0; --count) {
        std::string level;
        for (std::size_t levels = pick(static_cast<std::size_t>(depth) + 1); levels > 0; --levels) {
            level += "c." + pickName() + ".";
        }
        static const std::vector<const char*> attributes{"v", "w", "far.v", "far"};
        const std::string name = level + "a." + attributes[pick(attributes.size())];
        if (chance(30)) {
            edits.del(name);
        } else if (chance(10)) {
            edits.set(name, GroupAttribute::Empty());
        } else {
            edits.set(name, IntAttribute(static_cast<int>(pick(3))));
        }
    }
    return edits.build();
}

GroupAttribute RandomOps::pickWorkingSet() {
    GroupBuilder set;
    for (const char* list : {"include", "exclude"}) {
        std::vector<std::string> paths;
        for (std::size_t count = pick(3); count > 0; --count) {
            paths.push_back(pickPath());
        }
        set.set(list, StringAttribute(paths));
    }
    set.set("childrenInherit", IntAttribute(chance(70)));
    set.set("polish", IntAttribute(chance(70)));
    return set.build();
}

GroupAttribute RandomOps::pickLevel(int levels) {
    GroupBuilder level;
    level.set("a", GroupAttribute::Empty());
    level.set("a.v", IntAttribute(static_cast<int>(pick(3))));
    for (std::size_t i = 0; levels > 0 && i < names.size(); ++i) {
        const std::string name = pickName();
        if (chance(55)) {
            level.set("c." + name, pickLevel(levels - 1));
        }
    }
    return level.build();
}

void RandomOps::edit(std::string& type, GroupAttribute& args) {
    static const std::vector<const char*> types{"no-op",
                                                "Scene.Literal",
                                                "Scene.Literal",
                                                "Scene.Literal",
                                                "Scene.Literal",
                                                "Scene.Merge",
                                                "Scene.Merge",
                                                "Scene.Merge",
                                                "Scene.Edit",
                                                "Scene.Edit",
                                                "Test.Stamp",
                                                "Test.Filter",
                                                "Test.Far",
                                                "Test.Throw",
                                                "Test.Swap",
                                                "Test.Late",
                                                "Test.Late",
                                                "Test.Unknown",
                                                "WorkingSet.MultipleOnePassResolve",
                                                "WorkingSet.MultipleOnePassResolve",
                                                "WorkingSet.Prune",
                                                "WorkingSet.Prune",
                                                "HierarchyCollapse"};
    if (chance(20)) {
        type = types[pick(types.size())];
    }
    GroupBuilder edited;
    edited.set("stamp", IntAttribute(static_cast<int>(pick(2))));
    edited.set("mark", IntAttribute(static_cast<int>(pick(2))));
    edited.set("hide", StringAttribute(pickName()));
    edited.set("name", StringAttribute(chance(5) ? std::string("root") : pickName()));
    edited.set("path", StringAttribute(pickPath()));
    if (type == "Scene.Literal" && !chance(10)) {
        const bool isSmallEdit = args.getChildByName("staticScene").isValid();
        GroupBuilder level;
        level.update(isSmallEdit && chance(60) ? GroupAttribute(args.getChildByName("staticScene"))
                                               : pickLevel(depth));
        const std::string name = pickName();
        if (chance(50)) {
            level.set("c." + name + ".a.v", IntAttribute(static_cast<int>(pick(3))));
        } else if (chance(50)) {
            level.set("c." + name, pickLevel(depth - 1));
        } else {
            level.del("c." + name);
        }
        edited.set("staticScene", level.build());
    }
    if (!chance(10)) {
        edited.set("groupName", StringAttribute("sets"));
    }
    if (!chance(10)) {
        edited.set("outputGroupName", StringAttribute("sets"));
    }
    for (const char* name : {"workingSetsInfo.one", "workingSetsInfo.two"}) {
        if (type == "WorkingSet.MultipleOnePassResolve" && chance(60)) {
            edited.set(name, pickWorkingSet());
        }
    }
    if (type == "Scene.Edit" && !chance(10)) {
        edited.set("edits", pickEdits(chance(80) ? GroupAttribute(args.getChildByName("edits"))
                                                 : GroupAttribute()));
    }
    args = edited.build();
}
