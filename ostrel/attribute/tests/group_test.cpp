#include "VlAttribute/VlAttribute.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace VlAttribute;

std::string namesOf(const GroupAttribute& group) {
    std::string names;
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        names += std::string(i == 0 ? "" : " ") + std::string(group.getChildName(i));
    }
    return names;
}

std::int32_t intAt(const GroupAttribute& group, std::string_view name) {
    return IntAttribute(group.getChildByName(name)).getValue(-1);
}

template <typename Make>
std::string errorOf(Make make) {
    try {
        make();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(GroupAttribute, nullOneAnswersEveryQuery) {
    const GroupAttribute group;
    EXPECT_FALSE(group);
    EXPECT_EQ(group.getNumberOfChildren(), 0);
    EXPECT_FALSE(group.getChildByName("a"));
    EXPECT_FALSE(group.getChildByIndex(0));
    EXPECT_EQ(group.getChildName(0), "");
    EXPECT_FALSE(group.isGroupInherit(0));
    EXPECT_EQ(group.findChild("a"), -1);
}

TEST(GroupAttribute, emptyOneIsValidAndNotNull) {
    EXPECT_TRUE(GroupAttribute::Empty());
    EXPECT_FALSE(GroupAttribute::Empty() == Attribute());
    EXPECT_EQ(GroupAttribute::Empty(), GroupBuilder().build());
    EXPECT_EQ(GroupAttribute::Empty(),
              GroupAttribute(std::initializer_list<std::pair<std::string_view, Attribute>>{}));
}

TEST(GroupAttribute, dottedNamesLeadThroughNestedGroups) {
    const GroupAttribute group{{"a", GroupAttribute{{"b", GroupAttribute{{"c", IntAttribute(1)}}}}},
                               {"x", IntAttribute(2)}};
    EXPECT_EQ(intAt(group, "a.b.c"), 1);
    EXPECT_EQ(intAt(group, "x"), 2);
    EXPECT_TRUE(GroupAttribute(group.getChildByName("a.b")));
    for (const char* missing :
         {"", ".", "a.", ".a", "a..b", "a.b.d", "x.y", "a.b.c.d", "b", "A", "a.b.c."}) {
        EXPECT_FALSE(group.getChildByName(missing)) << '"' << missing << '"';
    }
    EXPECT_EQ(group.findChild("a.b"), -1);
    EXPECT_EQ(group.findChild("x"), 1);
}

TEST(GroupAttribute, indexedAccessKeepsToItsRange) {
    const GroupAttribute group{{"a", IntAttribute(1)}, {"b", IntAttribute(2)}};
    EXPECT_EQ(group.getChildName(1), "b");
    EXPECT_EQ(group.getChildName(1).data()[1], 0);
    EXPECT_EQ(group.getChildByIndex(1), IntAttribute(2));
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{2}, std::int64_t{1} << 40}) {
        EXPECT_FALSE(group.getChildByIndex(index));
        EXPECT_EQ(group.getChildName(index), "");
    }
}

TEST(GroupAttribute, borrowedChildrenCostNoReference) {
    const GroupAttribute group{{"a", IntAttribute(1)}};
    EXPECT_EQ(group.borrowChildByName("a").getHandle()->refCount, 1U);
    EXPECT_EQ(&group.borrowChildByIndex(0), &group.borrowChildByName("a"));
    EXPECT_FALSE(group.borrowChildByName("b"));
}

TEST(GroupAttribute, findsEveryNameAtEverySizeAroundTheIndexThreshold) {
    for (int count = 0; count <= 70; ++count) {
        GroupBuilder builder;
        for (int i = 0; i < count; ++i) {
            builder.set("name" + std::to_string(i), IntAttribute(i));
        }
        const GroupAttribute group = builder.build();
        ASSERT_EQ(group.getNumberOfChildren(), count);
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(intAt(group, "name" + std::to_string(i)), i) << count;
            ASSERT_EQ(group.getChildName(i), "name" + std::to_string(i)) << count;
        }
        ASSERT_FALSE(group.getChildByName("name" + std::to_string(count))) << count;
        ASSERT_FALSE(group.getChildByName("name")) << count;
    }
}

TEST(GroupBuilder, keepsTheOrderInWhichNamesWereFirstSet) {
    GroupBuilder builder;
    builder.set("i9", IntAttribute(1)).set("i10", IntAttribute(2)).set("a", IntAttribute(3));
    builder.set("i9", IntAttribute(4));
    const GroupAttribute group = builder.build();
    EXPECT_EQ(namesOf(group), "i9 i10 a");
    EXPECT_EQ(intAt(group, "i9"), 4);
}

