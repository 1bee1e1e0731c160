// Long random histories of the primary tree: what its records add up to must equal the rules of
// the view evaluated from scratch, and every field of its nodes must mean what it says.

#include "locationtree.h"

#include "support/knownview.h"
#include "support/plainlocationtree.h"
#include "support/randomplaces.h"
#include "support/treetext.h"
#include "support/universe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

namespace ViewerAPI {
namespace {

using namespace test;
using VlAttribute::GroupAttribute;

class History {
public:
    History(const Universe& theUniverse, unsigned seed)
        : universe(theUniverse), plain(theUniverse), random(theUniverse, seed) {}

    /// Does something, and compares when that was a collection.
    void step() {
        const int place = random.place();
        const Universe::Place& where = universe.places[static_cast<std::size_t>(place)];
        switch (random.upTo(24)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            cook(place);
            break;
        case 5:
            say("cook below", place);
            for (std::size_t i = 0; i < universe.places.size(); ++i) {
                if (universe.isAtOrBelow(static_cast<int>(i), place)) {
                    cook(static_cast<int>(i));
                }
            }
            break;
        case 6:
            say("delete alone", place);
            remove(place);
            break;
        case 7:
            say("delete with all below", place);
            for (int i = static_cast<int>(universe.places.size()) - 1; i >= 0; --i) {
                if (universe.isAtOrBelow(i, place)) {
                    remove(i);
                }
            }
            break;
        case 8:
        case 9:
            say("open", place);
            tree.openLocation(where.path);
            plain.opened.insert(place);
            break;
        case 10:
            say("close", place);
            tree.closeLocation(where.path);
            plain.opened.erase(place);
            break;
        case 11:
            // A pin would make an ordinary location of a proxy that isn't there.
            if (!where.isProxy || plain.at(place).exists) {
                say("pin", place);
                tree.pinLocation(where.path);
                plain.pin(place);
            }
            break;
        case 12:
        case 13:
            say("unpin", place);
            tree.unpinLocation(where.path);
            plain.unpin(place);
            break;
        case 14:
            say("hide", place);
            tree.hideLocations(std::array{where.path.c_str()});
            plain.hide(place);
            break;
        case 15:
            say("unhide", place);
            tree.unhideLocations(std::array{where.path.c_str()});
            plain.unhide(place);
            break;
        case 16:
            if (random.oneIn(4)) {
                say("unhide all", 0);
                tree.unhideAllLocations();
                plain.hidden.clear();
            }
            break;
        case 17:
            if (random.oneIn(3)) {
                plain.isWorkingSetMode = !plain.isWorkingSetMode;
                say(plain.isWorkingSetMode ? "working-set mode" : "expansion mode", 0);
                tree.setMode(plain.isWorkingSetMode);
            }
            break;
        case 18:
            if (plain.at(place).cooked) {
                say("live value", place);
                const GroupAttribute attributes = randomAttributes();
                tree.setAttributes(where.path, attributes);
                plain.at(place).attributes = attributes;
            }
            break;
        default:
            collect();
        }
    }

    void collect() {
        say("collect", 0);
        plain.evaluate(known);
        std::vector<LocationChange> changes;
        tree.collect(changes);
        known.parentsComeFirst = !plain.isWorkingSetMode;
        const std::vector<std::string> complaints = known.apply(changes);
        ASSERT_TRUE(complaints.empty()) << complaints.front() << recent();
        compareViews();
        for (std::size_t i = 0; i < universe.places.size(); ++i) {
            compareFields(static_cast<int>(i));
        }
        compareHiddenLocations();
        ++collections;
        records += changes.size();
    }

    std::size_t collections = 0;
    std::size_t records = 0;

private:
    GroupAttribute randomAttributes() {
        const int which = random.upTo(6);
        return which < 3 ? numbered(which) : moved(which, which == 5);
    }

    void cook(int place) {
        const Universe::Place& where = universe.places[static_cast<std::size_t>(place)];
        if (where.parent >= 0 && !plain.at(where.parent).cooked) {
            return; // cooks come under cooked parents
        }
        WorkingSetState workingSet;
        if (!where.isProxy && !random.oneIn(3)) {
            workingSet = {true, random.oneIn(2), random.oneIn(3)};
        }
        const bool isLeaf = !where.isProxy && random.oneIn(4);
        const GroupAttribute attributes = randomAttributes();
        say("cook", place);
        tree.cook(where.path, attributes, workingSet, where.isProxy, isLeaf);
        plain.cook(place, attributes, workingSet, isLeaf);
    }

    void remove(int place) {
        tree.deleteLocation(universe.places[static_cast<std::size_t>(place)].path);
        plain.remove(place);
    }

