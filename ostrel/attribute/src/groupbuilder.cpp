#include "VlAttribute/GroupBuilder.h"

#include "groupnode.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace VlAttribute {

/// What is collected for one group. A level that nothing has changed since it took a whole group
/// keeps just that group, so that building it again shares the value.
class GroupBuilder::Level {
public:
    Level() = default;
    explicit Level(GroupAttribute whole) : base(std::move(whole)) {}

    [[nodiscard]] std::size_t size() const noexcept {
        return base ? static_cast<std::size_t>(base.getNumberOfChildren())
                    : children.size() - deletedCount;
    }

    void reserve(std::size_t count) {
        expand();
        children.reserve(count);
    }

    void set(const InternedName* name, Attribute value, bool isInherit) {
        Child& child = findOrAppend(name);
        child.value = std::move(value);
        child.level.reset();
        child.isInherit = isInherit;
    }

    void update(const GroupAttribute& group) {
        if (size() == 0) {
            clear();
            base = group;
            return;
        }
        expand();
        for (const GroupChild& child : childrenOf(group)) {
            set(child.name(), child.value, child.isInherit());
        }
    }

    void deepUpdate(const GroupAttribute& group, int depth) {
        if (size() == 0) {
            update(group);
            return;
        }
        if (base && base.getHandle() == group.getHandle()) {
            return;
        }
        if (depth > kMaxDepth) {
            throw std::runtime_error("GroupBuilder::deepUpdate: groups nest deeper than " +
                                     std::to_string(kMaxDepth));
        }
        for (const GroupChild& child : childrenOf(group)) {
            Child* mine = find(child.name());
            if (mine && mine->isGroup() && child.value.getType() == AttributeType::Group) {
                mine->isInherit = child.isInherit();
                mine->descend().deepUpdate(GroupAttribute(child.value), depth + 1);
            } else {
                set(child.name(), child.value, child.isInherit());
            }
        }
    }

    /// The level of the group of that name, made if there is none.
    Level& descend(const InternedName* name) {
        Child& child = findOrAppend(name);
        if (!child.isGroup()) {
            child.value = Attribute();
            child.level = std::make_unique<Level>();
            child.isInherit = true;
        }
        return child.descend();
    }

    /// The level of the group of that name, or null.
    Level* descendIfThere(const InternedName* name) {
        Child* child = find(name);
        return child && child->isGroup() ? &child->descend() : nullptr;
    }

    void remove(const InternedName* name) {
        Child* child = find(name);
        if (!child) {
            return;
        }
        // The place stays, so that the index stays true; many such places are swept at once.
        *child = Child{};
        ++deletedCount;
        if (deletedCount > NameIndex::kThreshold && deletedCount * 2 > children.size()) {
            std::erase_if(children, [](const Child& each) { return !each.name; });
            deletedCount = 0;
            rebuildIndex();
        }
    }

    GroupAttribute build(BuildMode mode) {
        if (base) {
            return mode == BuildMode::Normal ? std::exchange(base, GroupAttribute()) : base;
        }
        if (size() == 0) {
            if (mode == BuildMode::Normal) {
                clear();
            }
            return GroupAttribute::Empty();
        }
        GroupNode* node = GroupNode::make(size());
        GroupAttribute group(node);
        for (Child& child : children) {
            if (!child.name) {
                continue;
            }
            Attribute value = child.level                 ? Attribute(child.level->build(mode))
                              : mode == BuildMode::Normal ? std::move(child.value)
                                                          : child.value;
            node->add(GroupChild(child.name, child.isInherit, std::move(value)));
        }
        node->finish();
        if (mode == BuildMode::Normal) {
            clear();
        }
        return group;
    }

private:
    struct Child {
        const InternedName* name = nullptr; ///< null: deleted
        Attribute value;                    ///< null when `level` has the content
        std::unique_ptr<Level> level;
        bool isInherit = true;

        [[nodiscard]] bool isGroup() const noexcept {
            return level || value.getType() == AttributeType::Group;
        }
        Level& descend() {
            if (!level) {
                level = std::make_unique<Level>(GroupAttribute(std::move(value)));
            }
            return *level;
        }
    };

    static std::span<const GroupChild> childrenOf(const GroupAttribute& group) noexcept {
        const GroupNode* node = asGroupNode(group.getHandle());
        return node ? node->children() : std::span<const GroupChild>();
    }

    void clear() noexcept {
        children.clear();
        index.clear();
        deletedCount = 0;
        base = GroupAttribute();
    }

    void expand() {
        if (!base) {
            return;
        }
        const GroupAttribute whole = std::exchange(base, GroupAttribute());
        const std::span<const GroupChild> all = childrenOf(whole);
        children.reserve(all.size() + 1);
        for (const GroupChild& child : all) {
            children.push_back(Child{child.name(), child.value, nullptr, child.isInherit()});
        }
        rebuildIndex();
    }

