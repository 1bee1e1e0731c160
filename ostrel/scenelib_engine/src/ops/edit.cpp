#include "ops/edit.h"

#include "VlAttribute/GroupBuilder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

/// What is neither: the attributes of an edit and the edits below it.
bool isPartOfName(std::string_view part, bool isBehindChild) {
    return !isBehindChild || (part != "a" && part != "c");
}

/// The edits of a location's children, each found when it is asked for: to cook the way to an edit
/// costs next to nothing of the other edits beside it.
///
/// They are by name, or by the rest of a name behind what leads there: a dot in a name leads
/// through nested groups, here as everywhere. Where what stands before a dot is a child's name too,
/// that child's own `a` and `c` are not taken for parts of a longer name.
class ChildEdits final : public ChildContexts {
public:
    ChildEdits(GroupAttribute editsByName, ChildList::Ptr children)
        : edits(std::move(editsByName)), list(std::move(children)) {}

    /// Whether a child has one.
    [[nodiscard]] bool isAny() const { return isAny(edits, "", false); }
    /// Null without one.
    [[nodiscard]] GroupAttribute get(std::size_t index) const {
        const std::string_view name = list->getName(index);
        GroupAttribute found = edits;
        bool isBehindChild = false;
        for (std::size_t begin = 0;;) {
            const std::size_t end = name.find('.', begin);
            const std::string_view part = name.substr(begin, end - begin);
            if (!isPartOfName(part, isBehindChild)) {
                return {};
            }
            found = GroupAttribute(found.getChildByName(part));
            if (!found || end == std::string_view::npos) {
                return found;
            }
            isBehindChild = list->find(name.substr(0, end)) != ChildList::kNone;
            begin = end + 1;
        }
    }
    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override {
        return get(index) == static_cast<const ChildEdits&>(other).get(otherIndex);
    }
    [[nodiscard]] std::vector<std::size_t> findChanged(const ChildContexts& other,
                                                       std::size_t /*count*/) const override {
        std::vector<std::size_t> changed;
        collectChanged(edits, static_cast<const ChildEdits&>(other).edits, "", false, changed);
        return changed;
    }

private:
    bool isAny(const GroupAttribute& group, const std::string& prefix, bool isBehindChild) const {
        for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
            const std::string_view part = group.getChildName(i);
            const GroupAttribute edit(group.getChildByIndex(i));
            if (edit.getNumberOfChildren() == 0 || !isPartOfName(part, isBehindChild)) {
                continue;
            }
            const std::string name = prefix + std::string(part);
            const bool isChild = list->find(name) != ChildList::kNone;
            if (isChild || isAny(edit, name + ".", isChild)) {
                return true;
            }
        }
        return false;
    }
    void collectChanged(const GroupAttribute& group, const GroupAttribute& other,
                        const std::string& prefix, bool isBehindChild,
                        std::vector<std::size_t>& changed) const {
        const auto collect = [&](std::string_view part, const Attribute& edit,
                                 const Attribute& otherEdit) {
            if (!isPartOfName(part, isBehindChild)) {
                return;
            }
            const std::string name = prefix + std::string(part);
            const std::size_t index = list->find(name);
            const bool isChild = index != ChildList::kNone;
            if (isChild) {
                changed.push_back(index);
            }
            collectChanged(GroupAttribute(edit), GroupAttribute(otherEdit), name + ".", isChild,
                           changed);
        };
        for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
            const std::string_view part = group.getChildName(i);
            // Mostly one of many has changed, and all stand where they stood.
            const bool isThere = other.getChildName(i) == part;
            const Attribute& edit = group.borrowChildByIndex(i);
            const Attribute& otherEdit =
                other.borrowChildByIndex(isThere ? i : other.findChild(part));
            if (edit != otherEdit) {
                collect(part, edit, otherEdit);
            }
        }
        for (std::int64_t i = 0; i < other.getNumberOfChildren(); ++i) {
            const std::string_view part = other.getChildName(i);
            if (group.getChildName(i) != part && group.findChild(part) < 0) {
                collect(part, Attribute(), other.borrowChildByIndex(i));
            }
        }
    }

    GroupAttribute edits;
    ChildList::Ptr list;
};

} // namespace

CookResult Edit::cook(CookContext& context) const {
    const GroupAttribute edit =
        context.isRoot() ? GroupAttribute(context.getArg("edits"))
                         : context.getContextsAs<ChildEdits>().get(context.getChildIndex());
    if (edit.getNumberOfChildren() == 0) {
        return CookResult::sameAsInput(0);
    }
    const InputLocation input = context.getInput(0);
    if (!input.exists()) {
        return CookResult::sameAsInput(0);
    }
    const GroupAttribute attrs(edit.getChildByName("a"));
    std::shared_ptr<const ChildEdits> childEdits;
    if (const ChildList::Ptr& children = input.getChildren()) {
        childEdits =
            std::make_shared<ChildEdits>(GroupAttribute(edit.getChildByName("c")), children);
    }
    if (attrs.getNumberOfChildren() == 0 && !(childEdits && childEdits->isAny())) {
        return CookResult::sameAsInput(0);
    }
    GroupBuilder merged;
    merged.update(input.getAttrs()).deepUpdate(attrs);
    return {merged.build(),
            childEdits ? input.getChildren()->withContexts(std::move(childEdits)) : nullptr};
}

} // namespace VlScenelibEngine
