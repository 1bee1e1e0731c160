#include "ops/resolveworkingsets.h"

#include "ops/workingsets.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// The sets of one op. Shared by its cooks.
using WorkingSets = std::vector<WorkingSet>;

/// Whether locations of which the sets say the same are given the same.
bool haveSameSettings(const WorkingSets& left, const WorkingSets& right) {
    return &left == &right ||
           std::ranges::equal(left, right, [](const WorkingSet& a, const WorkingSet& b) {
               return a.output == b.output && a.childrenInherit == b.childrenInherit &&
                      a.isPolished == b.isPolished;
           });
}

/// What a set that is polished writes on a location, but for the lists. Shared, as locations are
/// many.
const GroupAttribute& getPolished(bool isIncluded, bool hasIncludedChildren, bool handsOn) {
    static const std::vector<GroupAttribute> all = [] {
        std::vector<GroupAttribute> groups;
        for (int flags = 0; flags < 8; ++flags) {
            groups.push_back({{"polished.included", IntAttribute(flags >> 2)},
                              {"polished.hasIncludedChildren", IntAttribute(flags >> 1 & 1)},
                              {"polished.childrenInheritInclusion", IntAttribute(flags & 1)}});
        }
        return groups;
    }();
    return all[(isIncluded ? 4U : 0U) + (hasIncludedChildren ? 2U : 0U) + (handsOn ? 1U : 0U)];
}

/// One set at one location.
struct SetState {
    /// Null when the set names nothing at or below the location.
    const NamedLocation* named = nullptr;
    /// Whether the parent is included and hands that on.
    bool isInherited = false;

    [[nodiscard]] bool isIncluded() const {
        using Mark = NamedLocation::Mark;
        const Mark mark = named ? named->mark : Mark::None;
        return mark == Mark::Included || (mark == Mark::None && isInherited);
    }
    [[nodiscard]] bool leadsToIncluded() const { return named && named->leadsToIncluded; }
    [[nodiscard]] bool isKept() const { return isIncluded() || leadsToIncluded(); }

    friend bool operator==(const SetState& left, const SetState& right) {
        if (left.isInherited != right.isInherited) {
            return false;
        }
        return left.named && right.named ? *left.named == *right.named : left.named == right.named;
    }
};

/// All sets, in their order.
using LocationState = std::vector<SetState>;

/// The states of a location's children.
class ResolveContexts final : public ChildContexts {
public:
    ResolveContexts(std::shared_ptr<const WorkingSets> workingSets, LocationState stateOfUnnamed,
                    std::map<std::size_t, LocationState> namedStates)
        : sets(std::move(workingSets)), unnamed(std::move(stateOfUnnamed)),
          named(std::move(namedStates)) {}

    [[nodiscard]] const LocationState& get(std::size_t index) const {
        const auto found = named.find(index);
        return found == named.end() ? unnamed : found->second;
    }
    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override {
        const auto& others = static_cast<const ResolveContexts&>(other);
        return haveSameSettings(*sets, *others.sets) && get(index) == others.get(otherIndex);
    }
    [[nodiscard]] std::vector<std::size_t> findChanged(const ChildContexts& other,
                                                       std::size_t count) const override {
        const auto& others = static_cast<const ResolveContexts&>(other);
        if (!haveSameSettings(*sets, *others.sets) || unnamed != others.unnamed) {
            return ChildContexts::findChanged(other, count);
        }
        std::vector<std::size_t> changed;
        for (const auto* side : {this, &others}) {
            for (const auto& [index, state] : side->named) {
                if (!(get(index) == others.get(index))) {
                    changed.push_back(index);
                }
            }
        }
        return changed;
    }

    const std::shared_ptr<const WorkingSets> sets;

private:
    LocationState unnamed;
    /// By index: of the children that a set names or leads through.
    std::map<std::size_t, LocationState> named;
};

/// Empty when there is nothing to resolve.
WorkingSets readSets(CookContext& context) {
    WorkingSets sets;
    const std::string outputGroup = StringAttribute(context.getArg("outputGroupName")).getValue();
    if (outputGroup.empty()) {
        return sets;
    }
    const GroupAttribute info(context.getArg("workingSetsInfo"));
    for (std::int64_t i = 0; i < info.getNumberOfChildren(); ++i) {
        if (const GroupAttribute set{info.getChildByIndex(i)}) {
            sets.emplace_back(outputGroup + "." + std::string(info.getChildName(i)), set);
        }
    }
    return sets;
}

