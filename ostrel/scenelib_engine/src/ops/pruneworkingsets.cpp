#include "ops/pruneworkingsets.h"

#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

using Indices = std::vector<std::size_t>;

/// The places of those names that the list has, in its order.
Indices findPlaces(const ChildList& list, const StringAttribute& names) {
    Indices places;
    for (const std::string_view name : names.getNearestSample(0)) {
        const std::size_t place = list.find(name);
        if (place != ChildList::kNone) {
            places.push_back(place);
        }
    }
    std::ranges::sort(places);
    return places;
}

/// Which children are kept by one set at least. None: all of them, and all below.
std::optional<Indices> findKept(const GroupAttribute& sets, const ChildList& list) {
    Indices kept;
    std::optional<Indices> dropped; // by every set that drops by name
    for (std::int64_t i = 0; i < sets.getNumberOfChildren(); ++i) {
        const GroupAttribute set(sets.getChildByIndex(i));
        Indices both;
        const StringAttribute keptNames(set.getChildByName("keptChildren"));
        const StringAttribute droppedNames(set.getChildByName("droppedChildren"));
        if (keptNames) {
            std::ranges::set_union(kept, findPlaces(list, keptNames), std::back_inserter(both));
            kept = std::move(both);
        } else if (droppedNames) {
            Indices places = findPlaces(list, droppedNames);
            if (dropped) {
                std::ranges::set_intersection(*dropped, places, std::back_inserter(both));
                places = std::move(both);
            }
            dropped = std::move(places);
        } else {
            return std::nullopt;
        }
    }
    if (dropped) {
        Indices gone;
        std::ranges::set_difference(*dropped, kept, std::back_inserter(gone));
        kept.clear();
        for (std::size_t place = 0, next = 0; place < list.size(); ++place) {
            if (next < gone.size() && gone[next] == place) {
                ++next;
            } else {
                kept.push_back(place);
            }
        }
    }
    return kept;
}

} // namespace

CookResult PruneWorkingSets::cook(CookContext& context) const {
    const StringAttribute groupName(context.getArg("groupName"));
    const InputLocation input = context.getInput(0);
    const GroupAttribute sets(input.getAttrs().getChildByName(groupName.getValueCstr()));
    const ChildList::Ptr& list = input.getChildren();
    if (sets.getNumberOfChildren() == 0 || !list) {
        return CookResult::sameAsInput(0);
    }
    const std::optional<Indices> kept = findKept(sets, *list);
    if (!kept) {
        return CookResult::sameAsInput(0);
    }
    if (kept->size() == list->size()) {
        return {input.getAttrs(), list->withContexts(nullptr)};
    }
    std::vector<std::string_view> names;
    names.reserve(kept->size());
    for (const std::size_t place : *kept) {
        names.push_back(list->getName(place));
    }
    return {input.getAttrs(),
            ChildList::create(StringAttribute(std::span<const std::string_view>(names)))};
}

} // namespace VlScenelibEngine
