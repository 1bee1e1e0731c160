#include "support/delegatetest.h"
#include "support/factorytest.h"

#include "VlAttribute/FloatAttribute.h"

#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace ViewerAPI::test {
namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;

/// Boxes over long random lives of a scene and its view, from the clients to the plug-in: after
/// each pump the plug-in knows a box exactly for those locations that, by what it knows of them,
/// are to have one.
class GeneratedLocationsOracle : public DelegateTest {
protected:
    struct Known {
        GroupAttribute attributes;
        bool isHidden = false;
        bool isLeaf = false;
        bool isProxy = false;
    };

    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }

    GroupAttribute someAttributes() {
        GroupBuilder builder;
        if (!oneIn(4)) {
            builder.update(bounded(1 + upTo(3)));
        }
        if (oneIn(4)) {
            builder.set("geometry.point.P", FloatAttribute({1, 2, 3}, 3));
        }
        if (oneIn(4)) {
            builder.set("viewer.default.drawOptions.hide", IntAttribute(upTo(2)));
        }
        return builder.build();
    }

    /// Reports a location if its parent exists, or with all below it gone, deepest first.
    void changeScene(const std::string& path) {
        const std::string parent(LocationPath::parentOf(path));
        if (oneIn(path == "/root" ? 20 : 6)) {
            for (auto place = existing.rbegin(); place != existing.rend();) {
                const std::string each = *place++;
                if (LocationPath::isAtOrBelow(each, path)) {
                    client(kPrimaryClient).reportGone(each);
                    existing.erase(each);
                    place = std::make_reverse_iterator(existing.lower_bound(each));
                }
            }
        } else if (parent.empty() || existing.contains(parent)) {
            std::vector<std::string> children;
            if (oneIn(2)) {
                children.emplace_back("x");
            }
            client(kPrimaryClient).report(path, someAttributes(), children);
            existing.insert(path);
        }
    }

    void change() {
        const std::string& path = paths[static_cast<std::size_t>(upTo(int(paths.size())))];
        const char* const text = path.c_str();
        switch (upTo(18)) {
        case 0:
        case 1:
            delegate->openLocations(&text, 1);
            break;
        case 2:
            delegate->closeLocations(&text, 1);
            break;
        case 3:
            if (oneIn(2)) {
                delegate->hideLocations(&text, 1);
            }
            break;
        case 4:
            if (oneIn(2)) {
                delegate->unhideLocations(&text, 1);
            } else {
                delegate->unhideAllLocations();
            }
            break;
        case 5:
            delegate->pinLocations(&text, 1);
            break;
        case 6:
            delegate->unpinLocations(&text, 1);
            break;
        case 7:
            if (oneIn(2)) {
                switchBoxes();
            } else {
                atNextLocation = [this, path] {
                    // In the midst of a delivery, when the tree is ahead of the factories.
                    if (oneIn(2)) {
                        delegate->locationTree.setAttributes(path, someAttributes());
                        delegate->flushLocationChanges(true);
                    }
                    for (int times = upTo(3); times >= 0; --times) {
                        switchBoxes();
                    }
                };
            }
            break;
        case 8:
            delegate->locationTree.setAttributes(path, someAttributes());
            break;
        case 9:
            if (oneIn(20)) {
                // What waits in the clients is of the scene that goes, and parents would be
                // missing where it came back alone.
                delegate->processLocationEvents();
                delegate->flushCaches();
                existing.clear();
            }
            break;
        default:
            changeScene(path);
            break;
        }
    }

    void switchBoxes() {
        areBoxesEnabled = !oneIn(3);
        delegate->setBoundingBoxesEnabled(areBoxesEnabled);
    }

    /// Applies what the plug-in heard.
    void learn() {
        for (const RecordedEvent& event : std::exchange(plugin.events, {})) {
            if ((event.flags & kVlLocationEventRemoved) != 0) {
                EXPECT_TRUE(known.contains(event.path)) << "removed: " << event.path;
                std::erase_if(known, [&event](const auto& entry) {
                    return LocationPath::isAtOrBelow(entry.first, event.path);
                });
                continue;
            }
            Known& location = known[event.path];
            location.isProxy = (event.flags & kVlLocationEventProxy) != 0;
            if ((event.flags & kVlLocationEventAttributesChanged) != 0) {
                location.attributes = GroupAttribute(event.attributes);
            }
            if ((event.flags & kVlLocationEventHiddenChanged) != 0) {
                location.isHidden = (event.flags & kVlLocationEventHidden) != 0;
            }
            if ((event.flags & kVlLocationEventLeafChanged) != 0) {
                location.isLeaf = (event.flags & kVlLocationEventLeaf) != 0;
            }
        }
    }

    /// The largest corner of the box that a location is to have; 0 for none.
    double boxOf(const Known& location) const {
        const GroupAttribute& attributes = location.attributes;
        const IntAttribute hide(attributes.getChildByName("viewer.default.drawOptions.hide"));
        const DoubleAttribute bound(attributes.getChildByName("bound"));
        if (!areBoxesEnabled || !location.isLeaf || location.isHidden || hide.getValue() != 0 ||
            attributes.getChildByName("geometry.point").isValid() || !bound.isValid()) {
            return 0;
        }
        return bound.getNearestSample(0.0F)[5];
    }

    const std::vector<std::string> paths = {"/root",       "/root/a",   "/root/a/b", "/root/a/c",
                                            "/root/a/b/d", "/root/a.b", "/root/ab",  "/root/b"};
    std::mt19937 random;
    std::set<std::string> existing;
    std::map<std::string, Known> known;
    bool areBoxesEnabled = true;
    std::function<void()> atNextLocation; ///< done once, when the plug-in hears of one
};

TEST_F(GeneratedLocationsOracle, thePluginKnowsTheBoxesOfWhatItKnows) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    random.seed(seed);
    plugin.onCall = [this](std::string_view entry, std::string_view path) {
        if (entry == "locationEvent" && !path.ends_with("/__VlOst_bbox") && atNextLocation) {
            std::exchange(atNextLocation, nullptr)();
        }
    };
    std::size_t boxes = 0;
    for (int round = 0; round < 5000; ++round) {
        for (int changes = upTo(6); changes >= 0; --changes) {
            change();
        }
        delegate->processLocationEvents();
        learn();
        std::map<std::string, double> expected;
        std::map<std::string, double> actual;
        for (const auto& [path, location] : known) {
            if (location.isProxy) {
                const FloatAttribute points(location.attributes.getChildByName("geometry.point.P"));
                actual[path] = points.getNearestSample(0.0F)[4 * 3 - 1];
            } else if (const double size = boxOf(location); size != 0) {
                expected[path + "/__VlOst_bbox"] = size;
            }
        }
        ASSERT_EQ(actual, expected) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
        boxes += actual.size();
        log.take();
        runtime->takeCalls();
    }
    EXPECT_GT(boxes, 1000U);
}

} // namespace
} // namespace ViewerAPI::test
