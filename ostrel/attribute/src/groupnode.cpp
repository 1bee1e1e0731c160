#include "groupnode.h"

#include "hashstream.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace VlAttribute {

std::size_t NameIndex::slotCount(std::size_t nameCount) noexcept {
    return std::bit_ceil(nameCount + nameCount / 2 + 1);
}

GroupNode* GroupNode::make(std::size_t count) {
    if (count >= NameIndex::kEmpty) {
        throw std::runtime_error("group attribute: " + std::to_string(count) + " children");
    }
    const std::size_t slots = count < NameIndex::kThreshold ? 0 : NameIndex::slotCount(count);
    void* memory = ::operator new(sizeof(GroupNode) + count * sizeof(GroupChild) +
                                  slots * sizeof(std::uint32_t));
    auto* node = new (memory) GroupNode();
    node->indexSize = static_cast<std::uint32_t>(slots);
    return node;
}

void GroupNode::add(GroupChild child) noexcept {
    std::construct_at(children().data() + childCount, std::move(child));
    ++childCount;
}

void GroupNode::finish() noexcept {
    if (indexSize == 0) {
        return;
    }
    std::uint32_t* slots = index();
    std::fill_n(slots, indexSize, NameIndex::kEmpty);
    for (std::uint32_t place = 0; place < childCount; ++place) {
        std::size_t slot = children()[place].name()->hash.first & (indexSize - 1);
        while (slots[slot] != NameIndex::kEmpty) {
            slot = (slot + 1) & (indexSize - 1);
        }
        slots[slot] = place;
    }
}

std::int64_t GroupNode::find(std::string_view name) const noexcept {
    const std::span<const GroupChild> all = children();
    if (indexSize == 0) {
        for (std::size_t place = 0; place < all.size(); ++place) {
            if (all[place].name()->text() == name) {
                return static_cast<std::int64_t>(place);
            }
        }
        return -1;
    }
    const Hash wanted = hashName(name);
    const std::uint32_t* slots = index();
    for (std::size_t slot = wanted.first & (indexSize - 1); slots[slot] != NameIndex::kEmpty;
         slot = (slot + 1) & (indexSize - 1)) {
        const InternedName* candidate = all[slots[slot]].name();
        if (candidate->hash == wanted && candidate->text() == name) {
            return slots[slot];
        }
    }
    return -1;
}

Hash GroupNode::contentHash() const noexcept {
    HashStream stream;
    stream.appendValue(static_cast<std::uint32_t>(type));
    stream.appendValue(childCount);
    for (const GroupChild& child : children()) {
        stream.appendValue(child.name()->hash);
        stream.appendValue(static_cast<std::uint64_t>(child.isInherit() ? 1 : 0));
        stream.appendValue(child.value.getHash());
    }
    return stream.finish();
}

} // namespace VlAttribute
