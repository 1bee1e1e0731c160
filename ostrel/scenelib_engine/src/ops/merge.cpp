#include "ops/merge.h"

#include "VlAttribute/GroupBuilder.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace VlScenelibEngine {

namespace {

using InputIndices = std::vector<std::uint32_t>;

/// Which inputs have each child, in their order.
class MergeContexts final : public ChildContexts {
public:
    explicit MergeContexts(std::vector<InputIndices> inputsOfChildren)
        : inputs(std::move(inputsOfChildren)) {}

    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override {
        return inputs[index] == static_cast<const MergeContexts&>(other).inputs[otherIndex];
    }

    std::vector<InputIndices> inputs;
};

struct MergedChildren {
    std::vector<std::string_view> names;
    std::vector<InputIndices> inputs;
    std::unordered_map<std::string_view, std::size_t> places;

    void add(const ChildList& list, std::uint32_t input) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            const auto [place, isNew] = places.emplace(list.getName(i), names.size());
            if (isNew) {
                names.push_back(list.getName(i));
                inputs.emplace_back();
            }
            inputs[place->second].push_back(input);
        }
    }
};

InputIndices findInputs(CookContext& context) {
    if (!context.isRoot()) {
        return context.getContextsAs<MergeContexts>().inputs[context.getChildIndex()];
    }
    InputIndices found;
    for (std::size_t i = 0; i < context.getNumberOfInputs(); ++i) {
        if (context.getInput(i).exists()) {
            found.push_back(static_cast<std::uint32_t>(i));
        }
    }
    return found;
}

} // namespace

CookResult Merge::cook(CookContext& context) const {
    const InputIndices inputs = findInputs(context);
    if (inputs.empty()) {
        return CookResult::nothing();
    }
    if (inputs.size() == 1) {
        return CookResult::sameAsInput(inputs.front());
    }
    VlAttribute::GroupBuilder attrs;
    MergedChildren children;
    for (const std::uint32_t input : inputs) {
        const InputLocation location = context.getInput(input);
        attrs.update(location.getAttrs());
        if (location.getChildren()) {
            children.add(*location.getChildren(), input);
        }
    }
    return {attrs.build(),
            ChildList::create(
                VlAttribute::StringAttribute(std::span<const std::string_view>(children.names)),
                std::make_shared<MergeContexts>(std::move(children.inputs)))};
}

} // namespace VlScenelibEngine
