#include "plainscene.h"

#include "plainworkingsets.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::StringAttribute;

namespace {

PlainLocation makeError(const std::string& message) {
    return {GroupAttribute{{"type", StringAttribute("error")},
                           {"errorMessage", StringAttribute(message)}},
            {}};
}

PlainScene inputAt(const std::vector<PlainScene>& inputs, std::size_t i) {
    return i < inputs.size() ? inputs[i] : std::nullopt;
}

PlainLocation literal(const GroupAttribute& level) {
    PlainLocation location{GroupAttribute(level.getChildByName("a")), {}};
    if (!location.attrs) {
        location.attrs = GroupAttribute::Empty();
    }
    const GroupAttribute children(level.getChildByName("c"));
    for (std::int64_t i = 0; i < children.getNumberOfChildren(); ++i) {
        location.children.emplace_back(children.getChildName(i),
                                       literal(GroupAttribute(children.getChildByIndex(i))));
    }
    return location;
}

PlainLocation merge(const std::vector<const PlainLocation*>& locations) {
    if (locations.size() == 1) {
        return *locations.front();
    }
    GroupBuilder attrs;
    std::vector<std::string> names;
    for (const PlainLocation* location : locations) {
        attrs.update(location->attrs);
        for (const auto& [name, child] : location->children) {
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    PlainLocation merged{attrs.build(), {}};
    for (const std::string& name : names) {
        std::vector<const PlainLocation*> children;
        for (const PlainLocation* location : locations) {
            if (const PlainLocation* child = location->findChild(name)) {
                children.push_back(child);
            }
        }
        merged.children.emplace_back(name, merge(children));
    }
    return merged;
}

void stamp(PlainLocation& location, const std::string& name, const GroupAttribute& args) {
    GroupBuilder attrs;
    attrs.update(location.attrs);
    attrs.set("stamp", args.getChildByName("stamp"));
    if (name == "a") {
        attrs.set("mark", args.getChildByName("mark"));
    }
    location.attrs = attrs.build();
    for (auto& [childName, child] : location.children) {
        stamp(child, childName, args);
    }
}

void filter(PlainLocation& location, const std::string& hidden) {
    std::erase_if(location.children, [&](const auto& child) { return child.first == hidden; });
    for (auto& [name, child] : location.children) {
        filter(child, hidden);
    }
}

void throwAt(PlainLocation& location, const std::string& path, const std::string& name) {
    if (path.substr(path.rfind('/') + 1) == name) {
        location = makeError("thrown at " + path);
    }
    for (auto& [childName, child] : location.children) {
        throwAt(child, path + "/" + childName, name);
    }
}

PlainLocation swap(const std::string& name, const PlainLocation* first,
                   const PlainLocation* second) {
    if (name != "root" && name < "b" && first) {
        return *first;
    }
    PlainLocation location{GroupAttribute::Empty(), {}};
    std::vector<std::string> names;
    for (const PlainLocation* input : {first, second}) {
        if (!input) {
            continue;
        }
        location.attrs = input->attrs;
        for (const auto& [childName, child] : input->children) {
            if (std::find(names.begin(), names.end(), childName) == names.end()) {
                names.push_back(childName);
            }
        }
    }
    for (const std::string& childName : names) {
        location.children.emplace_back(
            childName, swap(childName, first ? first->findChild(childName) : nullptr,
                            second ? second->findChild(childName) : nullptr));
    }
    return location;
}

/// Sets what stands below `path` in `edits`, one attribute after the other.
void setDeeply(GroupBuilder& attrs, const GroupAttribute& before, const GroupAttribute& edits,
               const std::string& path) {
    for (std::int64_t i = 0; i < edits.getNumberOfChildren(); ++i) {
        const std::string name = path + std::string(edits.getChildName(i));
        const Attribute value = edits.getChildByIndex(i);
        const GroupAttribute group(value);
        if (group && GroupAttribute(before.getChildByName(name))) {
            setDeeply(attrs, before, group, name + ".");
        } else {
            attrs.set(name, value);
        }
    }
}

void edit(PlainLocation& location, const GroupAttribute& edits) {
    GroupBuilder attrs;
    attrs.update(location.attrs);
    setDeeply(attrs, location.attrs, GroupAttribute(edits.getChildByName("a")), "");
    location.attrs = attrs.build();
    const GroupAttribute children(edits.getChildByName("c"));
    for (auto& [name, child] : location.children) {
        edit(child, GroupAttribute(children.getChildByName(name)));
    }
}

GroupAttribute collapse(const PlainLocation& location) {
    GroupBuilder children;
    for (const auto& [name, child] : location.children) {
        children.set(name, collapse(child));
    }
    return {{"a", location.attrs}, {"c", children.build()}};
}

} // namespace

const PlainLocation* PlainLocation::findChild(std::string_view name) const {
    for (const auto& [childName, child] : children) {
        if (childName == name) {
            return &child;
        }
    }
    return nullptr;
}

std::vector<std::string> PlainLocation::getChildNames() const {
    std::vector<std::string> names;
    for (const auto& [name, child] : children) {
        names.push_back(name);
    }
    return names;
}

const PlainLocation* findLocation(const PlainScene& scene, std::string_view path) {
    if (!scene || !path.starts_with("/root")) {
        return nullptr;
    }
    const PlainLocation* location = &*scene;
    path.remove_prefix(5);
    while (!path.empty() && location) {
        if (path.front() != '/') {
            return nullptr;
        }
        path.remove_prefix(1);
        const std::size_t slash = std::min(path.find('/'), path.size());
        location = location->findChild(path.substr(0, slash));
        path.remove_prefix(slash);
    }
    return location;
}

PlainScene evaluatePlainly(const std::string& type, const GroupAttribute& args,
                           const std::vector<PlainScene>& inputs) {
    PlainScene scene = inputAt(inputs, 0);
    const auto text = [&](const char* name) {
        return StringAttribute(args.getChildByName(name)).getValue();
    };
    if (type == "no-op") {
        return scene;
    }
    if (type == "Scene.Literal") {
        const GroupAttribute top(args.getChildByName("staticScene"));
        return top ? PlainScene(literal(top)) : std::nullopt;
    }
    if (type == "Scene.Merge") {
        std::vector<const PlainLocation*> roots;
        for (const PlainScene& input : inputs) {
            if (input) {
                roots.push_back(&*input);
            }
        }
        return roots.empty() ? std::nullopt : PlainScene(merge(roots));
    }
    if (type == "Scene.Edit") {
        if (scene) {
            edit(*scene, GroupAttribute(args.getChildByName("edits")));
        }
        return scene;
    }
    if (type == "WorkingSet.MultipleOnePassResolve") {
        return resolveWorkingSetsPlainly(args, scene);
    }
    if (type == "WorkingSet.Prune") {
        return pruneWorkingSetsPlainly(args, scene);
    }
    if (type == "HierarchyCollapse") {
        return scene ? PlainScene(PlainLocation{{{"staticScene", collapse(*scene)}}, {}}) : scene;
    }
    if (type == "Test.Throw") {
        if (text("name") == "root") {
            return makeError("thrown at /root");
        }
        if (scene) {
            throwAt(*scene, "/root", text("name"));
        }
        return scene;
    }
    if (type == "Test.Late") {
        return scene;
    }
    if (type == "Test.Swap") {
        const PlainScene second = inputAt(inputs, 1);
        return swap("root", scene ? &*scene : nullptr, second ? &*second : nullptr);
    }
    if (type == "Test.Stamp" || type == "Test.Filter" || type == "Test.Far") {
        if (!scene) {
            return scene;
        }
        if (type == "Test.Stamp") {
            stamp(*scene, "root", args);
        } else if (type == "Test.Filter") {
            filter(*scene, text("hide"));
        } else {
            const PlainLocation* read = findLocation(scene, text("path"));
            GroupBuilder attrs;
            attrs.update(scene->attrs);
            attrs.set("far", read ? read->attrs : GroupAttribute());
            scene->attrs = attrs.build();
        }
        return scene;
    }
    return makeError("Unknown op type \"" + type + "\"");
}
