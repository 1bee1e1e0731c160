// Boxes of random hierarchies against an evaluation that asks of each location by itself whether it
// counts, and moves the eight corners of its box; and over random changes also against what the
// same tree answers when nothing is kept from earlier questions.

#include "scenebounds.h"

#include "extentcache.h"
#include "support/delegatetest.h"
#include "support/oracleseeds.h"
#include "support/plainboxes.h"
#include "support/plainxform.h"

#include "VlAttribute/FloatAttribute.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

/// An attribute that somebody has as a box, and the box if it counts as one.
struct Answer {
    Attribute attribute;
    PlainBoxes boxes;
};

struct Location {
    std::string path;
    int parent = -1;
    bool isProxy = false;
    std::optional<PlainXform> xform;
    bool isOpen = false;
    bool isPinned = false;
    bool isHidden = false;
    bool exists = true;
    bool isNewsWaiting = false; ///< an event that the next pump brings
    int oneInHasBound = 8;
    Answer bound;          ///< the attribute
    GroupAttribute points; ///< the group "geometry"
    PlainBoxes pointBoxes;
    std::vector<Answer> bounds;  ///< of the plug-in, then of components from last to first
    std::vector<Answer> extents; ///< likewise
};

class ExtentsOracle : public DelegateTest {
protected:
    void run(unsigned seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        random.seed(seed);
        makeScene(false);
        start();
        showScene();
        for (std::size_t place = 0; place < scene.size(); ++place) {
            SCOPED_TRACE(scene[place].path);
            EXPECT_EQ(complaint(boundsOf(int(place)), delegate->getBounds(scene[place].path)), "");
            EXPECT_EQ(complaint(extentOf(int(place)), delegate->computeExtent(scene[place].path)),
                      "");
        }
        for (int query = 0; query < 8; ++query) {
            compareMerged();
        }
    }

    /// A scene with broad families of locations with bounds, over a random life.
    void runChanges(unsigned seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        random.seed(seed);
        makeScene(true);
        start();
        delegate->setManipulationFreezePeriod(0);
        showScene();
        for (int round = 0; round < 40 && !HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            for (int changes = upTo(3); changes >= 0; --changes) {
                change();
                if (oneIn(3)) {
                    compareWithFresh();
                }
            }
            delegate->processLocationEvents();
            for (Location& location : scene) {
                location.isNewsWaiting = false;
            }
            if (oneIn(2)) {
                compareWithFresh();
            }
            bringProxies();
            compareMerged();
            compareWithFresh();
        }
    }

