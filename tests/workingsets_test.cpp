// What the plug-ins know in expansion and in working-set mode, over the real engine and its ops,
// against the rules evaluated location by location.

#include "support/oracleseeds.h"
#include "viewersession.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <sstream>

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

using View = std::map<std::string, KnownView::Location>;

/// The locations that scenes may have, parents before children; the first is "/root".
struct Place {
    std::string path;
    std::string name;
    int parent = -1;
};

struct Scene {
    int op = 0;
    std::vector<bool> exists; ///< only where the parent does
    std::vector<int> values;
};

struct WorkingSet {
    std::set<std::string> include;
    std::set<std::string> exclude;
    bool childrenInherit = true;

    [[nodiscard]] GroupAttribute toAttribute(bool namesInheritance) const {
        GroupBuilder set;
        set.set("include", toList(include));
        set.set("exclude", toList(exclude));
        if (namesInheritance || !childrenInherit) {
            set.set("childrenInherit", IntAttribute(childrenInherit ? 1 : 0));
        }
        return set.build();
    }

private:
    static StringAttribute toList(const std::set<std::string>& paths) {
        return StringAttribute(std::vector<std::string>(paths.begin(), paths.end()));
    }
};

class History {
public:
    explicit History(unsigned seed) : random(seed) {
        places.push_back({"/root", "root"});
        const int count = 8 + upTo(18);
        for (int i = 1; i < count; ++i) {
            const int parent = std::max(0, i - 1 - upTo(5));
            const std::string name = "n" + std::to_string(i);
            places.push_back({at(parent).path + "/" + name, name, parent});
        }
        for (Scene& scene : scenes) {
            scene.exists.resize(places.size());
            scene.values.resize(places.size());
            for (std::size_t i = 0; i < places.size(); ++i) {
                scene.exists[i] = i == 0 || (scene.exists[parentOf(i)] && !oneIn(6));
                scene.values[i] = upTo(3);
            }
            Transaction transaction;
            scene.op = transaction.createOp("Scene.Literal", literalArgs(scene));
            transaction.commit();
        }
        session.onRecord = [this](const LocationChange& record) {
            std::ostringstream text;
            text << "    " << record;
            say(text.str());
        };
        session.onRootEvent = [this] { isRootToldInMode = isWorkingSetMode; };
        session.delegate->setViewOp(viewed->op);
        say("view");
        settleAndCompare();
    }

    /// Some changes, at times with pumps in between that see some of what follows from them; then
    /// what the plug-in knows is compared.
    void step() {
        const int changes = oneIn(2) ? 1 + upTo(4) : 1;
        for (int i = 0; i < changes; ++i) {
            // Where the mode keeps what is known, it would be a matter of how far the engine has
            // come what that is between two changes; so it would which client tells of what, when
            // they change to other ops with the mode or take over from each other with a pin.
            const bool didKeepKnown = mayKeepKnown();
            const bool wasMode = isWorkingSetMode;
            change(i == 0);
            if (didKeepKnown || mayKeepKnown() || havePinsChanged || wasMode != isWorkingSetMode) {
                break;
            }
            // What a pump sees decides which client tells of what pins show.
            if (pinned.empty() && oneIn(2)) {
                say("pump");
                session.pump();
            }
        }
        settleAndCompare();
    }

