#include "ops/collapse.h"

#include "VlAttribute/GroupBuilder.h"

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

GroupAttribute collapse(const InputTree& location) {
    GroupBuilder children;
    const ChildList::Ptr& list = location.getChildren();
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        const InputTree child = location.getChild(i);
        if (child.exists()) {
            children.set(list->getName(i), collapse(child));
        }
    }
    return {{"a", location.getAttrs()}, {"c", children.build()}};
}

} // namespace

CookResult Collapse::cook(CookContext& context) const {
    const InputTree input = context.getInputTree(0);
    return input.exists() ? CookResult(GroupAttribute{{"staticScene", collapse(input)}})
                          : CookResult::nothing();
}

} // namespace VlScenelibEngine
