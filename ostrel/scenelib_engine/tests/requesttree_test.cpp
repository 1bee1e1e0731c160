#include "requesttree.h"

#include "VlScenelibEngine/ChildList.h"

#include "argsets.h"
#include "locationpath.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ArgSets;
using VlScenelibEngine::AttributeContexts;
using VlScenelibEngine::ChildList;
using VlScenelibEngine::CookNode;
using VlScenelibEngine::RequestTree;

RequestTree::Cursor walk(const RequestTree& requests, std::string_view path) {
    RequestTree::Cursor cursor = requests.begin();
    const auto names = VlScenelibEngine::splitPath(path);
    for (const std::string_view name : *names) {
        cursor = requests.descend(cursor, name);
    }
    return cursor;
}

TEST(RequestTree, wantsActiveLocationsAndTheirAncestors) {
    RequestTree requests;
    EXPECT_TRUE(requests.setActive("/root/a/b", true));
    EXPECT_FALSE(requests.setActive("/root/a/b", true));
    EXPECT_TRUE(walk(requests, "/root").isWanted);
    EXPECT_TRUE(walk(requests, "/root/a/b").isWanted);
    EXPECT_FALSE(walk(requests, "/root/c").isWanted);
    EXPECT_FALSE(walk(requests, "/root/a/b/c").isWanted);
}

TEST(RequestTree, expandsWhatIsOpenAtOrBelowAnActiveLocation) {
    RequestTree requests;
    requests.setOpen("/root", true);
    requests.setOpen("/root/a", true);
    requests.setActive("/root/a", true);
    EXPECT_FALSE(walk(requests, "/root").isExpanded) << "only context";
    EXPECT_TRUE(walk(requests, "/root/a").isExpanded);
    EXPECT_TRUE(walk(requests, "/root/a/x").isWanted);
    EXPECT_FALSE(walk(requests, "/root/a/x").isExpanded);
    requests.setAllOpen(true);
    EXPECT_TRUE(walk(requests, "/root/a/x").isExpanded);
    EXPECT_FALSE(walk(requests, "/root/b").isWanted);
}

TEST(RequestTree, keepsNothingOfWhatWasUndone) {
    RequestTree requests;
    requests.setActive("/root/a/b", true);
    requests.setOpen("/root/a", true);
    EXPECT_EQ(requests.awaitingAnswers, 1U);
    requests.setActive("/root/a/b", false);
    requests.setOpen("/root/a", false);
    EXPECT_EQ(requests.awaitingAnswers, 0U);
    EXPECT_FALSE(requests.find({"root"}));
    EXPECT_THAT(requests.getActive(""), IsEmpty());
}

TEST(LocationPath, splitsAndJoins) {
    EXPECT_THAT(*VlScenelibEngine::splitPath("/root/a"), ElementsAre("root", "a"));
    for (const char* malformed : {"", "root", "/", "/root/", "//root", "/root//a"}) {
        EXPECT_FALSE(VlScenelibEngine::splitPath(malformed)) << malformed;
    }
    EXPECT_EQ(VlScenelibEngine::joinPath({"root", "a"}), "/root/a");
    EXPECT_EQ(VlScenelibEngine::joinPath({"root", "a"}, 1), "/root");
}

TEST(ArgSets, tellWhichSetsOfNamesHaveChanged) {
    ArgSets sets;
    EXPECT_EQ(sets.add({}), 0);
    const auto first = sets.add({"a"});
    const auto both = sets.add({"b.c", "a", "a"});
    EXPECT_EQ(sets.add({"a", "b.c"}), both);
    VlAttribute::GroupBuilder builder;
    builder.set("a", IntAttribute(1)).set("b.c", IntAttribute(1)).set("b.d", IntAttribute(1));
    const GroupAttribute before = builder.build(VlAttribute::BuildMode::KeepBuilder);
    builder.set("b.d", IntAttribute(2));
    auto changed = sets.findChanged(before, builder.build(VlAttribute::BuildMode::KeepBuilder));
    EXPECT_FALSE(changed[first] || changed[both]);
    EXPECT_TRUE(changed[CookNode::kAllArgs]);
    builder.set("b.c", IntAttribute(2));
    changed = sets.findChanged(before, builder.build());
    EXPECT_FALSE(changed[first]);
    EXPECT_TRUE(changed[both]);
    EXPECT_TRUE(sets.findChanged(before, before).none());
}

TEST(ArgSets, endInReadingAllWhenThereAreTooMany) {
    ArgSets sets;
    for (int i = 0; i < 254; ++i) {
        ASSERT_EQ(sets.add({std::to_string(i)}), i + 1);
    }
    EXPECT_EQ(sets.add({"one more"}), CookNode::kAllArgs);
    EXPECT_EQ(sets.add({"0"}), 1);
}

TEST(ChildList, findsNamesInShortAndLongLists) {
    for (const std::size_t count :
         {std::size_t{1}, std::size_t{16}, std::size_t{17}, std::size_t{1000}}) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < count; ++i) {
            names.push_back("n" + std::to_string(i));
        }
        const ChildList::Ptr list = ChildList::create(StringAttribute(names));
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(list->find(names[i]), i);
            ASSERT_EQ(list->find(names[i], 0), i);
        }
        EXPECT_EQ(list->find("m"), ChildList::kNone);
        EXPECT_EQ(list->find("m", count + 5), ChildList::kNone);
    }
}

TEST(ChildList, refusesNamesThatCantStandInAPath) {
    for (const std::size_t extra : {std::size_t{0}, std::size_t{30}}) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < extra; ++i) {
            names.push_back("n" + std::to_string(i));
        }
        for (const char* bad : {"", "a/b", "n0"}) {
            std::vector<std::string> with = names;
            with.push_back("n0");
            with.emplace_back(bad);
            EXPECT_THROW(ChildList::create(StringAttribute(with)), std::runtime_error) << bad;
        }
    }
    EXPECT_EQ(ChildList::create(StringAttribute()), nullptr);
}

TEST(ChildList, sharesItsNamesWithOtherContexts) {
    std::vector<std::string> names;
    for (int i = 0; i < 100; ++i) {
        names.push_back("n" + std::to_string(i));
    }
    ChildList::Ptr list = ChildList::create(StringAttribute(names));
    const auto contexts = std::make_shared<AttributeContexts>(std::vector<Attribute>(100));
    const ChildList::Ptr with = list->withContexts(contexts);
    EXPECT_EQ(with->getNames().getHandle(), list->getNames().getHandle());
    EXPECT_EQ(with->getContexts(), contexts);
    EXPECT_EQ(list->getContexts(), nullptr);
    list = nullptr;
    EXPECT_EQ(with->find("n57"), 57U);
}

} // namespace