TEST(GroupBuilder, nameThatIsDeletedAndSetAgainGoesToTheEnd) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1)).set("b", IntAttribute(2)).del("a").set("a", IntAttribute(3));
    EXPECT_EQ(namesOf(builder.build()), "b a");
}

TEST(GroupBuilder, nullAttributeLeavesTheChildOut) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1)).set("b", Attribute()).set("c.d", Attribute());
    builder.set("a", Attribute());
    EXPECT_FALSE(builder.isValid());
    EXPECT_EQ(builder.build(), GroupAttribute::Empty());
}

TEST(GroupBuilder, setBelowAGroupMergesIntoIt) {
    GroupBuilder builder;
    builder.set("a.b", GroupAttribute{{"x", IntAttribute(1)}});
    builder.set("a.b.c", IntAttribute(2));
    const GroupAttribute group = builder.build();
    EXPECT_EQ(intAt(group, "a.b.x"), 1);
    EXPECT_EQ(intAt(group, "a.b.c"), 2);
}

TEST(GroupBuilder, setBelowAValueReplacesItInItsPlace) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1)).set("z", IntAttribute(9)).set("a.b", IntAttribute(2));
    const GroupAttribute group = builder.build();
    EXPECT_EQ(namesOf(group), "a z");
    EXPECT_EQ(intAt(group, "a.b"), 2);
}

TEST(GroupBuilder, setOfAGroupReplacesTheOneThatWasThere) {
    GroupBuilder builder;
    builder.set("a.x", IntAttribute(1)).set("a", GroupAttribute{{"y", IntAttribute(2)}});
    EXPECT_EQ(namesOf(GroupAttribute(builder.build().getChildByName("a"))), "y");
}

TEST(GroupBuilder, groupThatLosesItsLastChildStays) {
    GroupBuilder builder;
    builder.set("a.b", IntAttribute(1)).del("a.b");
    const GroupAttribute group = builder.build();
    EXPECT_EQ(group.getChildByName("a"), GroupAttribute::Empty());
}

TEST(GroupBuilder, deletingWhatIsNotThereChangesNothing) {
    GroupBuilder builder;
    builder.del("a").del("").del("..");
    builder.set("a", IntAttribute(1)).del("b").del("a.b").del("a.").del(".a");
    EXPECT_EQ(builder.build(), (GroupAttribute{{"a", IntAttribute(1)}}));
}

TEST(GroupBuilder, updateReplacesWholeChildren) {
    GroupBuilder builder;
    builder.set("a.x", IntAttribute(1)).set("b", IntAttribute(2));
    builder.update(
        GroupAttribute{{"c", IntAttribute(3)}, {"a", GroupAttribute{{"y", IntAttribute(4)}}}});
    const GroupAttribute group = builder.build();
    EXPECT_EQ(namesOf(group), "a b c");
    EXPECT_FALSE(group.getChildByName("a.x"));
    EXPECT_EQ(intAt(group, "a.y"), 4);
}

TEST(GroupBuilder, deepUpdateMergesGroupsOfOneName) {
    GroupBuilder builder;
    builder.set("a.x", IntAttribute(1)).set("a.g", IntAttribute(2)).set("b", IntAttribute(3));
    builder.deepUpdate(
        GroupAttribute{{"a", GroupAttribute{{"g.h", IntAttribute(5)}, {"y", IntAttribute(4)}}},
                       {"b.c", IntAttribute(6)}});
    const GroupAttribute group = builder.build();
    EXPECT_EQ(namesOf(group), "a b");
    EXPECT_EQ(namesOf(GroupAttribute(group.getChildByName("a"))), "x g y");
    EXPECT_EQ(intAt(group, "a.g.h"), 5);
    EXPECT_EQ(intAt(group, "b.c"), 6);
}

TEST(GroupBuilder, updateWithANullGroupChangesNothing) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1)).update(GroupAttribute()).deepUpdate(GroupAttribute());
    EXPECT_EQ(namesOf(builder.build()), "a");
}

