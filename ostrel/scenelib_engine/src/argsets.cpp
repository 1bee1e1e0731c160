#include "argsets.h"

#include "cooknode.h"

#include <algorithm>

namespace VlScenelibEngine {

std::uint8_t ArgSets::add(std::vector<std::string> names) {
    if (names.empty()) {
        return 0;
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    const std::lock_guard lock(mutex);
    auto found = std::find(sets.begin(), sets.end(), names);
    if (found == sets.end()) {
        if (sets.size() + 1 >= CookNode::kAllArgs) {
            return CookNode::kAllArgs;
        }
        found = sets.insert(sets.end(), std::move(names));
    }
    return static_cast<std::uint8_t>(found - sets.begin() + 1);
}

std::bitset<ArgSets::kCount> ArgSets::findChanged(const VlAttribute::GroupAttribute& before,
                                                  const VlAttribute::GroupAttribute& after) const {
    std::bitset<kCount> changed;
    if (before == after) {
        return changed;
    }
    changed.set(CookNode::kAllArgs);
    const std::lock_guard lock(mutex);
    for (std::size_t i = 0; i < sets.size(); ++i) {
        changed[i + 1] = std::any_of(sets[i].begin(), sets[i].end(), [&](const std::string& name) {
            return !(before.borrowChildByName(name) == after.borrowChildByName(name));
        });
    }
    return changed;
}

} // namespace VlScenelibEngine
