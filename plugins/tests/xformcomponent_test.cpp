#include "manipulator/xformcomponent.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

// Which component of a transform a manipulator edits.
namespace {

using Bundled::XformComponent;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

GroupAttribute groupOf(const std::vector<std::pair<const char*, Attribute>>& entries) {
    GroupBuilder builder;
    for (const auto& [name, value] : entries) {
        builder.set(name, value);
    }
    return builder.build();
}

const DoubleAttribute kOneTwoThree({1, 2, 3}, 3);
const DoubleAttribute kFourFiveSix({4, 5, 6}, 3);

TEST(XformComponent, takesTheInnermostThatBearsTheName) {
    const struct {
        const char* name;
        GroupAttribute xform;
        const char* attribute;
        std::vector<double> values;
    } rows[] = {
        {"the only one",
         groupOf({{"placed.translate", kOneTwoThree}}),
         "xform.placed.translate",
         {1, 2, 3}},
        {"of two groups the last",
         groupOf({{"a.translate", kOneTwoThree}, {"b.translate", kFourFiveSix}}),
         "xform.b.translate",
         {4, 5, 6}},
        {"groups without one do not count",
         groupOf({{"a.translate", kOneTwoThree}, {"b.scale", kFourFiveSix}}),
         "xform.a.translate",
         {1, 2, 3}},
        {"longer names behind it do not matter",
         groupOf({{"a.translate", kOneTwoThree}, {"a.translatePivot", kFourFiveSix}}),
         "xform.a.translate",
         {1, 2, 3}},
    };
    for (const auto& row : rows) {
        const auto found = XformComponent::find(row.xform, "translate");
        EXPECT_TRUE(found.exists()) << row.name;
        EXPECT_EQ(found.attributeName(), row.attribute) << row.name;
        EXPECT_EQ(found.values, row.values) << row.name;
        EXPECT_EQ(found.attribute({7, 8, 9}), DoubleAttribute({7, 8, 9}, 3)) << row.name;
    }
}

TEST(XformComponent, withoutOneThatItCanEditMakesAGroupAtRest) {
    const struct {
        const char* name;
        GroupAttribute xform;
        const char* attribute;
    } rows[] = {
        {"no transform at all", GroupAttribute(), "xform.interactive"},
        {"another kind of component", groupOf({{"local.matrix", DoubleAttribute({1.0})}}),
         "xform.interactive"},
        {"a longer name before it, which a partial transform would take for it",
         groupOf({{"a.translatePivot", kFourFiveSix}, {"a.translate", kOneTwoThree}}),
         "xform.interactive"},
        {"values of another kind", groupOf({{"a.translate", VlAttribute::StringAttribute("up")}}),
         "xform.interactive"},
        {"too few values", groupOf({{"a.translate", DoubleAttribute({1.0})}}), "xform.interactive"},
        {"the name is in use", groupOf({{"interactive.matrix", DoubleAttribute({1.0})}}),
         "xform.interactive2"},
    };
    for (const auto& row : rows) {
        const auto found = XformComponent::find(row.xform, "translate");
        EXPECT_FALSE(found.exists()) << row.name;
        EXPECT_EQ(found.attributeName(), row.attribute) << row.name;
        EXPECT_EQ(found.values, (std::vector<double>{0, 0, 0})) << row.name;
    }
}

TEST(XformComponent, madeGroupHasAllComponentsInAnOrderThatShearsNothing) {
    const auto scale = XformComponent::find(GroupAttribute(), "scale");
    EXPECT_EQ(scale.values, (std::vector<double>{1, 1, 1}));
    const GroupAttribute made(scale.attribute({2, 3, 4}));
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < made.getNumberOfChildren(); ++i) {
        names.emplace_back(made.getChildName(i));
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"translate", "rotateZ", "rotateY", "rotateX", "scale"}));
    EXPECT_EQ(made.getChildByName("scale"), DoubleAttribute({2, 3, 4}, 3));
    EXPECT_EQ(made.getChildByName("rotateY"), DoubleAttribute({0, 0, 1, 0}, 4));
}

TEST(XformComponent, rotationsHaveAnAngleAndAnAxis) {
    const auto found = XformComponent::find(
        groupOf({{"placed.rotateY", DoubleAttribute({30, 0, 1, 0}, 4)}}), "rotateY");
    EXPECT_EQ(found.values, (std::vector<double>{30, 0, 1, 0}));
    EXPECT_EQ(found.attribute({45, 0, 1, 0}), DoubleAttribute({45, 0, 1, 0}, 4));
}

} // namespace
