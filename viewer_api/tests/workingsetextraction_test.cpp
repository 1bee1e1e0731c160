#include "workingsetextraction.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace ViewerAPI {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr const char* kPolished = "__viewerWorkingSets.viewerVisibility.polished.";

TEST(WorkingSetExtraction, leavesAttributesWithoutDataAsTheyAre) {
    const GroupAttribute attributes{{"type", StringAttribute("group")}};
    WorkingSetState state{true, true, true};
    const GroupAttribute cleaned = extractWorkingSetState(attributes, state);
    EXPECT_EQ(cleaned.getHandle(), attributes.getHandle());
    EXPECT_EQ(state, (WorkingSetState{true, true, true}));
}

TEST(WorkingSetExtraction, leavesNullAttributesAsTheyAre) {
    WorkingSetState state;
    EXPECT_FALSE(extractWorkingSetState({}, state).isValid());
    EXPECT_EQ(state, WorkingSetState{});
}

TEST(WorkingSetExtraction, leavesTheGroupOfAnotherSetAlone) {
    const GroupAttribute attributes =
        GroupBuilder().set("__viewerWorkingSets.other.polished.included", IntAttribute(1)).build();
    WorkingSetState state;
    EXPECT_EQ(extractWorkingSetState(attributes, state).getHandle(), attributes.getHandle());
    EXPECT_EQ(state, WorkingSetState{});
}

TEST(WorkingSetExtraction, takesTheWholeGroupOutAndKeepsTheRestInOrder) {
    const GroupAttribute attributes = GroupBuilder()
                                          .set("type", StringAttribute("group"))
                                          .set(std::string(kPolished) + "included", IntAttribute(1))
                                          .set("__viewerWorkingSets.other", IntAttribute(1))
                                          .set("bound", IntAttribute(3))
                                          .build();
    WorkingSetState state;
    const GroupAttribute cleaned = extractWorkingSetState(attributes, state);
    EXPECT_EQ(cleaned,
              (GroupAttribute{{"type", StringAttribute("group")}, {"bound", IntAttribute(3)}}));
}

TEST(WorkingSetExtraction, withoutPolishedOnlyTakesTheGroupOut) {
    const GroupAttribute attributes =
        GroupBuilder().set("__viewerWorkingSets.viewerVisibility.polish", IntAttribute(1)).build();
    WorkingSetState state;
    EXPECT_EQ(extractWorkingSetState(attributes, state), GroupAttribute::Empty());
    EXPECT_EQ(state, WorkingSetState{});
}

TEST(WorkingSetExtraction, leavesWhatIsNotToldUntouched) {
    const GroupAttribute attributes =
        GroupBuilder()
            .set("__viewerWorkingSets.viewerVisibility.polished", GroupAttribute::Empty())
            .build();
    WorkingSetState state{false, true, true};
    static_cast<void>(extractWorkingSetState(attributes, state));
    EXPECT_EQ(state, (WorkingSetState{true, true, true}));
}

struct StateRow {
    const char* name;
    std::optional<int> included;
    std::optional<int> hasIncludedChildren;
    std::optional<int> childrenInherit;
    WorkingSetState expected;
};

std::ostream& operator<<(std::ostream& out, const StateRow& row) {
    return out << row.name;
}

class WorkingSetStates : public testing::TestWithParam<StateRow> {};

TEST_P(WorkingSetStates, areReadFromTheThreeIntegers) {
    const StateRow& row = GetParam();
    GroupBuilder builder;
    builder.set("__viewerWorkingSets.viewerVisibility.polished", GroupAttribute::Empty());
    const std::string prefix = kPolished;
    if (row.included) {
        builder.set(prefix + "included", IntAttribute(*row.included));
    }
    if (row.hasIncludedChildren) {
        builder.set(prefix + "hasIncludedChildren", IntAttribute(*row.hasIncludedChildren));
    }
    if (row.childrenInherit) {
        builder.set(prefix + "childrenInheritInclusion", IntAttribute(*row.childrenInherit));
    }
    WorkingSetState state;
    static_cast<void>(extractWorkingSetState(builder.build(), state));
    EXPECT_EQ(state, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, WorkingSetStates,
    testing::Values(StateRow{"nothing", {}, {}, {}, {true, false, false}},
                    StateRow{"includedLeaf", 1, 0, 0, {true, true, true}},
                    StateRow{"includedWithChildren", 1, 1, 0, {true, true, false}},
                    StateRow{"includedAndInherited", 1, 0, 1, {true, true, false}},
                    StateRow{"excluded", 0, 0, 0, {true, false, false}},
                    StateRow{"aNumberOtherThanOneIsNotIncluded", 2, 0, 0, {true, false, false}},
                    StateRow{"leafNeedsInherit", 1, 0, {}, {true, true, false}},
                    StateRow{"leafNeedsChildren", 1, {}, 0, {true, true, false}},
                    StateRow{"leafNeedsIncluded", {}, 0, 0, {true, false, false}}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace ViewerAPI
