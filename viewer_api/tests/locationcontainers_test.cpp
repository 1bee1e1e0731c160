// The containers that the location trees are made of.

#include "dirtyset.h"
#include "nodelist.h"
#include "pathindex.h"
#include "pathset.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace ViewerAPI {
namespace {

struct Node {
    explicit Node(std::string text, Node* above = nullptr)
        : path(std::move(text)), parent(above), depth(above ? above->depth + 1 : 1) {}
    std::string path;
    Node* parent;
    std::int32_t depth;
};

TEST(PathIndex, findsWhatWasInsertedThroughEveryGrowth) {
    std::deque<Node> nodes;
    PathIndex<Node> index;
    for (int i = 0; i < 1000; ++i) {
        index.insert(&nodes.emplace_back("/root/" + std::to_string(i)));
    }
    EXPECT_EQ(index.size(), 1000U);
    for (Node& node : nodes) {
        EXPECT_EQ(index.find(node.path), &node);
    }
    EXPECT_EQ(index.find("/root"), nullptr);
    EXPECT_EQ(index.find(""), nullptr);
}

TEST(PathIndex, forgetsWhatWasErased) {
    std::deque<Node> nodes;
    PathIndex<Node> index;
    for (int i = 0; i < 100; ++i) {
        index.insert(&nodes.emplace_back("/root/" + std::to_string(i)));
    }
    // Every erasure may move others: all are looked up after each.
    for (std::size_t erased = 0; erased < 100; erased += 2) {
        index.erase(&nodes[erased]);
        for (std::size_t i = 0; i < 100; ++i) {
            const bool isGone = i % 2 == 0 && i <= erased;
            ASSERT_EQ(index.find(nodes[i].path), isGone ? nullptr : &nodes[i]) << erased;
        }
    }
    EXPECT_EQ(index.size(), 50U);
}

TEST(PathSet, answersWithoutAString) {
    PathSet paths;
    EXPECT_FALSE(paths.contains("/root"));
    paths.insert("/root/a");
    paths.insert("/root/a");
    EXPECT_EQ(paths.size(), 1U);
    EXPECT_TRUE(paths.contains(std::string_view("/root/abc").substr(0, 7)));
    EXPECT_FALSE(paths.erase("/root"));
    EXPECT_TRUE(paths.erase("/root/a"));
    EXPECT_FALSE(paths.erase("/root/a"));
    paths.insert("/root");
    paths.clear();
    EXPECT_FALSE(paths.contains("/root"));
}

TEST(NodeList, keepsOrderAndSwapsTheLastIntoTheGap) {
    std::deque<Node> nodes;
    NodeList<Node> list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
    for (int i = 0; i < 10; ++i) {
        list.push_back(&nodes.emplace_back(std::to_string(i)));
    }
    EXPECT_EQ(list.swapOut(2), &nodes[9]);
    EXPECT_EQ(list.swapOut(8), nullptr); // the last itself
    std::string order;
    for (const Node* node : list) {
        order += node->path;
    }
    EXPECT_EQ(order, "01934567");
}

TEST(DirtySet, handsOutParentsBeforeChildrenAndSiblingsSideBySide) {
    Node root("r");
    Node a("a", &root);
    Node b("b", &root);
    Node a1("a1", &a);
    Node a2("a2", &a);
    Node b1("b1", &b);
    Node b2("b2", &b);
    DirtySet<Node> dirty;
    for (Node* node : {&b2, &a1, &b1, &b, &a2, &root, &a}) {
        dirty.insert(node);
    }
    std::string order;
    dirty.drain([&](Node& node) { order += node.path + " "; });
    EXPECT_EQ(order, "r b a b2 b1 a1 a2 ");
}

TEST(DirtySet, isEmptyOnceDrained) {
    Node root("r");
    DirtySet<Node> dirty;
    int visits = 0;
    dirty.insert(&root);
    dirty.drain([&](Node&) { ++visits; });
    dirty.drain([&](Node&) { ++visits; });
    EXPECT_EQ(visits, 1);
}

} // namespace
} // namespace ViewerAPI
