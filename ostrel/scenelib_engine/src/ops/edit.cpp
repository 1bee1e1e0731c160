#include "ops/edit.h"

#include "VlAttribute/GroupBuilder.h"

#include <string>
#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

/// Collects the edits of those children that the list has, at the cost of the edits and not of the
/// list. `group` holds them by name, or by the rest of their names behind `prefix`: a dot in a name
/// leads through nested groups, here as everywhere. Where what stands before a dot is a child's
/// name too, that child's own `a` and `c` are not taken for parts of a longer name.
void collectEdits(const GroupAttribute& group, const std::string& prefix, bool isEdit,
                  const ChildList& list, std::vector<SparseContexts::Entry>& found) {
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        const std::string_view part = group.getChildName(i);
        const GroupAttribute edit(group.getChildByIndex(i));
        if (edit.getNumberOfChildren() == 0 || (isEdit && (part == "a" || part == "c"))) {
            continue;
        }
        const std::string name = prefix + std::string(part);
        const std::size_t index = list.find(name);
        const bool isChild = index != ChildList::kNone;
        if (isChild) {
            found.emplace_back(index, edit);
        }
        collectEdits(edit, name + ".", isChild, list, found);
    }
}

} // namespace

CookResult Edit::cook(CookContext& context) const {
    const GroupAttribute edit(
        context.isRoot() ? context.getArg("edits")
                         : context.getContextsAs<SparseContexts>().get(context.getChildIndex()));
    if (edit.getNumberOfChildren() == 0) {
        return CookResult::sameAsInput(0);
    }
    const InputLocation input = context.getInput(0);
    if (!input.exists()) {
        return CookResult::sameAsInput(0);
    }
    const GroupAttribute attrs(edit.getChildByName("a"));
    std::vector<SparseContexts::Entry> childEdits;
    if (input.getChildren()) {
        collectEdits(GroupAttribute(edit.getChildByName("c")), "", false, *input.getChildren(),
                     childEdits);
    }
    if (attrs.getNumberOfChildren() == 0 && childEdits.empty()) {
        return CookResult::sameAsInput(0);
    }
    GroupBuilder merged;
    merged.update(input.getAttrs()).deepUpdate(attrs);
    return {merged.build(), input.getChildren()
                                ? input.getChildren()->withContexts(
                                      std::make_shared<SparseContexts>(std::move(childEdits)))
                                : nullptr};
}

} // namespace VlScenelibEngine