    int numberOfResolvedViews = 0;
    int numberOfKeptViews = 0; ///< in the mode without a working set
    int numberKeptOfPins = 0;

private:
    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }
    [[nodiscard]] const Place& at(int place) const {
        return places[static_cast<std::size_t>(place)];
    }
    [[nodiscard]] std::size_t parentOf(std::size_t place) const {
        return static_cast<std::size_t>(places[place].parent);
    }
    const std::string& anyPath() {
        static const std::string kUnknown = "/root/unknown/below";
        return oneIn(15) ? kUnknown : at(upTo(static_cast<int>(places.size()))).path;
    }
    static bool isBelow(const std::string& path, const std::string& ancestor) {
        return path.size() > ancestor.size() && path.compare(0, ancestor.size(), ancestor) == 0 &&
               path[ancestor.size()] == '/';
    }

    // ---- The scene

    [[nodiscard]] static GroupAttribute attributesOf(const Scene& scene, std::size_t place) {
        return GroupAttribute{{"value", IntAttribute(scene.values[place])}};
    }

    [[nodiscard]] GroupAttribute literalOf(const Scene& scene, std::size_t place) const {
        GroupBuilder level;
        level.set("a", attributesOf(scene, place));
        for (std::size_t child = place + 1; child < places.size(); ++child) {
            if (parentOf(child) == place && scene.exists[child]) {
                level.set("c." + places[child].name, literalOf(scene, child));
            }
        }
        return level.build();
    }
    [[nodiscard]] GroupAttribute literalArgs(const Scene& scene) const {
        return GroupAttribute{{"staticScene", literalOf(scene, 0)}};
    }

    void editScene() {
        const auto place = static_cast<std::size_t>(upTo(static_cast<int>(places.size())));
        viewed->values[place] = upTo(5);
        if (place > 0 && oneIn(2)) {
            const bool exists = viewed->exists[parentOf(place)] && !viewed->exists[place];
            viewed->exists[place] = exists;
            for (std::size_t i = place + 1; i < places.size(); ++i) {
                if (isBelow(places[i].path, places[place].path)) {
                    viewed->exists[i] = exists && viewed->exists[parentOf(i)] && !oneIn(4);
                }
            }
        }
        say("edit " + places[place].path);
        Transaction transaction;
        transaction.setOpArgs(viewed->op, "Scene.Literal", literalArgs(*viewed));
        transaction.commit();
    }

    // ---- Changes

    void change(bool isFirst) {
        const std::string& path = anyPath();
        switch (upTo(16)) {
        case 0:
        case 1:
            isWorkingSetMode = !isWorkingSetMode;
            say(isWorkingSetMode ? "working-set mode" : "expansion mode");
            session.delegate->setWorkingSetVisibilityEnabled(isWorkingSetMode);
            break;
        case 2:
        case 3:
        case 4:
            changeWorkingSet();
            break;
        case 5:
        case 6:
            say("open " + path);
            session.open(path);
            opened.insert(path);
            break;
        case 7:
            say("close " + path);
            session.close(path);
            opened.erase(path);
            break;
        case 8:
            if (!isFirst) {
                break;
            }
            say("pin " + path);
            session.pin(path);
            pinned.insert(path);
            havePinsChanged = true;
            break;
        case 9:
            if (!isFirst) {
                break;
            }
            unpin(pinned.empty() || oneIn(4) ? path : *pinned.begin());
            break;
        case 10:
            say("hide " + path);
            session.hide(path);
            hidden.insert(path);
            break;
        case 11:
        case 12:
            say("unhide " + path);
            session.unhide(path);
            hidden.erase(path);
            break;
        case 13:
            viewed = &scenes[viewed == &scenes[0] ? 1 : 0];
            say("view the other op");
            session.delegate->setViewOp(viewed->op);
            break;
        default:
            editScene();
        }
    }

    void unpin(const std::string& pinnedPath) {
        const std::string path = pinnedPath; // which may be the one that is erased
        say("unpin " + path);
        session.unpin(path);
        pinned.erase(path);
        havePinsChanged = true;
    }

    void changeWorkingSet() {
        if (oneIn(6)) {
            say("no working set");
            workingSet.reset();
            session.delegate->setVisibilityWorkingSet({});
            return;
        }
        if (!workingSet || oneIn(3)) {
            workingSet.emplace();
        }
        for (int i = upTo(3); i > 0; --i) {
            workingSet->include.insert(anyPath());
        }
        for (int i = upTo(3); i > 0; --i) {
            workingSet->exclude.insert(anyPath());
        }
        if (oneIn(2) && !workingSet->include.empty()) {
            workingSet->include.erase(workingSet->include.begin());
        }
        if (oneIn(2) && !workingSet->exclude.empty()) {
            workingSet->exclude.erase(workingSet->exclude.begin());
        }
        workingSet->childrenInherit = !oneIn(3);
        say("working set with " + testing::PrintToString(workingSet->include) + " without " +
            testing::PrintToString(workingSet->exclude) + " inherit " +
            std::to_string(workingSet->childrenInherit));
        session.delegate->setVisibilityWorkingSet(workingSet->toAttribute(oneIn(2)));
    }

    // ---- The plain evaluation

    /// Whether the plug-in may know something in the mode for the only reason that it knew it
    /// before: all of it for want of a working set, or what pins had shown.
    [[nodiscard]] bool mayKeepKnown() const {
        return isWorkingSetMode && (!workingSet || !pinned.empty() || !shownByPinAlone.empty());
    }

    /// When the mode begins, the client of the pins rests and isn't listened to. What it alone has
    /// told of stays as it was then, until the primary client tells of it, or of an ancestor that
    /// it is gone.
    void followPins(bool isModeNew) {
        if (!isWorkingSetMode) {
            shownByPinAlone.clear();
        } else if (isModeNew) {
            for (const auto& location : before) {
                if (isShownByPin(location.first) && toldByPrimary.count(location.first) == 0) {
                    shownByPinAlone.insert(location.first);
                }
            }
        }
        for (std::size_t place = 0; place < places.size(); ++place) {
            const std::string& path = places[place].path;
            if (!viewed->exists[place]) {
                toldByPrimary.erase(path);
            } else if (isShownToPrimary(place)) {
                toldByPrimary.insert(path);
            } else if (isWorkingSetMode || !isShownByPin(path)) {
                // Else it would be told gone, had not the pins' client taken it over.
                toldByPrimary.erase(path);
            }
            const bool isParentThere = place == 0 ||
                                       toldByPrimary.count(places[parentOf(place)].path) != 0 ||
                                       shownByPinAlone.count(places[parentOf(place)].path) != 0;
            if (toldByPrimary.count(path) != 0 || !isParentThere) {
                shownByPinAlone.erase(path);
            }
        }
    }
    /// Whether the primary client cooks a location that exists.
    [[nodiscard]] bool isShownToPrimary(std::size_t place) const {
        return isWorkingSetMode ? !workingSet || isKept(place) : areAncestorsOpen(place);
    }
    [[nodiscard]] bool isShownByPin(const std::string& path) const {
        return pinned.count(path) != 0 || hasPinnedBelow(path);
    }

    [[nodiscard]] bool isHiddenByUser(const std::string& path) const {
        return std::any_of(hidden.begin(), hidden.end(), [&path](const std::string& each) {
            return each == path || isBelow(path, each);
        });
    }
    [[nodiscard]] bool hasPinnedBelow(const std::string& path) const {
        return std::any_of(pinned.begin(), pinned.end(),
                           [&path](const std::string& pin) { return isBelow(pin, path); });
    }
    [[nodiscard]] bool areAncestorsOpen(std::size_t place) const {
        return place == 0 || (opened.count(places[parentOf(place)].path) != 0 &&
                              areAncestorsOpen(parentOf(place)));
    }
    /// Of the children that exist and that satisfy `condition`, whether there is one.
    template <class Condition>
    [[nodiscard]] bool hasChild(std::size_t place, Condition&& condition) const {
        for (std::size_t child = place + 1; child < places.size(); ++child) {
            if (parentOf(child) == place && viewed->exists[child] && condition(child)) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] bool hasChildren(std::size_t place) const {
        return hasChild(place, [](std::size_t) { return true; });
    }

    [[nodiscard]] bool isIncluded(std::size_t place) const {
        const std::string& path = places[place].path;
        if (workingSet->exclude.count(path) != 0) {
            return false;
        }
        return workingSet->include.count(path) != 0 ||
               (workingSet->childrenInherit && place > 0 && isIncluded(parentOf(place)));
    }
    /// Whether it is included, or stands above one that the set names.
    [[nodiscard]] bool isKept(std::size_t place) const {
        return place == 0 || isIncluded(place) ||
               std::any_of(workingSet->include.begin(), workingSet->include.end(),
                           [&](const std::string& path) {
                               return isBelow(path, places[place].path) &&
                                      workingSet->exclude.count(path) == 0;
                           });
    }

    /// What the plug-in must know of a location that exists; nothing when it must not know it.
    [[nodiscard]] std::optional<KnownView::Location> expect(std::size_t place) const {
        const std::string& path = places[place].path;
        KnownView::Location location;
        location.attributes = attributesOf(*viewed, place);
        location.hidden = isHiddenByUser(path);
        if (!isWorkingSetMode) {
            if (!areAncestorsOpen(place) && !isShownByPin(path)) {
                return std::nullopt;
            }
            location.leaf =
                !hasChildren(place) ||
                (!hasPinnedBelow(path) && (opened.count(path) == 0 || !areAncestorsOpen(place)));
        } else if (workingSet) {
            if (!isKept(place)) {
                return std::nullopt;
            }
            location.hidden = location.hidden || !isIncluded(place);
            location.leaf = !hasChild(place, [this](std::size_t child) { return isKept(child); });
        } else if (place == 0 && isRootToldInMode) {
            // The root counts as told of by the set also when there is none, and as not included.
            location.hidden = true;
            location.leaf = !hasChildren(place);
        } else {
            const auto known = before.find(path);
            if (known == before.end()) {
                return std::nullopt;
            }
            location.hidden = location.hidden || known->second.hidden;
            location.leaf = known->second.leaf;
        }
        return location;
    }

    void settleAndCompare() {
        before = session.known.locations();
        session.settle();
        say("settle");
        followPins(isWorkingSetMode && !wasWorkingSetMode);
        wasWorkingSetMode = isWorkingSetMode;
        havePinsChanged = false;
        View expected;
        for (std::size_t place = 0; place < places.size(); ++place) {
            const std::string& path = places[place].path;
            if (shownByPinAlone.count(path) != 0) {
                expected[path] = before.at(path);
                expected[path].hidden = expected[path].hidden || isHiddenByUser(path);
                ++numberKeptOfPins;
            } else if (viewed->exists[place]) {
                if (const auto location = expect(place)) {
                    expected[path] = *location;
                }
            }
        }
        if (isWorkingSetMode) {
            ++(workingSet ? numberOfResolvedViews : numberOfKeptViews);
        }
        const View& actual = session.known.locations();
        ASSERT_EQ(textOf(actual), textOf(expected)) << recent();
        ASSERT_TRUE(actual == expected) << "attributes differ" << recent();
    }

    static std::string textOf(const View& view) {
        std::string text;
        for (const auto& [path, location] : view) {
            text +=
                path + (location.hidden ? " hidden" : "") + (location.leaf ? " leaf" : "") + "\n";
        }
        return text;
    }

    void say(const std::string& what) { said.push_back(what); }
    [[nodiscard]] std::string recent() const {
        std::string text = "\nafter";
        for (std::size_t i = said.size() > 60 ? said.size() - 60 : 0; i < said.size(); ++i) {
            text += "\n  " + said[i];
        }
        return text;
    }

    std::mt19937 random;
    std::vector<Place> places;
    Scene scenes[2];
    Scene* viewed = &scenes[0];
    ViewerSession session;
    bool isWorkingSetMode = false;
    std::optional<WorkingSet> workingSet;
    bool isRootToldInMode = false;
    bool wasWorkingSetMode = false; ///< when last compared
    bool havePinsChanged = false;   ///< since
    std::set<std::string> toldByPrimary;
    std::set<std::string> shownByPinAlone;
    std::set<std::string> opened;
    std::set<std::string> pinned;
    std::set<std::string> hidden;
    View before; ///< what the plug-in knew before the changes
    std::vector<std::string> said;
};

TEST(WorkingSetsOracle, whatPluginsKnowEqualsThePlainEvaluation) {
    const OracleSeeds seeds(20261121, 12);
    int resolved = 0;
    int kept = 0;
    int keptOfPins = 0;
    for (unsigned seed = seeds.first; seed - seeds.first < seeds.count; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        History history(seed);
        for (int step = 0; step < 250 && !testing::Test::HasFailure(); ++step) {
            history.step();
        }
        if (testing::Test::HasFailure()) {
            GTEST_FAIL() << "seed " << seed;
        }
        resolved += history.numberOfResolvedViews;
        kept += history.numberOfKeptViews;
        keptOfPins += history.numberKeptOfPins;
    }
    // A history in which nothing happens would prove nothing.
    EXPECT_GT(resolved, static_cast<int>(seeds.count) * 20);
    EXPECT_GT(kept, static_cast<int>(seeds.count));
    EXPECT_GT(keptOfPins, static_cast<int>(seeds.count));
}

} // namespace
} // namespace ViewerAPI::test
