#include "nametable.h"

#include "hashstream.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <vector>

namespace VlAttribute {

namespace {

/// One part of the table, with a lock of its own: threads that intern different names rarely meet.
class Shard {
public:
    const InternedName* intern(std::string_view name, const Hash& hash) {
        const std::lock_guard<std::mutex> lock(mutex);
        if ((count + 1) * 3 > slots.size() * 2) {
            grow();
        }
        std::size_t slot = hash.first & (slots.size() - 1);
        while (slots[slot]) {
            if (slots[slot]->hash == hash && slots[slot]->text() == name) {
                return slots[slot];
            }
            slot = (slot + 1) & (slots.size() - 1);
        }
        const InternedName* made = store(name, hash);
        slots[slot] = made;
        ++count;
        return made;
    }

private:
    void grow() {
        std::vector<const InternedName*> larger(std::max<std::size_t>(16, slots.size() * 2));
        for (const InternedName* name : slots) {
            if (name) {
                std::size_t slot = name->hash.first & (larger.size() - 1);
                while (larger[slot]) {
                    slot = (slot + 1) & (larger.size() - 1);
                }
                larger[slot] = name;
            }
        }
        slots.swap(larger);
    }

    const InternedName* store(std::string_view name, const Hash& hash) {
        constexpr std::size_t kAlignment = alignof(InternedName);
        const std::size_t size =
            (sizeof(InternedName) + name.size() + kAlignment) / kAlignment * kAlignment;
        if (size > available) {
            const std::size_t blockSize = std::max<std::size_t>(size, 4096);
            blocks.push_back(std::make_unique<std::byte[]>(blockSize));
            next = blocks.back().get();
            available = blockSize;
        }
        auto* made = new (next) InternedName(hash, static_cast<std::uint32_t>(name.size()));
        char* text = reinterpret_cast<char*>(made + 1);
        std::copy(name.begin(), name.end(), text);
        text[name.size()] = 0;
        next += size;
        available -= size;
        return made;
    }

    std::mutex mutex;
    std::vector<const InternedName*> slots;
    std::size_t count = 0;
    std::vector<std::unique_ptr<std::byte[]>> blocks;
    std::byte* next = nullptr;
    std::size_t available = 0;
};

constexpr std::size_t kShardCount = 64;
constexpr std::size_t kRecentCount = 256;

} // namespace

Hash hashName(std::string_view name) noexcept {
    const XXH128_hash_t result = XXH3_128bits(name.data(), name.size());
    return Hash{result.high64, result.low64};
}

const InternedName* internName(std::string_view name) {
    if (name.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::runtime_error("attribute name of " + std::to_string(name.size()) +
                                 " bytes is too long");
    }
    const Hash hash = hashName(name);
    // The handful of names that every location bears are found without a lock.
    thread_local std::array<const InternedName*, kRecentCount> recent{};
    const InternedName*& place = recent[hash.second % kRecentCount];
    if (place && place->hash == hash && place->text() == name) {
        return place;
    }
    // Never destroyed: attributes in static objects outlive any order of destruction.
    static auto* const shards = new std::array<Shard, kShardCount>();
    place = (*shards)[hash.second / kRecentCount % kShardCount].intern(name, hash);
    return place;
}

} // namespace VlAttribute
