// Long random histories of the sources tree: what its records add up to must equal the rules of
// the view evaluated from scratch.

#include "sourcelocationtree.h"

#include "support/knownview.h"
#include "support/randomplaces.h"
#include "support/treetext.h"
#include "support/universe.h"

#include "VlScenelib/VlXFormUtil.h"

#include <gtest/gtest.h>

#include <set>

namespace ViewerAPI {
namespace {

using namespace test;
using VlAttribute::GroupAttribute;

class SourcesHistory {
public:
    SourcesHistory(const Universe& theUniverse, unsigned seed)
        : universe(theUniverse), cooked(theUniverse.places.size()),
          exists(theUniverse.places.size()), attributes(theUniverse.places.size()),
          random(theUniverse, seed) {}

    void step() {
        const int place = random.place();
        const std::string& path = pathOf(place);
        switch (random.upTo(12)) {
        case 0:
        case 1:
        case 2:
            cook(place);
            break;
        case 3:
            for (int i = place; i < static_cast<int>(universe.places.size()); ++i) {
                if (universe.isAtOrBelow(i, place)) {
                    cook(i);
                }
            }
            break;
        case 4:
            remove(place);
            break;
        case 5:
            for (int i = static_cast<int>(universe.places.size()) - 1; i >= place; --i) {
                if (universe.isAtOrBelow(i, place)) {
                    remove(i);
                }
            }
            break;
        case 6:
        case 7:
            tree.pinLocation(path);
            pins.insert(place);
            break;
        case 8:
        case 9:
            tree.unpinLocation(path);
            pins.erase(place);
            break;
        default:
            collect();
        }
    }

    std::size_t collections = 0;
    std::size_t records = 0;

private:
    const std::string& pathOf(int place) const {
        return universe.places[static_cast<std::size_t>(place)].path;
    }
    int parentOf(int place) const {
        return universe.places[static_cast<std::size_t>(place)].parent;
    }

    void cook(int place) {
        const auto index = static_cast<std::size_t>(place);
        if (parentOf(place) >= 0 && !cooked[static_cast<std::size_t>(parentOf(place))]) {
            return; // cooks come under cooked parents
        }
        const int which = random.upTo(6);
        attributes[index] = which < 3 ? numbered(which) : moved(which, which == 5);
        cooked[index] = true;
        tree.cook(pathOf(place), attributes[index]);
    }

    void remove(int place) {
        cooked[static_cast<std::size_t>(place)] = false;
        tree.deleteLocation(pathOf(place));
    }

    /// A pin of the place itself, above or below it.
    bool isPinned(int place) const {
        for (const int pin : pins) {
            if (universe.isAtOrBelow(place, pin) || universe.isAtOrBelow(pin, place)) {
                return true;
            }
        }
        return false;
    }

    void collect() {
        std::map<std::string, KnownView::Location> expected;
        for (std::size_t i = 0; i < universe.places.size(); ++i) {
            const int place = static_cast<int>(i);
            const int parent = parentOf(place);
            const bool parentExists = parent < 0 || exists[static_cast<std::size_t>(parent)];
            cooked[i] = cooked[i] && (parent < 0 || cooked[static_cast<std::size_t>(parent)]);
            bool isPinnedAtOrBelow = false;
            for (const int pin : pins) {
                isPinnedAtOrBelow = isPinnedAtOrBelow || universe.isAtOrBelow(pin, place);
            }
            exists[i] = parentExists && (cooked[i] || isPinnedAtOrBelow);
            if (cooked[i] && isPinned(place)) {
                KnownView::Location& shown = expected[pathOf(place)];
                shown.attributes = attributes[i];
                std::tie(shown.matrix, shown.absolute) =
                    VlScenelib::VlXFormUtil::CalcTransformMatrixAtTime(
                        GroupAttribute(attributes[i].getChildByName("xform")), 0.0F);
            }
        }
        std::vector<LocationChange> changes;
        tree.collect(changes);
        const std::vector<std::string> complaints = known.apply(changes);
        ASSERT_TRUE(complaints.empty()) << complaints.front();
        for (const auto& [path, location] : known.locations()) {
            ASSERT_EQ(expected.count(path), 1U) << path << " should not be known";
        }
        ASSERT_EQ(known.locations(), expected);
        for (std::size_t i = 0; i < universe.places.size(); ++i) {
            compareFields(static_cast<int>(i));
        }
        ++collections;
        records += changes.size();
    }

    void compareFields(int place) {
        const SourceLocationNode* node = tree.find(pathOf(place));
        ASSERT_EQ(node != nullptr, exists[static_cast<std::size_t>(place)]) << pathOf(place);
        if (!node) {
            return;
        }
        int below = 0;
        bool isInherited = false;
        for (const int pin : pins) {
            below += pin != place && universe.isAtOrBelow(pin, place) ? 1 : 0;
            isInherited = isInherited || (pin != place && universe.isAtOrBelow(place, pin));
        }
        SCOPED_TRACE(pathOf(place));
        ASSERT_EQ(node->cooked, cooked[static_cast<std::size_t>(place)]);
        ASSERT_EQ(node->wasCooked, node->cooked);
        ASSERT_EQ(node->pinned, pins.count(place) != 0);
        ASSERT_EQ(node->wasPinned, node->pinned);
        ASSERT_EQ(node->pinnedDescendants, below);
        ASSERT_EQ(node->inheritedPinned, isInherited);
        ASSERT_FALSE(node->queued);
        ASSERT_EQ(node->sent, known.find(pathOf(place)) != nullptr);
        ASSERT_TRUE(node->sent || !node->sentAttributes.isValid());
    }

    const Universe& universe;
    SourceLocationTree tree;
    std::set<int> pins;
    std::vector<bool> cooked;
    std::vector<bool> exists;
    std::vector<GroupAttribute> attributes;
    KnownView known{true};
    RandomPlaces random;
};

TEST(SourceLocationTreeOracle, recordsOfRandomHistoriesAddUpToTheRulesEvaluatedFromScratch) {
    for (const Universe& universe : Universe::shapes(false)) {
        for (const unsigned seed : {1U, 2U, 3U}) {
            SCOPED_TRACE("shape " + universe.name + ", seed " + std::to_string(seed));
            SourcesHistory history(universe, seed);
            for (int step = 0; step < 20000; ++step) {
                history.step();
                if (testing::Test::HasFailure()) {
                    GTEST_FAIL() << "at step " << step;
                }
            }
            // A history in which nothing happens would prove nothing.
            EXPECT_GT(history.collections, 2000U);
            EXPECT_GT(history.records, 1000U);
        }
    }
}

} // namespace
} // namespace ViewerAPI
