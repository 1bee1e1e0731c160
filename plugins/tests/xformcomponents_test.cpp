#include "manipulator/xformcomponents.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

// Which component of a transform a manipulator edits.
namespace {

using Bundled::XformComponents;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using Kind = XformComponents::Kind;

GroupAttribute groupOf(const std::vector<std::pair<const char*, Attribute>>& entries) {
    GroupBuilder builder;
    for (const auto& [name, value] : entries) {
        builder.set(name, value);
    }
    return builder.build();
}

const DoubleAttribute kOneTwoThree({1, 2, 3}, 3);
const DoubleAttribute kFourFiveSix({4, 5, 6}, 3);

TEST(XformComponents, takesTheInnermostThatBearsTheName) {
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
        const auto found = XformComponents::find(row.xform, Kind::Translate);
        EXPECT_TRUE(found.exists()) << row.name;
        EXPECT_EQ(found.values, row.values) << row.name;
        const auto settings = found.settings({7, 8, 9});
        ASSERT_EQ(settings.size(), 1u) << row.name;
        EXPECT_EQ(settings[0].first, row.attribute) << row.name;
        EXPECT_EQ(settings[0].second, DoubleAttribute({7, 8, 9}, 3)) << row.name;
    }
}

TEST(XformComponents, withoutOneThatItCanEditMakesAGroupAtRest) {
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
        const auto found = XformComponents::find(row.xform, Kind::Translate);
        EXPECT_FALSE(found.exists()) << row.name;
        EXPECT_EQ(found.settings(found.values).at(0).first, row.attribute) << row.name;
        EXPECT_EQ(found.values, (std::vector<double>{0, 0, 0})) << row.name;
    }
}

TEST(XformComponents, madeGroupHasAllComponentsInAnOrderThatShearsNothing) {
    const auto scale = XformComponents::find(GroupAttribute(), Kind::Scale);
    EXPECT_EQ(scale.values, (std::vector<double>{1, 1, 1}));
    const GroupAttribute made(scale.settings({2, 3, 4}).at(0).second);
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < made.getNumberOfChildren(); ++i) {
        names.emplace_back(made.getChildName(i));
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"translate", "rotateZ", "rotateY", "rotateX", "scale"}));
    EXPECT_EQ(made.getChildByName("scale"), DoubleAttribute({2, 3, 4}, 3));
    EXPECT_EQ(made.getChildByName("rotateY"), DoubleAttribute({0, 0, 1, 0}, 4));
}

Attribute around(double degrees, double x, double y, double z) {
    return DoubleAttribute({degrees, x, y, z}, 4);
}

TEST(XformComponents, rotationIsTheInnermostThreeUprightOnesOrTheInnermostOne) {
    const Attribute x = around(10, 1, 0, 0);
    const Attribute y = around(20, 0, 1, 0);
    const Attribute z = around(30, 0, 0, 1);
    const struct {
        const char* name;
        GroupAttribute xform;
        const char* group;
        std::vector<std::string> names;
    } rows[] = {
        {"three in the usual order",
         groupOf({{"a.translate", kOneTwoThree},
                  {"a.rotateZ", z},
                  {"a.rotateY", y},
                  {"a.rotateX", x},
                  {"a.scale", kFourFiveSix}}),
         "a",
         {"rotateZ", "rotateY", "rotateX"}},
        {"in another, and behind the scale",
         groupOf({{"a.scale", kFourFiveSix}, {"a.rotateX", x}, {"a.rotateZ", z}, {"a.rotateY", y}}),
         "a",
         {"rotateX", "rotateZ", "rotateY"}},
        {"of four the last three",
         groupOf({{"a.rotateAxis", x}, {"a.rotateZ", z}, {"a.rotateY", y}, {"a.rotateX", x}}),
         "a",
         {"rotateZ", "rotateY", "rotateX"}},
        {"two are too few", groupOf({{"a.rotateY", y}, {"a.rotateX", x}}), "a", {"rotateX"}},
        {"three that are not upright to each other",
         groupOf({{"a.rotateX", x}, {"a.rotateY", y}, {"a.rotateAxis", x}}),
         "a",
         {"rotateAxis"}},
        {"three that do not stand side by side",
         groupOf({{"a.rotateZ", z}, {"a.rotateY", y}, {"a.scale", kOneTwoThree}, {"a.rotateX", x}}),
         "a",
         {"rotateX"}},
        {"of two groups the last",
         groupOf({{"a.rotateZ", z}, {"a.rotateY", y}, {"a.rotateX", x}, {"b.rotateY", y}}),
         "b",
         {"rotateY"}},
        {"one whose name a partial transform would take for another's",
         groupOf({{"a.rotateYZ", z}, {"a.translate", kOneTwoThree}, {"a.rotateY", y}}),
         "interactive",
         {"rotateZ", "rotateY", "rotateX"}},
        {"values of no rotation",
         groupOf({{"a.rotateY", kOneTwoThree}}),
         "interactive",
         {"rotateZ", "rotateY", "rotateX"}},
    };
    for (const auto& row : rows) {
        const auto found = XformComponents::find(row.xform, Kind::Rotate);
        EXPECT_EQ(found.group, row.group) << row.name;
        EXPECT_EQ(found.names, row.names) << row.name;
        EXPECT_EQ(found.exists(), found.group != "interactive") << row.name;
        EXPECT_EQ(found.values.size(), 4 * found.names.size()) << row.name;
    }
}

TEST(XformComponents, rotationsAreSetOneByOneOrWithTheGroupThatIsMade) {
    const std::vector<double> values = {1, 0, 0, 1, 2, 0, 1, 0, 3, 1, 0, 0};
    const auto there = XformComponents::find(groupOf({{"a.rotateZ", around(0, 0, 0, 1)},
                                                      {"a.rotateY", around(0, 0, 1, 0)},
                                                      {"a.rotateX", around(0, 1, 0, 0)}}),
                                             Kind::Rotate);
    const std::vector<XformComponents::Setting> expected = {
        {"xform.a.rotateZ", around(1, 0, 0, 1)},
        {"xform.a.rotateY", around(2, 0, 1, 0)},
        {"xform.a.rotateX", around(3, 1, 0, 0)}};
    EXPECT_EQ(there.settings(values), expected);

    const auto settings = XformComponents::find(GroupAttribute(), Kind::Rotate).settings(values);
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0].first, "xform.interactive");
    const GroupAttribute made(settings[0].second);
    EXPECT_EQ(made.getChildByName("rotateZ"), around(1, 0, 0, 1));
    EXPECT_EQ(made.getChildByName("rotateX"), around(3, 1, 0, 0));
    EXPECT_EQ(made.getNumberOfChildren(), 5);
}

} // namespace
