#include "workingsetextraction.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;

GroupAttribute extractWorkingSetState(GroupAttribute attributes, WorkingSetState& state) {
    const GroupAttribute visibility(
        attributes.borrowChildByName("__viewerWorkingSets.viewerVisibility"));
    if (!visibility) {
        return attributes;
    }
    if (const GroupAttribute polished(visibility.borrowChildByName("polished")); polished) {
        state.hasData = true;
        const auto isOne = [](const IntAttribute& attribute) { return attribute.getValue(0) == 1; };
        const IntAttribute included(polished.borrowChildByName("included"));
        const IntAttribute hasIncludedChildren(polished.borrowChildByName("hasIncludedChildren"));
        const IntAttribute childrenInherit(polished.borrowChildByName("childrenInheritInclusion"));
        if (included) {
            state.included = isOne(included);
            if (hasIncludedChildren && childrenInherit) {
                state.leaf =
                    state.included && !isOne(hasIncludedChildren) && !isOne(childrenInherit);
            }
        }
    }
    return GroupBuilder().update(attributes).del(kWorkingSetsGroupName).build();
}

} // namespace ViewerAPI
