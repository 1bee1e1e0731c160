#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <bitset>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace VlScenelibEngine {

/// The sets of argument names that cooks of one op have read. Cooks of one op read few different
/// sets, so a node holds no names but the number of its set.
class ArgSets {
public:
    static constexpr std::size_t kCount = 256;

    /// The number of a set: 0 for the empty one; CookNode::kAllArgs when there are too many.
    /// [any-thread]
    [[nodiscard]] std::uint8_t add(std::vector<std::string> names);

    /// The sets whose values differ between the two groups, "all arguments" among them.
    [[nodiscard]] std::bitset<kCount> findChanged(const VlAttribute::GroupAttribute& before,
                                                  const VlAttribute::GroupAttribute& after) const;

private:
    mutable std::mutex mutex;
    /// Set i + 1; names sorted, without repeats.
    std::vector<std::vector<std::string>> sets;
};

} // namespace VlScenelibEngine
