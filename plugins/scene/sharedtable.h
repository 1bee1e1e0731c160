#pragma once

#include "VlAttribute/Hash.h"

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Bundled {

/// Values that many locations share, found by the hash of their content and dropped with their
/// last user. A slot is reused after a drop; the serial of a value never is, so whoever caches
/// something per value keys it by serial.
template <typename Value>
class SharedTable {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    /// The slot of the value with this content, made by `make()` when there is none; one more user.
    template <typename Make>
    std::uint32_t acquire(const VlAttribute::Hash& content, Make&& make) {
        const auto [place, isNew] = slotByContent.try_emplace(content, kNone);
        if (isNew) {
            try {
                place->second = insert(content, make());
            } catch (...) {
                slotByContent.erase(place);
                throw;
            }
        }
        ++entries[place->second].users;
        return place->second;
    }

    /// One user less; `kNone` is allowed.
    void release(std::uint32_t slot) {
        if (slot == kNone || --entries[slot].users != 0) {
            return;
        }
        slotByContent.erase(entries[slot].content);
        entries[slot] = Entry{};
        freeSlots.push_back(slot);
        ++drops;
    }

    [[nodiscard]] const Value& operator[](std::uint32_t slot) const { return entries[slot].value; }
    [[nodiscard]] std::uint64_t getSerial(std::uint32_t slot) const { return entries[slot].serial; }
    [[nodiscard]] std::size_t size() const noexcept { return slotByContent.size(); }
    /// Grows with every value that is dropped: a cache with an older count has some to drop too.
    [[nodiscard]] std::uint64_t getDropCount() const noexcept { return drops; }

    /// Calls `visit(serial, value)` for each value, in no order.
    template <typename Visit>
    void forEach(Visit&& visit) const {
        for (const Entry& entry : entries) {
            if (entry.users != 0) {
                visit(entry.serial, entry.value);
            }
        }
    }

private:
    struct Entry {
        VlAttribute::Hash content;
        Value value{};
        std::uint64_t serial = 0;
        std::uint32_t users = 0;
    };

    std::uint32_t insert(const VlAttribute::Hash& content, Value&& value) {
        std::uint32_t slot = static_cast<std::uint32_t>(entries.size());
        if (freeSlots.empty()) {
            entries.emplace_back();
        } else {
            slot = freeSlots.back();
            freeSlots.pop_back();
        }
        entries[slot] = Entry{content, std::move(value), ++lastSerial, 0};
        return slot;
    }

    std::vector<Entry> entries;
    std::vector<std::uint32_t> freeSlots;
    std::unordered_map<VlAttribute::Hash, std::uint32_t> slotByContent;
    std::uint64_t lastSerial = 0;
    std::uint64_t drops = 0;
};

} // namespace Bundled
