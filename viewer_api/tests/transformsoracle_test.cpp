// Transforms of random hierarchies in the three views against an evaluation that walks from the
// root to each location and applies one component after the other.

#include "scenetransforms.h"

#include "support/delegatetest.h"
#include "support/oracleseeds.h"
#include "support/plainxform.h"

#include <algorithm>
#include <optional>

namespace ViewerAPI::test {
namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

struct Location {
    std::string path;
    int parent = -1;
    std::optional<PlainXform> xform{};
    bool isOpen = false;
    bool isPinned = false;
    bool isSource = false; ///< asked for in the sources view
    bool isCached = false; ///< known to the look-through client
};

/// What is asked of one location's transform.
struct PartQuery {
    std::string groupName;
    std::string componentName;
    bool includeComponent = false;
    bool includeGroupsBefore = false;
    bool includeGroupsAfter = false;
};

class TransformsOracle : public DelegateTest {
protected:
    void run(unsigned seed) {
        random.seed(seed);
        makeScene();
        start();
        showScene();
        for (std::size_t place = 0; place < scene.size(); ++place) {
            for (const int view : {kVlViewerDelegatePrimary, kVlViewerDelegateSources,
                                   kVlViewerDelegateLookThrough}) {
                SCOPED_TRACE("seed " + std::to_string(seed) + " view " + std::to_string(view) +
                             " " + scene[place].path);
                compareWhole(static_cast<int>(place), view);
                for (int query = 0; query < 6; ++query) {
                    comparePart(static_cast<int>(place), view);
                }
            }
        }
    }

    int numberOfParts = 0;
    int numberOfUnsent = 0;

private:
    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }
    const Location& at(int place) const { return scene[static_cast<std::size_t>(place)]; }

    void makeScene() {
        const RandomXforms xforms{random};
        scene.assign(1, {"/root"});
        const int count = 2 + upTo(12);
        for (int i = 1; i < count; ++i) {
            // Mostly below the last few, so that chains become long.
            const int parent = std::max(0, i - 1 - upTo(4));
            scene.push_back({at(parent).path + "/n" + std::to_string(i), parent});
        }
        for (Location& location : scene) {
            if (!oneIn(6)) {
                location.xform = xforms.make();
            }
            location.isOpen = !oneIn(4);
            location.isPinned = oneIn(10);
            location.isSource = oneIn(5);
            location.isCached = !oneIn(4);
        }
    }

    void showScene() {
        for (const Location& location : scene) {
            GroupBuilder attributes;
            attributes.set("name", VlAttribute::StringAttribute(location.path));
            if (location.xform) {
                attributes.set("xform", toAttribute(*location.xform));
            }
            const GroupAttribute built = attributes.build();
            client(kPrimaryClient).report(location.path, built, {"x"});
            client(kSourcesClient).report(location.path, built, {"x"});
            if (location.isCached) {
                client(kLookThroughClient).report(location.path, built, {"x"});
            }
            const char* const path = location.path.c_str();
            if (location.isOpen) {
                delegate->openLocations(&path, 1);
            }
            if (location.isPinned) {
                delegate->pinLocations(&path, 1);
            }
            if (location.isSource) {
                delegate->activateSourceLocations(&path, 1);
            }
        }
        delegate->processLocationEvents();
    }

    bool isAtOrBelow(int place, int ancestor) const {
        while (place > ancestor) {
            place = at(place).parent;
        }
        return place == ancestor;
    }

    /// Whether plug-ins were told of the location in that view.
    bool isSent(int place, int view) const {
        bool areAncestorsOpen = true;
        for (int above = at(place).parent; above >= 0; above = at(above).parent) {
            areAncestorsOpen = areAncestorsOpen && at(above).isOpen;
        }
        if (view == kVlViewerDelegatePrimary && areAncestorsOpen) {
            return true;
        }
        for (std::size_t i = 0; i < scene.size(); ++i) {
            const int other = static_cast<int>(i);
            if (view == kVlViewerDelegatePrimary && scene[i].isPinned &&
                isAtOrBelow(other, place)) {
                return true;
            }
            if (view == kVlViewerDelegateSources && scene[i].isSource &&
                (isAtOrBelow(other, place) || isAtOrBelow(place, other))) {
                return true;
            }
        }
        return false;
    }

    /// The location's transform in that view, if it has one there.
    const std::optional<PlainXform>& xformOf(int place, int view) const {
        static const std::optional<PlainXform> kNone;
        return view == kVlViewerDelegateLookThrough && !at(place).isCached ? kNone
                                                                           : at(place).xform;
    }

    /// The world transform; with place -1 that of the root's parent.
    PlainSamples worldOf(int place, int view) const {
        PlainXform chain;
        for (; place >= 0; place = at(place).parent) {
            if (const std::optional<PlainXform>& xform = xformOf(place, view)) {
                chain.insert(chain.begin(), xform->begin(), xform->end());
            }
        }
        return evaluateIn(view, chain);
    }

    /// The trees keep the transform at time 0.
    static PlainSamples evaluateIn(int view, const PlainXform& xform) {
        if (view == kVlViewerDelegateLookThrough) {
            return evaluateAtExistingTimes(xform);
        }
        return {{0.0F, evaluate(xform, 0.0F).matrix}};
    }

