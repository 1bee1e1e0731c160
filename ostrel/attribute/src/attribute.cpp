#include "VlAttribute/Attribute.h"

#include "datanode.h"
#include "groupnode.h"

#include <memory>
#include <new>
#include <thread>
#include <vector>

namespace VlAttribute {

namespace {

bool hasHash(const VlAttributeStruct* node) noexcept {
    return node->hashState.load(std::memory_order_acquire) == 2;
}

/// Writes a node's hash for all threads. Several may have computed it, with the same result: one
/// of them writes, which takes a few instructions, and the others wait for that.
void publishHash(VlAttributeStruct* node, const Hash& hash) noexcept {
    std::uint8_t none = 0;
    if (node->hashState.compare_exchange_strong(none, 1, std::memory_order_relaxed)) {
        node->hash = hash;
        node->hashState.store(2, std::memory_order_release);
        return;
    }
    while (!hasHash(node)) {
        std::this_thread::yield();
    }
}

/// Groups may nest as deep as memory allows, so the call stack does not follow them here, nor in
/// the comparison and the destruction below.
void hashGroup(GroupNode* top) {
    std::vector<GroupNode*> open;
    const auto openChildren = [&open](GroupNode* group) {
        const std::size_t before = open.size();
        for (const GroupChild& child : group->children()) {
            VlAttributeStruct* node = child.value.getHandle();
            if (node->type == AttributeType::Group && !hasHash(node)) {
                open.push_back(static_cast<GroupNode*>(node));
            }
        }
        return open.size() != before;
    };
    if (openChildren(top)) {
        while (!open.empty()) {
            GroupNode* group = open.back();
            if (hasHash(group)) {
                open.pop_back();
            } else if (!openChildren(group)) {
                publishHash(group, group->contentHash());
                open.pop_back();
            }
        }
    }
    publishHash(top, top->contentHash());
}

} // namespace

const char* getTypeName(AttributeType type) noexcept {
    switch (type) {
    case AttributeType::Int:
        return "int";
    case AttributeType::Float:
        return "float";
    case AttributeType::Double:
        return "double";
    case AttributeType::String:
        return "string";
    case AttributeType::Group:
        return "group";
    case AttributeType::None:
        break;
    }
    return "none";
}

const Hash& Attribute::computeHash() const noexcept {
    static constexpr Hash kNoHash{};
    if (!shared) {
        return kNoHash;
    }
    if (shared->type == AttributeType::Group) {
        hashGroup(static_cast<GroupNode*>(shared));
    } else {
        publishHash(shared, static_cast<const DataNode*>(shared)->contentHash());
    }
    return shared->hash;
}

bool Attribute::equal(VlAttributeStruct* left, VlAttributeStruct* right) noexcept {
    if (left == right) {
        return true;
    }
    if (!left || !right || left->type != right->type) {
        return false;
    }
    if (hasHash(left) && hasHash(right)) {
        return left->hash == right->hash;
    }
    if (left->type != AttributeType::Group) {
        return static_cast<const DataNode*>(left)->hasEqualContent(
            *static_cast<const DataNode*>(right));
    }

    const std::span<const GroupChild> a = static_cast<const GroupNode*>(left)->children();
    const std::span<const GroupChild> b = static_cast<const GroupNode*>(right)->children();
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!a[i].hasSameNameAndFlag(b[i]) || a[i].value.getType() != b[i].value.getType()) {
            return false;
        }
    }
    // Nested groups are compared by their hashes, which each keeps: values that share parts over
    // many levels would otherwise be walked once per road to them.
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool isGroup = a[i].value.getType() == AttributeType::Group;
        const bool isSame = a[i].value.getHandle() == b[i].value.getHandle();
        if (!isSame && (isGroup ? a[i].value.getHash() != b[i].value.getHash()
                                : !equal(a[i].value.getHandle(), b[i].value.getHandle()))) {
            return false;
        }
    }
    return true;
}

void detail::destroyNode(VlAttributeStruct* node) noexcept {
    // Dead groups form a list through their hashes, which nobody reads any more.
    VlAttributeStruct* dead = nullptr;
    const auto bury = [&dead](VlAttributeStruct* corpse) {
        if (corpse->type == AttributeType::Group) {
            corpse->hash.first = reinterpret_cast<std::uintptr_t>(dead);
            dead = corpse;
        } else {
            std::destroy_at(corpse);
            ::operator delete(corpse);
        }
    };
    bury(node);
    while (dead) {
        auto* group = static_cast<GroupNode*>(dead);
        dead = reinterpret_cast<VlAttributeStruct*>(group->hash.first);
        for (GroupChild& child : group->children()) {
            VlAttributeStruct* value = child.value.detach();
            if (value->refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) {
                bury(value);
            }
        }
        std::destroy_at(group);
        ::operator delete(group);
    }
}

} // namespace VlAttribute