/// The cook of one location.
class LocationResolver {
public:
    LocationResolver(std::shared_ptr<const WorkingSets> workingSets, LocationState locationState,
                     const InputLocation& inputLocation)
        : sets(std::move(workingSets)), state(std::move(locationState)), input(inputLocation),
          unnamed(state.size()) {
        attrs.update(input.getAttrs());
        for (std::size_t i = 0; i < state.size(); ++i) {
            unnamed[i].isInherited = state[i].isIncluded() && (*sets)[i].childrenInherit;
        }
    }

    [[nodiscard]] CookResult resolve(bool isRoot) {
        for (std::size_t i = 0; i < state.size(); ++i) {
            // The root bears every set, so that one that includes nothing is not taken for none.
            if (isRoot || state[i].isKept()) {
                resolveSet(i);
            }
        }
        const ChildList::Ptr& list = input.getChildren();
        return {attrs.build(), list ? list->withContexts(std::make_shared<ResolveContexts>(
                                          std::move(sets), std::move(unnamed), std::move(named)))
                                    : nullptr};
    }

private:
    void resolveSet(std::size_t setIndex) {
        const WorkingSet& set = (*sets)[setIndex];
        const bool handsOn = unnamed[setIndex].isInherited;
        bool hasIncludedChildren = false;
        std::vector<std::string_view> kept;
        std::vector<std::string_view> dropped;
        forEachNamedChild(setIndex, [&](std::size_t index, const NamedLocation& child) {
            const SetState childState{&child, handsOn};
            hasIncludedChildren = hasIncludedChildren || child.leadsToIncluded;
            (childState.isKept() ? kept : dropped).push_back(input.getChildren()->getName(index));
            // What is not kept is the same whatever the set says of it and of what is below.
            named.try_emplace(index, unnamed).first->second[setIndex] =
                childState.isKept() ? childState : SetState();
        });
        GroupBuilder output;
        if (set.isPolished) {
            output.update(getPolished(state[setIndex].isIncluded(), hasIncludedChildren, handsOn));
        }
        const NamedLocation* const names = state[setIndex].named;
        if (!handsOn) {
            output.set("keptChildren", toAttribute(kept));
        } else if (names && names->excludesBelow) {
            output.set("droppedChildren", toAttribute(dropped));
        }
        attrs.set(set.output, output.build());
    }

    static StringAttribute toAttribute(const std::vector<std::string_view>& names) {
        return StringAttribute(std::span<const std::string_view>(names));
    }

    /// Calls `visit` for the children that the set names and the input has.
    template <typename Visit>
    void forEachNamedChild(std::size_t setIndex, Visit&& visit) const {
        const NamedLocation* const names = state[setIndex].named;
        if (!names || !input.getChildren()) {
            return;
        }
        for (const auto& [name, child] : names->children) {
            const std::size_t index = input.getChildren()->find(name);
            if (index != ChildList::kNone) {
                visit(index, *child);
            }
        }
    }

    std::shared_ptr<const WorkingSets> sets;
    const LocationState state;
    const InputLocation& input;
    GroupBuilder attrs;
    LocationState unnamed;
    std::map<std::size_t, LocationState> named;
};

} // namespace

CookResult ResolveWorkingSets::cook(CookContext& context) const {
    std::shared_ptr<const WorkingSets> sets;
    LocationState state;
    if (context.isRoot()) {
        sets = std::make_shared<WorkingSets>(readSets(context));
        if (sets->empty()) {
            return CookResult::sameAsInput(0);
        }
        for (const WorkingSet& set : *sets) {
            state.push_back({set.top.findChild(context.getName()), false});
        }
    } else {
        const auto& contexts = context.getContextsAs<ResolveContexts>();
        sets = contexts.sets;
        state = contexts.get(context.getChildIndex());
        if (std::ranges::none_of(state, &SetState::isKept)) {
            return CookResult::sameAsInput(0);
        }
    }
    const InputLocation input = context.getInput(0);
    if (!input.exists()) {
        return CookResult::sameAsInput(0);
    }
    return LocationResolver(std::move(sets), std::move(state), input).resolve(context.isRoot());
}

} // namespace VlScenelibEngine