    void compareWhole(int place, int view) {
        const std::string& path = at(place).path;
        bool isAbsolute = true;
        const DoubleAttribute local = delegate->getLocalXform(path, isAbsolute, view);
        const DoubleAttribute world = delegate->getWorldXform(path, view);
        const DoubleAttribute parent = delegate->getParentXform(path, view);
        const bool hasTree = view != kVlViewerDelegateLookThrough;
        if (hasTree && !isSent(place, view)) {
            ++numberOfUnsent;
            EXPECT_FALSE(local.isValid() || world.isValid() || parent.isValid() || isAbsolute);
            return;
        }
        const std::optional<PlainXform>& xform = xformOf(place, view);
        if (!xform && hasTree) {
            EXPECT_FALSE(local.isValid());
        } else {
            EXPECT_EQ(complaint(evaluateIn(view, xform.value_or(PlainXform())), local), "");
        }
        EXPECT_EQ(isAbsolute, hasTree && xform && evaluate(*xform, 0.0F).isAbsolute);
        EXPECT_EQ(complaint(worldOf(place, view), world), "");
        EXPECT_EQ(complaint(worldOf(at(place).parent, view), parent), "");
    }

    PartQuery makeQuery(const PlainXform& xform) {
        PartQuery query;
        query.groupName = "interactive";
        query.componentName = "translate";
        if (!xform.empty() && !oneIn(10)) {
            const PlainGroup& group = xform[static_cast<std::size_t>(upTo(int(xform.size())))];
            query.groupName = group.name;
            if (!group.components.empty() && !oneIn(10)) {
                query.componentName =
                    group.components[static_cast<std::size_t>(upTo(int(group.components.size())))]
                        .name;
            }
        }
        // By the whole name, by the beginning of it, or by something longer.
        if (oneIn(2)) {
            query.componentName.resize(
                static_cast<std::size_t>(upTo(int(query.componentName.size()) + 1)));
        } else if (oneIn(20)) {
            query.componentName += "x";
        }
        if (oneIn(2)) {
            query.componentName += "?";
        }
        query.includeComponent = oneIn(2);
        query.includeGroupsBefore = oneIn(2);
        query.includeGroupsAfter = oneIn(2);
        return query;
    }

    /// The part of a transform as a transform.
    static std::optional<PlainXform> partOf(const PlainXform& xform, const PartQuery& query) {
        // The other groups come first, also those behind the one that is wanted.
        PlainXform part;
        const PlainGroup* wanted = nullptr;
        for (const PlainGroup& group : xform) {
            if (group.name == query.groupName) {
                wanted = &group;
            } else if (wanted ? query.includeGroupsAfter : query.includeGroupsBefore) {
                part.push_back(group);
            }
        }
        if (!wanted) {
            return std::nullopt;
        }
        std::string pattern = query.componentName;
        if (!pattern.empty() && pattern.back() == '?') {
            pattern.pop_back();
        }
        const auto matches = [&pattern](const PlainComponent& component) {
            return component.name.compare(0, pattern.size(), pattern) == 0;
        };
        const auto& all = wanted->components;
        const auto first = std::find_if(all.begin(), all.end(), matches);
        if (first == all.end()) {
            return std::nullopt;
        }
        const auto last =
            query.includeComponent ? std::find_if_not(first, all.end(), matches) : first;
        // It is put together under the name "xform", behind what bears that name already.
        const auto place = std::find_if(part.begin(), part.end(), [](const PlainGroup& group) {
            return group.name == "xform";
        });
        PlainGroup& target = place == part.end() ? part.emplace_back() : *place;
        target.components.insert(target.components.end(), all.begin(), last);
        return part;
    }

    void comparePart(int place, int view) {
        const std::optional<PlainXform>& xform = xformOf(place, view);
        const PartQuery query = makeQuery(xform.value_or(PlainXform()));
        const bool includeParent = oneIn(2);
        SCOPED_TRACE("part " + query.groupName + " " + query.componentName + " component " +
                     std::to_string(query.includeComponent) + " before " +
                     std::to_string(query.includeGroupsBefore) + " after " +
                     std::to_string(query.includeGroupsAfter) + " parent " +
                     std::to_string(includeParent));
        const DoubleAttribute actual = delegate->getPartialXform(
            at(place).path, query.groupName, query.componentName, query.includeComponent, view,
            includeParent, query.includeGroupsBefore, query.includeGroupsAfter);
        std::optional<PlainXform> part;
        if (xform && (view == kVlViewerDelegateLookThrough || isSent(place, view))) {
            part = partOf(*xform, query);
        }
        ASSERT_EQ(actual.isValid(), part.has_value());
        if (!part) {
            return;
        }
        ++numberOfParts;
        PlainSamples expected = evaluateAtExistingTimes(*part);
        if (includeParent && !evaluate(*part, 0.0F).isAbsolute) {
            expected = multiply(expected, worldOf(at(place).parent, view));
        }
        EXPECT_EQ(complaint(expected, actual), "");
    }

    std::mt19937 random;
    std::vector<Location> scene;
};

TEST_F(TransformsOracle, randomHierarchiesEqualThePlainEvaluationInAllViews) {
    const OracleSeeds seeds(20261121, 150);
    for (unsigned seed = seeds.first; seed - seeds.first < seeds.count; ++seed) {
        run(seed);
        if (HasFailure()) {
            return;
        }
    }
    // Where nothing was compared, nothing would be proved.
    EXPECT_GT(numberOfParts, static_cast<int>(seeds.count) * 5);
    EXPECT_GT(numberOfUnsent, static_cast<int>(seeds.count));
}

} // namespace
} // namespace ViewerAPI::test