TEST(GroupBuilder, groupInheritBelongsToTheNamedChild) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1), false).set("b.c", IntAttribute(2), false);
    const GroupAttribute group = builder.build();
    EXPECT_FALSE(group.isGroupInherit(0));
    EXPECT_TRUE(group.isGroupInherit(1));
    EXPECT_FALSE(GroupAttribute(group.getChildByName("b")).isGroupInherit(0));

    const GroupAttribute copied = GroupBuilder().set("z", IntAttribute(0)).update(group).build();
    EXPECT_FALSE(copied.isGroupInherit(1));
    builder.update(group).set("a", IntAttribute(1));
    EXPECT_TRUE(builder.build().isGroupInherit(0)) << "setting again sets the flag again";
}

TEST(GroupBuilder, normalBuildEmptiesItAndKeepBuilderDoesNot) {
    GroupBuilder builder;
    builder.set("a.b", IntAttribute(1));
    const GroupAttribute first = builder.build(BuildMode::KeepBuilder);
    builder.set("a.c", IntAttribute(2));
    const GroupAttribute second = builder.build(BuildMode::Normal);
    EXPECT_EQ(first, (GroupAttribute{{"a.b", IntAttribute(1)}}));
    EXPECT_EQ(second, (GroupAttribute{{"a.b", IntAttribute(1)}, {"a.c", IntAttribute(2)}}));
    EXPECT_FALSE(builder.isValid());
    EXPECT_EQ(builder.build(), GroupAttribute::Empty());
    builder.set("d", IntAttribute(3));
    EXPECT_EQ(namesOf(builder.build()), "d");
}

TEST(GroupBuilder, groupThatNothingChangedIsShared) {
    const GroupAttribute group{{"a", GroupAttribute{{"b", IntAttribute(1)}}}};
    EXPECT_EQ(GroupBuilder().update(group).build().getHandle(), group.getHandle());
    const GroupAttribute edited = GroupBuilder().update(group).set("c", IntAttribute(2)).build();
    EXPECT_EQ(edited.borrowChildByName("a").getHandle(), group.borrowChildByName("a").getHandle());
    EXPECT_EQ(group.getNumberOfChildren(), 1) << "the source is immutable";
}

TEST(GroupBuilder, refusesNamesThatNobodyCouldLookUp) {
    GroupBuilder builder;
    builder.set("keep", IntAttribute(1));
    for (const std::string name : {"", ".", "a.", ".a", "a..b"}) {
        EXPECT_EQ(errorOf([&] { builder.set(name, IntAttribute(1)); }),
                  "GroupBuilder::set: empty name in \"" + name + "\"");
    }
    std::string deep = "a";
    for (int i = 1; i < GroupBuilder::kMaxDepth; ++i) {
        deep += ".a";
    }
    EXPECT_EQ(errorOf([&] { GroupBuilder().set(deep, IntAttribute(1)); }), "no error");
    EXPECT_EQ(errorOf([&] { builder.set(deep + ".a", IntAttribute(1)); }),
              "GroupBuilder::set: more than 1000 names in a dotted name");
    EXPECT_EQ(namesOf(builder.build()), "keep");
}

TEST(GroupBuilder, deepUpdateOfGroupsThatNestTooDeepIsRefused) {
    const auto nest = [](int value) {
        GroupAttribute group{{"leaf", IntAttribute(value)}};
        for (int level = 0; level < GroupBuilder::kMaxDepth + 10; ++level) {
            group = GroupAttribute{{"a", group}};
        }
        return group;
    };
    EXPECT_EQ(errorOf([&] { GroupBuilder().update(nest(1)).deepUpdate(nest(2)); }),
              "GroupBuilder::deepUpdate: groups nest deeper than 1000");
}

TEST(GroupBuilder, movesItsContent) {
    GroupBuilder builder;
    builder.set("a", IntAttribute(1));
    GroupBuilder taken(std::move(builder));
    EXPECT_EQ(namesOf(taken.build()), "a");
}

// The deadline of the test run is the assertion: anything but linear time would take hours.
TEST(GroupBuilder, buildsAMillionChildrenInLinearTime) {
    constexpr int kCount = 1'000'000;
    GroupBuilder builder;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < kCount; ++i) {
            builder.set("child" + std::to_string(i), IntAttribute(i + round));
        }
    }
    for (int i = 0; i < kCount; i += 2) {
        builder.del("child" + std::to_string(i));
    }
    const GroupAttribute group = builder.build();
    EXPECT_EQ(group.getNumberOfChildren(), kCount / 2);
    EXPECT_EQ(intAt(group, "child999999"), 1'000'000);
    EXPECT_FALSE(group.getChildByName("child999998"));
}

} // namespace
