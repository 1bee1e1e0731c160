#include "ops/literal.h"

#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

CookResult cookLevel(const GroupAttribute& level) {
    GroupAttribute attrs(level.getChildByName("a"));
    const GroupAttribute children(level.getChildByName("c"));
    const std::int64_t count = children.getNumberOfChildren();
    if (count == 0) {
        return {std::move(attrs)};
    }
    std::vector<std::string_view> names;
    std::vector<Attribute> levels;
    names.reserve(static_cast<std::size_t>(count));
    levels.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        names.push_back(children.getChildName(i));
        levels.push_back(children.getChildByIndex(i));
    }
    return {std::move(attrs),
            ChildList::create(StringAttribute(std::span<const std::string_view>(names)),
                              std::make_shared<AttributeContexts>(std::move(levels)))};
}

} // namespace

CookResult Literal::cook(CookContext& context) const {
    if (!context.isRoot()) {
        return cookLevel(GroupAttribute(
            context.getContextsAs<AttributeContexts>().get(context.getChildIndex())));
    }
    const GroupAttribute scene(context.getArg("staticScene"));
    return scene ? cookLevel(scene) : CookResult::nothing();
}

} // namespace VlScenelibEngine
