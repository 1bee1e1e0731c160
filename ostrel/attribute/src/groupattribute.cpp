#include "VlAttribute/GroupAttribute.h"

#include "VlAttribute/GroupBuilder.h"
#include "groupnode.h"

namespace VlAttribute {

namespace {

const Attribute kNull;

const GroupChild* childAt(const Attribute& group, std::int64_t index) noexcept {
    const GroupNode* node = asGroupNode(group.getHandle());
    if (!node || index < 0 || index >= node->childCount) {
        return nullptr;
    }
    return &node->children()[static_cast<std::size_t>(index)];
}

} // namespace

GroupAttribute::GroupAttribute(
    std::initializer_list<std::pair<std::string_view, Attribute>> children) {
    GroupBuilder builder;
    builder.reserve(children.size());
    for (const auto& [name, child] : children) {
        builder.set(name, child);
    }
    *this = builder.build();
}

GroupAttribute GroupAttribute::Empty() {
    static const GroupAttribute* const empty = new GroupAttribute(GroupNode::make(0));
    return *empty;
}

std::int64_t GroupAttribute::getNumberOfChildren() const noexcept {
    const GroupNode* node = asGroupNode(getHandle());
    return node ? node->childCount : 0;
}

std::string_view GroupAttribute::getChildName(std::int64_t index) const noexcept {
    const GroupChild* child = childAt(*this, index);
    return child ? child->name()->text() : std::string_view("");
}

bool GroupAttribute::isGroupInherit(std::int64_t index) const noexcept {
    const GroupChild* child = childAt(*this, index);
    return child && child->isInherit();
}

std::int64_t GroupAttribute::findChild(std::string_view name) const noexcept {
    const GroupNode* node = asGroupNode(getHandle());
    return node ? node->find(name) : -1;
}

const Attribute& GroupAttribute::borrowChildByName(std::string_view dotted) const noexcept {
    const GroupNode* node = asGroupNode(getHandle());
    while (node) {
        const std::size_t dot = dotted.find('.');
        const std::int64_t place = node->find(dotted.substr(0, dot));
        if (place < 0) {
            break;
        }
        const Attribute& value = node->children()[static_cast<std::size_t>(place)].value;
        if (dot == std::string_view::npos) {
            return value;
        }
        dotted.remove_prefix(dot + 1);
        node = asGroupNode(value.getHandle());
    }
    return kNull;
}

const Attribute& GroupAttribute::borrowChildByIndex(std::int64_t index) const noexcept {
    const GroupChild* child = childAt(*this, index);
    return child ? child->value : kNull;
}

} // namespace VlAttribute