    int numberOfExtents = 0;
    int numberOfHits = 0; ///< questions that found something kept

private:
    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }
    double number() { return std::uniform_real_distribution<double>(-5, 5)(random); }
    const Location& at(int place) const { return scene[static_cast<std::size_t>(place)]; }

    // ---- The scene

    std::array<double, 6> randomBox() {
        std::array<double, 6> values{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto [low, high] = std::minmax({number(), number()});
            values[axis * 2] = low;
            values[axis * 2 + 1] = high;
        }
        return values;
    }

    Answer randomAnswer() {
        const std::array<double, 6> first = randomBox();
        const std::array<double, 6> second = randomBox();
        switch (upTo(6)) {
        case 0: {
            const std::vector<float> times{0.0F, 1.0F};
            const std::vector<std::vector<double>> samples{{first.begin(), first.end()},
                                                           {second.begin(), second.end()}};
            return {DoubleAttribute(times, samples), {{0.0F, boxOf(first)}, {1.0F, boxOf(second)}}};
        }
        case 1:
            return {DoubleAttribute(std::span<const double>(first.data(), 5)), {}};
        case 2:
            return {FloatAttribute({0, 1, 0, 1, 0, 1}), {}};
        default:
            return {DoubleAttribute(first), {{0.0F, boxOf(first)}}};
        }
    }

    /// Points of 3 or 4 floats each, and the box that the rules give: weighted by w, and with
    /// maxima that begin at the smallest positive number.
    void makePoints(Location& location) {
        const bool areWeighted = oneIn(3);
        const std::size_t length = areWeighted ? 4 : 3;
        const int count = oneIn(6) ? 0 : oneIn(6) ? 100 : 1 + upTo(4);
        const bool areNegative = oneIn(4);
        std::vector<float> values;
        PlainBox box = boxOf({std::numeric_limits<double>::max(), 2.2250738585072014e-308,
                              std::numeric_limits<double>::max(), 2.2250738585072014e-308,
                              std::numeric_limits<double>::max(), 2.2250738585072014e-308});
        for (int point = 0; point < count; ++point) {
            std::array<float, 4> p{};
            for (float& value : p) {
                value = static_cast<float>(areNegative ? -std::abs(number()) : number());
            }
            values.insert(values.end(), p.begin(), p.begin() + static_cast<long>(length));
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const double value = areWeighted ? double(p[axis]) * double(p[3]) : p[axis];
                box.values[axis * 2] = std::min(box.values[axis * 2], value);
                box.values[axis * 2 + 1] = std::max(box.values[axis * 2 + 1], value);
                box.sizes[axis * 2] = box.sizes[axis * 2 + 1] = 25;
            }
        }
        GroupBuilder builder;
        if (areWeighted && oneIn(2)) {
            builder.set("point.P", FloatAttribute({1, 2})); // no whole point
        }
        builder.set(areWeighted ? "point.Pw" : "point.P",
                    FloatAttribute(values, static_cast<std::int64_t>(length)));
        location.points = builder.build();
        location.pointBoxes = {{0.0F, box}};
    }

    void makeScene(bool isBroad) {
        scene.assign(1, Location());
        scene.front().path = "/root";
        const int count = isBroad ? 20 + upTo(30) : 3 + upTo(14);
        // Of a broad scene most are children of a few of the first.
        const int families = 1 + upTo(3);
        for (int i = 1; i < count; ++i) {
            const int parent = isBroad && i > families && !oneIn(8) ? upTo(families)
                                                                    : std::max(0, i - 1 - upTo(6));
            Location& added = scene.emplace_back();
            added.path = at(parent).path + "/n" + std::to_string(i);
            added.parent = parent;
            // Below a proxy there are proxies only.
            added.isProxy = at(parent).isProxy || oneIn(6);
        }
        for (std::size_t place = 0; place < scene.size(); ++place) {
            Location& location = scene[place];
            location.isOpen = !location.isProxy && !oneIn(6);
            location.isPinned = !location.isProxy && oneIn(12);
            location.isHidden = !location.isProxy && oneIn(10);
            const bool isInFamily = isBroad && static_cast<int>(place) > families;
            location.oneInHasBound = isInFamily ? 1 : isBroad ? 16 : 8;
            makeAttributes(location);
            makeAnswers(location, isInFamily ? 60 : 20);
        }
    }

    void makeAttributes(Location& location) {
        const RandomXforms xforms{random};
        location.xform.reset();
        location.bound = {};
        location.points = {};
        location.pointBoxes = {};
        if (!oneIn(5)) {
            location.xform = xforms.make();
        }
        if (oneIn(location.oneInHasBound)) {
            const std::array<double, 6> values = randomBox();
            // All of a family have one, and most a simple one.
            if (location.oneInHasBound == 1 && !oneIn(8)) {
                location.bound = {DoubleAttribute(values), {{0.0F, boxOf(values)}}};
            } else {
                location.bound = randomAnswer();
            }
        }
        if (oneIn(2)) {
            makePoints(location);
        }
    }

    void makeAnswers(Location& location, int oneInHasBounds) {
        location.bounds.assign(3, {});
        location.extents.assign(3, {});
        for (std::size_t who = 0; who < 3; ++who) {
            if (oneIn(oneInHasBounds)) {
                location.bounds[who] = randomAnswer();
            }
            if (oneIn(6)) {
                location.extents[who] = randomAnswer();
            }
        }
    }

    static GroupAttribute attributesOf(const Location& location) {
        GroupBuilder attributes;
        attributes.set("geometry", location.points);
        attributes.set("bound", location.bound.attribute);
        if (location.xform) {
            attributes.set("xform", toAttribute(*location.xform));
        }
        return attributes.build();
    }

    void showScene() {
        delegate->addComponent("A", "a");
        delegate->addComponent("B", "b");
        for (RecordingPlugin* const recorder : asked) {
            recorder->bounds.clear();
            recorder->extents.clear();
        }
        for (const Location& location : scene) {
            tellAnswers(location);
            const char* const path = location.path.c_str();
            if (!location.isProxy) {
                client(kPrimaryClient).report(location.path, attributesOf(location), {"x"});
            }
            if (location.isOpen) {
                delegate->openLocations(&path, 1);
            }
            if (location.isPinned) {
                delegate->pinLocations(&path, 1);
            }
            if (location.isHidden) {
                delegate->hideLocations(&path, 1);
            }
        }
        const char* const notThere = "/root/placeholder/pinned";
        delegate->pinLocations(&notThere, 1);
        delegate->processLocationEvents();
        // Proxies come to locations that are as they shall be: those that were there before a
        // location was hidden would not be hidden with it.
        bringProxies();
    }

    void tellAnswers(const Location& location) {
        for (std::size_t who = 0; who < asked.size(); ++who) {
            asked[who]->bounds[location.path] = location.bounds[who].attribute;
            asked[who]->extents[location.path] = location.extents[who].attribute;
        }
    }

    /// As a factory does: proxies go with the locations that they stand below.
    void bringProxies() {
        for (std::size_t place = 0; place < scene.size(); ++place) {
            if (at(int(place)).isProxy && existsWithAncestors(int(place))) {
                delegate->locationTree.cook(at(int(place)).path, attributesOf(at(int(place))), {},
                                            true, false);
            }
        }
        delegate->flushLocationChanges(true);
    }

    // ---- Its life

    void change() {
        Location& location = scene[static_cast<std::size_t>(upTo(static_cast<int>(scene.size())))];
        const char* const path = location.path.c_str();
        switch (upTo(12)) {
        case 0:
            changeAnswers(location);
            break;
        case 1:
            if (!location.isProxy) {
                setOpen(location, !oneIn(4));
            }
            break;
        case 2:
            if (!location.isProxy) {
                setPinned(location, oneIn(3));
            }
            break;
        case 3:
        case 4:
            // Whether a proxy is hidden with its location depends on which was first.
            if (!location.isProxy && !hasProxies(location)) {
                setHidden(location, oneIn(2));
            }
            break;
        case 5:
            if (!location.isProxy && (location.path != "/root" || oneIn(10))) {
                removeSubtree(location);
            }
            break;
        case 6:
        case 7:
            manipulate(location);
            break;
        default:
            if (location.isProxy) {
                makeAttributes(location);
                delegate->locationTree.setAttributes(path, attributesOf(location));
            } else if (location.parent < 0 || at(location.parent).exists) {
                location.exists = location.isNewsWaiting = true;
                makeAttributes(location);
                client(kPrimaryClient).report(location.path, attributesOf(location), {"x"});
            }
            break;
        }
    }

    void changeAnswers(Location& location) {
        makeAnswers(location, 30);
        tellAnswers(location);
    }
    void setOpen(Location& location, bool isOpen) {
        const char* const path = location.path.c_str();
        location.isOpen = isOpen;
        isOpen ? delegate->openLocations(&path, 1) : delegate->closeLocations(&path, 1);
    }
    void setPinned(Location& location, bool isPinned) {
        const char* const path = location.path.c_str();
        location.isPinned = isPinned;
        isPinned ? delegate->pinLocations(&path, 1) : delegate->unpinLocations(&path, 1);
    }
    void setHidden(Location& location, bool isHidden) {
        const char* const path = location.path.c_str();
        location.isHidden = isHidden;
        isHidden ? delegate->hideLocations(&path, 1) : delegate->unhideLocations(&path, 1);
    }
    bool hasProxies(const Location& location) const {
        return std::any_of(scene.begin(), scene.end(), [&](const Location& each) {
            return each.isProxy && &at(each.parent) == &location;
        });
    }
    void removeSubtree(const Location& location) {
        const int top = static_cast<int>(&location - scene.data());
        for (int place = static_cast<int>(scene.size()) - 1; place >= top; --place) {
            Location& each = scene[static_cast<std::size_t>(place)];
            if (!each.isProxy && each.exists && isAtOrBelow(place, top)) {
                each.exists = false;
                each.isNewsWaiting = true;
                client(kPrimaryClient).reportGone(each.path);
            }
        }
    }
    /// A live value on what plug-ins know. It stands until the next event of the location.
    void manipulate(Location& location) {
        const bool isBound = oneIn(2);
        Location changed = location;
        if (isBound) {
            changed.bound = randomAnswer();
        } else {
            changed.xform = RandomXforms{random}.make();
        }
        const bool isSet =
            location.isProxy ||
            delegate->setManipulatedAttribute(
                location.path, isBound ? "bound" : "xform",
                isBound ? changed.bound.attribute : Attribute(toAttribute(*changed.xform)), true);
        if (isSet && !location.isNewsWaiting) {
            location = changed;
        }
    }

    // ---- The plain evaluation

    bool isAtOrBelow(int place, int ancestor) const {
        while (place > ancestor) {
            place = at(place).parent;
        }
        return place == ancestor;
    }

    bool existsWithAncestors(int place) const {
        while (place >= 0 && at(place).exists) {
            place = at(place).parent;
        }
        return place < 0;
    }

    /// Whether plug-ins were told of the location. Proxies come and go with theirs.
    bool isSent(int place) const {
        while (at(place).isProxy) {
            place = at(place).parent;
        }
        if (!existsWithAncestors(place)) {
            return false;
        }
        if (place == 0) { // the placeholder below it is pinned too
            return true;
        }
        bool areAncestorsOpen = true;
        for (int above = at(place).parent; above >= 0; above = at(above).parent) {
            areAncestorsOpen = areAncestorsOpen && at(above).isOpen;
        }
        for (std::size_t i = 0; i < scene.size(); ++i) {
            if (scene[i].isPinned && isAtOrBelow(int(i), place)) {
                return true;
            }
        }
        return areAncestorsOpen;
    }

    bool isHidden(int place) const {
        for (; place >= 0; place = at(place).parent) {
            if (at(place).isHidden) {
                return true;
            }
        }
        return false;
    }

    PlainMatrix worldOf(int place) const {
        PlainXform chain;
        for (; place >= 0; place = at(place).parent) {
            if (at(place).xform) {
                chain.insert(chain.begin(), at(place).xform->begin(), at(place).xform->end());
            }
        }
        return evaluate(chain, 0.0F).matrix;
    }

    PlainBoxes boundsOf(int place) const {
        if (isSent(place) && !at(place).bound.boxes.empty()) {
            return at(place).bound.boxes;
        }
        for (const Answer& answer : at(place).bounds) {
            if (!answer.boxes.empty()) {
                return answer.boxes;
            }
        }
        return {};
    }

    PlainBoxes extentOf(int place) const {
        PlainBoxes extent;
        if (isSent(place)) {
            extent = at(place).pointBoxes;
        }
        for (const Answer& answer : at(place).extents) {
            mergeInto(extent, answer.boxes);
        }
        return extent;
    }

    /// Whether a walk from a location comes to one at or below it.
    bool isReached(int place, int start, const std::string& excluded) const {
        if (!isAtOrBelow(place, start)) {
            return false;
        }
        for (int each = place;; each = at(each).parent) {
            if (!isSent(each) || isHidden(each) || at(each).path == excluded ||
                (each != place && !boundsOf(each).empty())) {
                return false;
            }
            if (each == start) {
                return true;
            }
        }
    }

    void compareMerged() {
        std::vector<int> starts;
        std::vector<const char*> paths;
        for (int count = upTo(4); count > 0; --count) {
            starts.push_back(oneIn(3) ? 0 : upTo(static_cast<int>(scene.size())));
            paths.push_back(at(starts.back()).path.c_str());
        }
        if (oneIn(4)) {
            paths.insert(paths.begin(), {"/root/unknown", nullptr, "/root/placeholder"});
        }
        const std::string excluded = oneIn(2) ? "" : at(upTo(static_cast<int>(scene.size()))).path;
        PlainBoxes expected;
        for (std::size_t i = 0; i < scene.size(); ++i) {
            const int place = static_cast<int>(i);
            if (std::any_of(starts.begin(), starts.end(),
                            [&](int start) { return isReached(place, start, excluded); })) {
                const PlainBoxes bounds = boundsOf(place);
                mergeInto(expected,
                          transformed(bounds.empty() ? extentOf(place) : bounds, worldOf(place)));
            }
        }
        numberOfExtents += expected.empty() ? 0 : 1;
        EXPECT_EQ(complaint(expected, merged(paths, excluded)), "")
            << testing::PrintToString(paths) << " without " << excluded;
    }

    DoubleAttribute merged(const std::vector<const char*>& paths, const std::string& excluded) {
        return delegate->computeMergedExtent(paths.data(), static_cast<std::uint32_t>(paths.size()),
                                             excluded);
    }

    // ---- What is kept

    const LocationNode* nodeOf(const Location& location) const {
        return delegate->locationTree.find(location.path);
    }

    /// Exactly: also between a change and the next collection, when the tree knows more than
    /// plug-ins.
    void compareWithFresh() {
        const std::vector<const char*> paths{
            at(oneIn(2) ? 0 : upTo(int(scene.size()))).path.c_str(),
            at(upTo(int(scene.size()))).path.c_str()};
        const std::string excluded = oneIn(3) ? at(upTo(int(scene.size()))).path : "";
        numberOfHits += std::any_of(scene.begin(), scene.end(), [this](const Location& location) {
            const LocationNode* const node = nodeOf(location);
            return node && node->extents;
        });
        const DoubleAttribute actual = merged(paths, excluded);
        const auto dropAll = [this] {
            for (const Location& location : scene) {
                if (const LocationNode* const node = nodeOf(location)) {
                    node->extents.reset();
                }
            }
        };
        dropAll();
        const DoubleAttribute fresh = merged(paths, excluded);
        EXPECT_EQ(textOf(actual), textOf(fresh))
            << testing::PrintToString(paths) << " without " << excluded;
    }

    const std::array<RecordingPlugin*, 3> asked{&plugin, &componentB, &componentA};

    std::mt19937 random;
    std::vector<Location> scene;
};

TEST_F(ExtentsOracle, randomHierarchiesEqualThePlainEvaluation) {
    const OracleSeeds seeds(20261121, 250);
    for (unsigned seed = seeds.first; seed - seeds.first < seeds.count; ++seed) {
        run(seed);
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(numberOfExtents, static_cast<int>(seeds.count) * 3);
}

TEST_F(ExtentsOracle, randomLivesEqualThePlainEvaluationAndAFreshOne) {
    const OracleSeeds seeds(20261122, 100);
    for (unsigned seed = seeds.first; seed - seeds.first < seeds.count; ++seed) {
        runChanges(seed);
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(numberOfExtents, static_cast<int>(seeds.count) * 10);
    EXPECT_GT(numberOfHits, static_cast<int>(seeds.count) * 10);
}

} // namespace
} // namespace ViewerAPI::test