    void compareViews() {
        std::map<std::string, KnownView::Location> expected = plain.expectedView();
        for (const auto& [path, location] : known.locations()) {
            const auto found = expected.find(path);
            ASSERT_NE(found, expected.end()) << path << " should not be known" << recent();
            if (location.proxy) {
                // Hiding a location isn't passed on to its proxies, but to those that come later.
                found->second.hidden = location.hidden;
            }
            EXPECT_EQ(location.attributes, found->second.attributes) << path << recent();
            EXPECT_EQ(location.matrix, found->second.matrix) << path << recent();
            EXPECT_EQ(location.absolute, found->second.absolute) << path << recent();
            EXPECT_EQ(location.hidden, found->second.hidden) << path << recent();
            EXPECT_EQ(location.leaf, found->second.leaf) << path << recent();
            ASSERT_EQ(location, found->second) << path;
            expected.erase(found);
        }
        ASSERT_TRUE(expected.empty()) << expected.begin()->first << " should be known" << recent();
    }

    void compareFields(int place) {
        const Universe::Place& where = universe.places[static_cast<std::size_t>(place)];
        const PlainLocationTree::Location& expected = plain.at(place);
        const LocationNode* node = tree.find(where.path);
        ASSERT_EQ(node != nullptr, expected.exists) << where.path << recent();
        if (!node) {
            return;
        }
        SCOPED_TRACE(where.path);
        ASSERT_EQ(node->cooked, expected.cooked) << recent();
        ASSERT_EQ(node->wasCooked, node->cooked) << recent();
        ASSERT_EQ(node->wasOpen, node->open) << recent();
        ASSERT_EQ(node->wasHidden, node->hidden) << recent();
        ASSERT_FALSE(node->queued || node->proxiesDirty) << recent();
        ASSERT_EQ(node->pinned, expected.pinned) << recent();
        ASSERT_EQ(node->pinnedDescendants, expected.pinnedBelow) << recent();
        ASSERT_EQ(node->proxy, where.isProxy) << recent();
        ASSERT_EQ(node->sent, known.find(where.path) != nullptr) << recent();
        ASSERT_EQ(node->depth, node->parent ? node->parent->depth + 1 : 1) << recent();
        if (!plain.isWorkingSetMode) {
            ASSERT_EQ(node->collapsed, expected.collapsed) << recent();
        }
        if (!where.isProxy) {
            ASSERT_EQ(node->open, plain.opened.count(place) != 0) << recent();
            ASSERT_EQ(node->hidden, plain.hidden.count(place) != 0) << recent();
            ASSERT_EQ(node->inheritedHidden, expected.ancestorHidden) << recent();
        }
        if (expected.cooked) {
            ASSERT_EQ(node->hasWorkingSetData, expected.workingSet.hasData) << recent();
            ASSERT_EQ(node->attributes, expected.attributes) << recent();
        }
        if (!node->sent) {
            ASSERT_FALSE(node->sentAttributes.isValid() || node->sentHidden || node->sentLeaf)
                << recent();
        }
    }

    void compareHiddenLocations() {
        std::vector<std::string> paths;
        for (const int place : plain.hidden) {
            paths.push_back(universe.places[static_cast<std::size_t>(place)].path);
        }
        std::sort(paths.begin(), paths.end());
        ASSERT_EQ(tree.getHiddenLocations(), VlAttribute::StringAttribute(paths)) << recent();
    }

    void say(const char* what, int place) {
        said.push_back(std::string(what) + " " +
                       universe.places[static_cast<std::size_t>(place)].path);
        if (said.size() > 400) {
            said.erase(said.begin(), said.begin() + 200);
        }
    }
    std::string recent() const {
        std::ostringstream out;
        out << "\nafter";
        const std::size_t first = said.size() > 60 ? said.size() - 60 : 0;
        for (std::size_t i = first; i < said.size(); ++i) {
            out << "\n  " << said[i];
        }
        return out.str();
    }

    const Universe& universe;
    LocationTree tree;
    PlainLocationTree plain;
    KnownView known{false};
    RandomPlaces random;
    std::vector<std::string> said;
};

TEST(LocationTreeOracle, recordsOfRandomHistoriesAddUpToTheRulesEvaluatedFromScratch) {
    for (const Universe& universe : Universe::shapes(true)) {
        for (const unsigned seed : {1U, 2U, 3U}) {
            SCOPED_TRACE("shape " + universe.name + ", seed " + std::to_string(seed));
            History history(universe, seed);
            for (int step = 0; step < 20000; ++step) {
                history.step();
                if (testing::Test::HasFailure()) {
                    GTEST_FAIL() << "at step " << step;
                }
            }
            // A history in which nothing happens would prove nothing.
            EXPECT_GT(history.collections, 2000U);
            EXPECT_GT(history.records, 2000U);
        }
    }
}

} // namespace
} // namespace ViewerAPI
