#include "scene/nodeset.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

using Bundled::NodeSet;

std::set<std::uint32_t> membersOf(const NodeSet& nodes) {
    return {nodes.get().begin(), nodes.get().end()};
}

TEST(NodeSet, holdsEachMemberOnce) {
    NodeSet nodes;
    nodes.insert(7);
    nodes.insert(3);
    nodes.insert(7);
    EXPECT_EQ(nodes.get().size(), 2u);
    EXPECT_EQ(membersOf(nodes), (std::set<std::uint32_t>{3, 7}));
}

TEST(NodeSet, erasingWhatIsNotThereDoesNothing) {
    NodeSet nodes;
    nodes.erase(5);
    nodes.insert(5);
    nodes.erase(4);
    nodes.erase(1000);
    EXPECT_EQ(membersOf(nodes), (std::set<std::uint32_t>{5}));
    nodes.erase(5);
    nodes.erase(5);
    EXPECT_TRUE(nodes.get().empty());
}

TEST(NodeSet, behavesAsASetDoes) {
    constexpr unsigned kSeed = 20261;
    SCOPED_TRACE(testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    NodeSet nodes;
    std::set<std::uint32_t> plain;
    for (int step = 0; step < 2000; ++step) {
        const auto node = static_cast<std::uint32_t>(random() % 40);
        if (random() % 2 == 0) {
            nodes.insert(node);
            plain.insert(node);
        } else {
            nodes.erase(node);
            plain.erase(node);
        }
        ASSERT_EQ(nodes.get().size(), plain.size()) << "step " << step;
        ASSERT_EQ(membersOf(nodes), plain) << "step " << step;
    }
}

} // namespace