    void rebuildIndex() {
        index.clear();
        if (children.size() < NameIndex::kThreshold) {
            return;
        }
        // Room to grow to twice the size before the next time.
        index.assign(NameIndex::slotCount(children.size() * 2), NameIndex::kEmpty);
        for (std::size_t place = 0; place < children.size(); ++place) {
            if (children[place].name) {
                addToIndex(place);
            }
        }
    }

    void addToIndex(std::size_t place) noexcept {
        std::size_t slot = children[place].name->hash.first & (index.size() - 1);
        while (index[slot] != NameIndex::kEmpty) {
            slot = (slot + 1) & (index.size() - 1);
        }
        index[slot] = static_cast<std::uint32_t>(place);
    }

    Child* find(const InternedName* name) {
        expand();
        if (index.empty()) {
            const auto found = std::ranges::find(children, name, &Child::name);
            return found == children.end() ? nullptr : &*found;
        }
        for (std::size_t slot = name->hash.first & (index.size() - 1);
             index[slot] != NameIndex::kEmpty; slot = (slot + 1) & (index.size() - 1)) {
            if (children[index[slot]].name == name) {
                return &children[index[slot]];
            }
        }
        return nullptr;
    }

    Child& findOrAppend(const InternedName* name) {
        if (Child* child = find(name)) {
            return *child;
        }
        if (children.size() + 1 >= NameIndex::kEmpty) {
            throw std::runtime_error("GroupBuilder: too many children");
        }
        if (children.capacity() == 0) {
            children.reserve(8);
        }
        children.push_back(Child{name, Attribute(), nullptr, true});
        if (index.empty() ? children.size() >= NameIndex::kThreshold
                          : children.size() * 3 > index.size() * 2) {
            rebuildIndex();
        } else if (!index.empty()) {
            addToIndex(children.size() - 1);
        }
        return children.back();
    }

    std::vector<Child> children;
    std::vector<std::uint32_t> index; ///< empty while there are few children
    std::size_t deletedCount = 0;
    GroupAttribute base; ///< when valid it is the content, and the rest is empty
};

namespace {

/// Throws for a name that can't be set.
void checkName(std::string_view dotted) {
    int depth = 0;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string_view::npos; begin = end + 1) {
        end = dotted.find('.', begin);
        if (end == begin || begin == dotted.size()) {
            throw std::runtime_error("GroupBuilder::set: empty name in \"" + std::string(dotted) +
                                     "\"");
        }
        if (++depth > GroupBuilder::kMaxDepth) {
            throw std::runtime_error("GroupBuilder::set: more than " +
                                     std::to_string(GroupBuilder::kMaxDepth) +
                                     " names in a dotted name");
        }
        if (end == std::string_view::npos) {
            break;
        }
    }
}

} // namespace

GroupBuilder::GroupBuilder() noexcept = default;
GroupBuilder::~GroupBuilder() = default;
GroupBuilder::GroupBuilder(GroupBuilder&&) noexcept = default;
GroupBuilder& GroupBuilder::operator=(GroupBuilder&&) noexcept = default;

GroupBuilder::Level& GroupBuilder::top() {
    if (!root) {
        root = std::make_unique<Level>();
    }
    return *root;
}

GroupBuilder& GroupBuilder::set(std::string_view dotted, const Attribute& attribute,
                                bool groupInherit) {
    checkName(dotted);
    if (!attribute) {
        return del(dotted);
    }
    Level* level = &top();
    for (std::size_t dot = dotted.find('.'); dot != std::string_view::npos;
         dot = dotted.find('.')) {
        level = &level->descend(internName(dotted.substr(0, dot)));
        dotted.remove_prefix(dot + 1);
    }
    level->set(internName(dotted), attribute, groupInherit);
    return *this;
}

GroupBuilder& GroupBuilder::update(const GroupAttribute& group) {
    if (group) {
        top().update(group);
    }
    return *this;
}

GroupBuilder& GroupBuilder::deepUpdate(const GroupAttribute& group) {
    if (group) {
        top().deepUpdate(group, 1);
    }
    return *this;
}

GroupBuilder& GroupBuilder::del(std::string_view dotted) {
    Level* level = root.get();
    for (std::size_t dot = dotted.find('.'); level && dot != std::string_view::npos;
         dot = dotted.find('.')) {
        level = level->descendIfThere(internName(dotted.substr(0, dot)));
        dotted.remove_prefix(dot + 1);
    }
    if (level) {
        level->remove(internName(dotted));
    }
    return *this;
}

GroupBuilder& GroupBuilder::reserve(std::size_t count) {
    top().reserve(count);
    return *this;
}

bool GroupBuilder::isValid() const noexcept {
    return root && root->size() != 0;
}

GroupAttribute GroupBuilder::build(BuildMode mode) {
    return root ? root->build(mode) : GroupAttribute::Empty();
}

} // namespace VlAttribute
