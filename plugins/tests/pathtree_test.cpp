#include "scene/pathtree.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bundled::PathTree;

/// Answers the paths that were made.
std::vector<std::string> make(PathTree& tree, std::string_view path) {
    std::vector<std::string> paths;
    tree.findOrMake(path,
                    [&paths](std::uint32_t, std::string_view made) { paths.emplace_back(made); });
    return paths;
}

/// Answers the paths that were erased.
std::vector<std::string> erase(PathTree& tree, std::string_view path) {
    std::vector<std::string> paths;
    tree.erase(tree.find(path), [&](std::uint32_t node) { paths.push_back(tree.getPath(node)); });
    return paths;
}

std::set<std::string> childrenOf(const PathTree& tree, std::string_view path) {
    std::set<std::string> paths;
    tree.forEachChild(tree.find(path),
                      [&](std::uint32_t child) { paths.insert(tree.getPath(child)); });
    return paths;
}

TEST(PathTree, makesWhatIsMissingFromTheTop) {
    PathTree tree;
    EXPECT_EQ(make(tree, "/root/a/b"), (std::vector<std::string>{"/root", "/root/a", "/root/a/b"}));
    EXPECT_EQ(make(tree, "/root/a/c"), (std::vector<std::string>{"/root/a/c"}));
    EXPECT_TRUE(make(tree, "/root/a").empty());
}

TEST(PathTree, knowsParentsChildrenDepthsAndPaths) {
    PathTree tree;
    make(tree, "/root/a/b");
    make(tree, "/root/ab");
    const std::uint32_t root = tree.find("/root");
    const std::uint32_t a = tree.find("/root/a");
    EXPECT_EQ(tree.getParent(root), PathTree::kNone);
    EXPECT_EQ(tree.getParent(a), root);
    EXPECT_EQ(tree.getDepth(root), 1u);
    EXPECT_EQ(tree.getDepth(tree.find("/root/a/b")), 3u);
    EXPECT_EQ(tree.getPath(tree.find("/root/a/b")), "/root/a/b");
    EXPECT_EQ(childrenOf(tree, "/root"), (std::set<std::string>{"/root/a", "/root/ab"}));
    EXPECT_TRUE(tree.hasChildren(a));
    EXPECT_FALSE(tree.hasChildren(tree.find("/root/ab")));
}

TEST(PathTree, findsWholePathsOnly) {
    PathTree tree;
    make(tree, "/root/ab");
    for (const char* path : {"", "/", "root", "/roo", "/root/", "/root/a", "/root/abc", "/ab"}) {
        EXPECT_EQ(tree.find(path), PathTree::kNone) << path;
    }
}

TEST(PathTree, erasesEverythingBelowNearestFirst) {
    PathTree tree;
    make(tree, "/root/a/b");
    make(tree, "/root/ab");
    EXPECT_EQ(erase(tree, "/root/a"), (std::vector<std::string>{"/root/a", "/root/a/b"}));
    EXPECT_EQ(tree.find("/root/a/b"), PathTree::kNone);
    EXPECT_EQ(childrenOf(tree, "/root"), (std::set<std::string>{"/root/ab"}));
}

TEST(PathTree, usesNumbersAgain) {
    PathTree tree;
    make(tree, "/root/a");
    make(tree, "/root/b");
    erase(tree, "/root/a");
    make(tree, "/root/c");
    EXPECT_EQ(tree.getCapacity(), 3u);
}

TEST(PathTree, behavesAsASetOfPathsDoes) {
    constexpr unsigned kSeed = 20262;
    SCOPED_TRACE(testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    const auto anyPath = [&random] {
        std::string path = "/root";
        for (unsigned depth = random() % 4; depth > 0; --depth) {
            path += "/" + std::to_string(random() % 12);
        }
        return path;
    };
    PathTree tree;
    std::set<std::string> plain;
    for (int step = 0; step < 20000; ++step) {
        const std::string path = anyPath();
        if (random() % 4 != 0) {
            make(tree, path);
            for (std::size_t end = path.size(); end != 0; end = path.rfind('/', end - 1)) {
                plain.insert(path.substr(0, end));
            }
        } else if (plain.contains(path)) {
            const auto erased = erase(tree, path);
            const auto count = std::erase_if(plain, [&path](const std::string& one) {
                return one == path || one.starts_with(path + "/");
            });
            ASSERT_EQ(erased.size(), count) << "step " << step;
        }
        const std::string other = anyPath();
        const std::uint32_t node = tree.find(other);
        ASSERT_EQ(node != PathTree::kNone, plain.contains(other)) << "step " << step;
        if (node != PathTree::kNone) {
            ASSERT_EQ(tree.getPath(node), other) << "step " << step;
        }
    }
    // The whole tree, walked from its top.
    std::set<std::string> walked;
    std::vector<std::uint32_t> walk;
    if (plain.contains("/root")) {
        walk.push_back(tree.find("/root"));
    }
    while (!walk.empty()) {
        const std::uint32_t node = walk.back();
        walk.pop_back();
        EXPECT_TRUE(walked.insert(tree.getPath(node)).second);
        tree.forEachChild(node, [&](std::uint32_t child) { walk.push_back(child); });
    }
    EXPECT_EQ(walked, plain);
}

} // namespace
