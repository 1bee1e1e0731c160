#include "enginescene.h"
#include "plainscene.h"
#include "toldlocations.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr const char* kResolve = "WorkingSet.MultipleOnePassResolve";
constexpr const char* kPrune = "WorkingSet.Prune";
/// The group in which the tests have their sets written.
constexpr const char* kOutput = "sets";

struct PlainSet {
    std::vector<std::string> include;
    std::vector<std::string> exclude;
    int childrenInherit = 1;
};

GroupAttribute makeSet(const PlainSet& set) {
    return {{"include", StringAttribute(set.include)},
            {"exclude", StringAttribute(set.exclude)},
            {"childrenInherit", IntAttribute(set.childrenInherit)},
            {"polish", IntAttribute(1)}};
}

GroupAttribute resolveArgs(const PlainSet& set) {
    return {{"workingSetsInfo", GroupAttribute{{"visible", makeSet(set)}}},
            {"outputGroupName", StringAttribute(kOutput)}};
}

/// A resolve op, the prune op behind it, and a client that opens all of what is left.
class WorkingSetOps : public testing::Test {
protected:
    void makeChain(const EngineScene::OpPtr& input, const GroupAttribute& args) {
        resolveOp = scene.createOp(kResolve, args, {input});
        pruneOp = scene.createOp(kPrune, {{"groupName", StringAttribute(kOutput)}}, {resolveOp});
    }
    EngineScene::ClientPtr openAll(const EngineScene::OpPtr& op) {
        EngineScene::ClientPtr created = scene.createClient(op);
        created->setAllOpen(true);
        created->setLocationsActive(paths({"/root"}));
        return created;
    }
    std::vector<std::string> show(const EngineScene::OpPtr& input, const PlainSet& set) {
        makeChain(input, resolveArgs(set));
        client = openAll(pruneOp);
        return scene.fetch(client);
    }
    /// What the client is told after a change of the set.
    std::vector<std::string> change(const PlainSet& set) {
        scene.countCooks();
        scene.setArgs(resolveOp, kResolve, resolveArgs(set));
        return scene.fetch(client);
    }
    /// Of the location as last fetched: "i" where it is included, "h" where it has included
    /// children, "c" where its children inherit inclusion.
    [[nodiscard]] std::string flagsAt(const std::string& path,
                                      const std::string& set = "visible") const {
        const GroupAttribute polished(
            scene.getFetched(path).getChildByName(kOutput + ("." + set) + ".polished"));
        if (!polished) {
            return "none";
        }
        std::string flags;
        for (const auto& [name, flag] :
             {std::pair{"included", 'i'}, std::pair{"hasIncludedChildren", 'h'},
              std::pair{"childrenInheritInclusion", 'c'}}) {
            const int value = IntAttribute(polished.getChildByName(name)).getValue(-1);
            EXPECT_TRUE(value == 0 || value == 1) << path << " " << name;
            flags += value == 1 ? std::string(1, flag) : "";
        }
        return flags;
    }
    EngineScene::OpPtr createSmallScene() {
        return scene.createOp(
            "Scene.Literal",
            literalArgs(
                {{"/root/a/x/p", 1}, {"/root/a/x/q", 1}, {"/root/a/y", 1}, {"/root/b/z", 1}}));
    }

    EngineScene scene;
    EngineScene::OpPtr resolveOp;
    EngineScene::OpPtr pruneOp;
    EngineScene::ClientPtr client;
};

TEST_F(WorkingSetOps, showWhatTheSetIncludesAndTheWayThere) {
    struct Row {
        const char* name;
        PlainSet set;
        /// Each location left, with its flags.
        std::vector<std::string> left;
    };
    const Row rows[] = {
        {"nothing", {{}, {}}, {"/root"}},
        {"an inner location with all below",
         {{"/root/a/x"}, {}},
         {"/root h", "/root/a h", "/root/a/x ic", "/root/a/x/p ic", "/root/a/x/q ic"}},
        {"a leaf", {{"/root/b/z"}, {}}, {"/root h", "/root/b h", "/root/b/z ic"}},
        {"the root",
         {{"/root"}, {}},
         {"/root ic", "/root/a ic", "/root/b ic", "/root/a/x ic", "/root/a/y ic", "/root/b/z ic",
          "/root/a/x/p ic", "/root/a/x/q ic"}},
        {"all but an excluded subtree",
         {{"/root/a"}, {"/root/a/x"}},
         {"/root h", "/root/a ic", "/root/a/y ic"}},
        {"an include below an exclude",
         {{"/root/a", "/root/a/x/q"}, {"/root/a/x"}},
         {"/root h", "/root/a ihc", "/root/a/x h", "/root/a/y ic", "/root/a/x/q ic"}},
        {"an exclude below an include below an exclude",
         {{"/root", "/root/a/x"}, {"/root/a", "/root/a/x/p"}},
         {"/root ihc", "/root/a h", "/root/b ic", "/root/a/x ic", "/root/b/z ic",
          "/root/a/x/q ic"}},
        {"an include below an include",
         {{"/root/a", "/root/a/x"}, {}},
         {"/root h", "/root/a ihc", "/root/a/x ic", "/root/a/y ic", "/root/a/x/p ic",
          "/root/a/x/q ic"}},
        {"a path in both lists is excluded",
         {{"/root/a", "/root/b"}, {"/root/a"}},
         {"/root h", "/root/b ic", "/root/b/z ic"}},
        {"an exclude alone", {{}, {"/root/a"}}, {"/root"}},
        {"the root excluded", {{"/root/b"}, {"/root"}}, {"/root h", "/root/b ic", "/root/b/z ic"}},
        {"the very location where children don't inherit",
         {{"/root/a"}, {}, 0},
         {"/root h", "/root/a i"}},
        {"very locations where children don't inherit",
         {{"/root/a", "/root/a/x/p"}, {}, 0},
         {"/root h", "/root/a ih", "/root/a/x h", "/root/a/x/p i"}},
        {"paths that don't exist",
         {{"/root/a/y/none", "/root/none", "/elsewhere", "no path", "/", "", "/root/", "/root//a"},
          {"/root/b/none", "//"}},
         {"/root h", "/root/a h", "/root/a/y"}},
        {"a child that doesn't exist makes no included child",
         {{"/root/b/z", "/root/b/z/none"}, {}, 0},
         {"/root h", "/root/b h", "/root/b/z i"}},
    };
    const auto input = createSmallScene();
    for (const Row& row : rows) {
        std::vector<std::string> left;
        for (const std::string& told : show(input, row.set)) {
            ASSERT_EQ(told.front(), '+') << row.name;
            const std::string path = told.substr(1);
            const std::string flags = flagsAt(path);
            left.push_back(path + (flags.empty() ? "" : " " + flags));
        }
        EXPECT_THAT(left, testing::UnorderedElementsAreArray(row.left)) << row.name;
    }
}

TEST_F(WorkingSetOps, keepAttributesAndTheOrderOfChildren) {
    const auto input = scene.createOp(
        "Scene.Literal",
        literalArgs({{"/root/d", 1}, {"/root/b", 2}, {"/root/c", 3}, {"/root/a", 4}}));
    EXPECT_THAT(show(input, {{"/root/a", "/root/b", "/root/d"}, {}}),
                ElementsAre("+/root", "+/root/d", "+/root/b", "+/root/a"));
    EXPECT_EQ(scene.getFetched("/root/b").getChildByName("value"), IntAttribute(2));
    EXPECT_THAT(change({{"/root"}, {"/root/b"}}), testing::IsSupersetOf({"+/root/c", "-/root/b"}));
    EXPECT_THAT(show(input, {{"/root"}, {"/root/b"}}),
                ElementsAre("+/root", "+/root/d", "+/root/c", "+/root/a"));
}

TEST_F(WorkingSetOps, passTheirInputWithoutSetsOrNames) {
    const GroupAttribute sets{{"visible", makeSet({{"/root/b"}, {}})}};
    const StringAttribute output(kOutput);
    const auto input = createSmallScene();
    for (const GroupAttribute& args :
         {GroupAttribute(), GroupAttribute{{"workingSetsInfo", sets}},
          GroupAttribute{{"workingSetsInfo", GroupAttribute::Empty()}, {"outputGroupName", output}},
          GroupAttribute{{"workingSetsInfo", GroupAttribute{{"visible", IntAttribute(1)}}},
                         {"outputGroupName", output}}}) {
        makeChain(input, args);
        client = openAll(pruneOp);
        EXPECT_EQ(scene.fetch(client).size(), 8U);
        EXPECT_EQ(flagsAt("/root"), "none");
    }
    makeChain(input, resolveArgs({{"/root/b"}, {}}));
    scene.setArgs(pruneOp, kPrune, {});
    client = openAll(pruneOp);
    EXPECT_EQ(scene.fetch(client).size(), 8U);
    EXPECT_EQ(flagsAt("/root/b"), "ic");
}

TEST_F(WorkingSetOps, withoutAnInputShowNothing) {
    makeChain(nullptr, resolveArgs({{"/root"}, {}}));
    client = openAll(pruneOp);
    EXPECT_THAT(scene.fetch(client), ElementsAre("-/root"));
}

TEST_F(WorkingSetOps, resolveLeavesWhatTheSetDoesNotKeepAsItIs) {
    makeChain(createSmallScene(), resolveArgs({{"/root/a"}, {"/root/a/x"}}));
    client = openAll(resolveOp);
    EXPECT_EQ(scene.fetch(client).size(), 8U);
    for (const char* path : {"/root/b", "/root/b/z", "/root/a/x", "/root/a/x/p"}) {
        EXPECT_EQ(flagsAt(path), "none") << path;
    }
    EXPECT_EQ(flagsAt("/root/a/y"), "ic");
}

TEST_F(WorkingSetOps, aSetThatIsNotPolishedPrunesAllTheSame) {
    GroupBuilder args;
    args.update(resolveArgs({{"/root/a"}, {"/root/a/x"}}));
    args.del("workingSetsInfo.visible.polish");
    makeChain(createSmallScene(), args.build());
    client = openAll(pruneOp);
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/a/y"));
    EXPECT_EQ(flagsAt("/root/a"), "none");
}

TEST_F(WorkingSetOps, severalSetsAreToldApartAndKeepWhatAnyOfThemKeeps) {
    makeChain(
        createSmallScene(),
        {{"outputGroupName", StringAttribute(kOutput)},
         {"workingSetsInfo", GroupAttribute{{"one", makeSet({{"/root/a"}, {"/root/a/x"}})},
                                            {"two", makeSet({{"/root/a/x/q", "/root/b"}, {}, 0})},
                                            {"none", makeSet({{}, {}})}}}});
    client = openAll(pruneOp);
    EXPECT_THAT(scene.fetch(client), ElementsAre("+/root", "+/root/a", "+/root/b", "+/root/a/x",
                                                 "+/root/a/y", "+/root/a/x/q"));
    EXPECT_EQ(flagsAt("/root", "one"), "h");
    EXPECT_EQ(flagsAt("/root", "none"), "");
    EXPECT_EQ(flagsAt("/root/a", "one"), "ic");
    EXPECT_EQ(flagsAt("/root/a", "two"), "h");
    EXPECT_EQ(flagsAt("/root/a", "none"), "none");
    EXPECT_EQ(flagsAt("/root/a/x", "one"), "none");
    EXPECT_EQ(flagsAt("/root/a/x", "two"), "h");
    EXPECT_EQ(flagsAt("/root/b", "two"), "i");
}

TEST_F(WorkingSetOps, ofSeveralSetsWithExclusionsEachKeepsWhatItDoesNotExclude) {
    makeChain(createSmallScene(),
              {{"outputGroupName", StringAttribute(kOutput)},
               {"workingSetsInfo",
                GroupAttribute{{"one", makeSet({{"/root"}, {"/root/a/x", "/root/b"}})},
                               {"two", makeSet({{"/root"}, {"/root/a/x", "/root/a/y"}})}}}});
    client = openAll(pruneOp);
    EXPECT_THAT(scene.fetch(client),
                ElementsAre("+/root", "+/root/a", "+/root/b", "+/root/a/y", "+/root/b/z"));
}

// ---- what it costs

class WorkingSetCosts : public WorkingSetOps {
protected:
    /// The input is cooked before, by a client of its own.
    EngineScene::OpPtr createCookedScene() {
        const auto input = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(100'000)}});
        inputClient = openAll(input);
        scene.fetch(inputClient);
        scene.countCooks();
        return input;
    }

    EngineScene::ClientPtr inputClient;
};

TEST_F(WorkingSetCosts, oneIncludedLeafCooksTheWayThereInBothOps) {
    EXPECT_EQ(show(createCookedScene(), {{"/root/set_7/group_3/leaf_42"}, {}}).size(), 4U);
    EXPECT_EQ(scene.countCooks(), 2U * 4U);
}

TEST_F(WorkingSetCosts, whatIsNotIncludedIsNotCookedInTheInputEither) {
    const auto input = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(100'000)}});
    scene.countCooks();
    EXPECT_EQ(show(input, {{"/root/set_7/group_3/leaf_42"}, {}}).size(), 4U);
    EXPECT_EQ(scene.countCooks(), 3U * 4U);
}

TEST_F(WorkingSetCosts, aWhollyIncludedSubtreeIsNotCookedByPrune) {
    EXPECT_EQ(show(createCookedScene(), {{"/root/set_7"}, {}}).size(), 2U + 10U + 1000U);
    EXPECT_EQ(scene.countCooks(), (2U + 10U + 1000U) + 2U);
}

TEST_F(WorkingSetCosts, anExcludedSubtreeIsNotCookedAtAll) {
    EXPECT_EQ(show(createCookedScene(), {{"/root/set_7"}, {"/root/set_7/group_3"}}).size(),
              2U + 9U + 900U);
    // In prune: the root, the set, and its groups, which are whole.
    EXPECT_EQ(scene.countCooks(), (2U + 9U + 900U) + (2U + 9U));
}

TEST_F(WorkingSetCosts, seenWithoutPruneWhatIsNotIncludedCostsOneCookAndNothingBelow) {
    makeChain(createCookedScene(), resolveArgs({{"/root/set_7/group_3/leaf_42"}, {}}));
    client = openAll(resolveOp);
    scene.fetch(client);
    EXPECT_EQ(scene.countCooks(), 1U + 100U + 10U + 100U);
}

TEST_F(WorkingSetCosts, locationsShareWhatIsWrittenOnThem) {
    show(createCookedScene(), {{"/root/set_7"}, {}});
    const auto written = [&](const std::string& path) {
        return scene.getFetched(path).getChildByName("sets.visible").getHandle();
    };
    EXPECT_EQ(written("/root/set_7/group_3"), written("/root/set_7/group_4/leaf_5"));
}

TEST_F(WorkingSetCosts, aChangedSetCooksOnlyWhatChanges) {
    const PlainSet before{{"/root/set_7/group_3/leaf_42", "/root/set_8"}, {}};
    show(createCookedScene(), before);
    PlainSet after = before;
    after.include.emplace_back("/root/set_7/group_3/leaf_43");
    EXPECT_THAT(change(after), ElementsAre("+/root/set_7/group_3", "+/root/set_7/group_3/leaf_43"));
    // The way there in resolve, where only the group turns out otherwise than before.
    EXPECT_EQ(scene.countCooks(), 4U + 2U);
    EXPECT_THAT(change(before),
                ElementsAre("+/root/set_7/group_3", "-/root/set_7/group_3/leaf_43"));
    // Resolve hands the leaf back to its input before prune has dropped it.
    EXPECT_EQ(scene.countCooks(), 4U + 1U);
    // The same set in other words.
    EXPECT_THAT(change({{"/root/set_8", "/root/set_7/group_3/leaf_42", "/root/set_8"}, {}}),
                IsEmpty());
    EXPECT_EQ(scene.countCooks(), 1U);
}

// ---- random sets on random scenes against plain evaluation

class RandomWorkingSets : public WorkingSetOps {
protected:
    std::size_t pick(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }
    std::string pickName() { return std::string(1, static_cast<char>('a' + pick(3))); }
    std::string pickPath() {
        std::string path = "/root";
        for (std::size_t depth = pick(5); depth > 0; --depth) {
            path += "/" + pickName();
        }
        return path;
    }
    GroupAttribute pickScene() {
        std::vector<LiteralRow> rows;
        for (std::size_t count = pick(30); count > 0; --count) {
            rows.push_back({pickPath(), static_cast<int>(pick(100))});
        }
        return literalArgs(rows);
    }
    PlainSet pickSet() {
        PlainSet set{{}, {}, pick(3) > 0 ? 1 : 0};
        for (std::size_t count = pick(5); count > 0; --count) {
            set.include.push_back(pickPath());
        }
        for (std::size_t count = pick(4); count > 0; --count) {
            set.exclude.push_back(pickPath());
        }
        return set;
    }
    /// Adds, removes or moves one path.
    void changeALittle(PlainSet& set) {
        std::vector<std::string>& list = pick(2) == 0 ? set.include : set.exclude;
        if (!list.empty() && pick(3) > 0) {
            list[pick(list.size())] = pickPath();
        } else if (!list.empty() && pick(2) == 0) {
            list.pop_back();
        } else {
            list.push_back(pickPath());
        }
    }
    void compare(const PlainLocation& location, const std::string& path, std::size_t& count) {
        ++count;
        const auto known = told.known.find(path);
        ASSERT_NE(known, told.known.end()) << path << " was not told";
        EXPECT_EQ(known->second.getAttrs(), location.attrs) << path;
        for (const auto& [name, child] : location.children) {
            compare(child, path + "/" + name, count);
        }
    }

    std::mt19937 random;
    ToldLocations told;
};

TEST_F(RandomWorkingSets, equalPlainEvaluationHoweverTheyCameAbout) {
    constexpr unsigned kSeed = 20260701;
    for (unsigned seed = kSeed; seed < kSeed + 5 && !HasFailure(); ++seed) {
        random.seed(seed);
        GroupAttribute literal = pickScene();
        PlainSet set = pickSet();
        const auto input = scene.createOp("Scene.Literal", literal);
        makeChain(input, resolveArgs(set));
        client = openAll(pruneOp);
        told = {};
        for (int step = 0; step < 200 && !HasFailure(); ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(step));
            // Mostly changes of the set; now and then two before the engine settles.
            for (std::size_t edits = pick(2) + 1; edits > 0; --edits) {
                if (pick(5) == 0) {
                    literal = pickScene();
                    scene.setArgs(input, "Scene.Literal", literal);
                } else if (pick(4) == 0) {
                    set = pickSet();
                } else {
                    changeALittle(set);
                }
                scene.setArgs(resolveOp, kResolve, resolveArgs(set));
            }
            scene.settle();
            std::vector<VlScenelib::LocationEvent> events;
            client->getLocationEvents(events, -1);
            told.replay(events);
            EXPECT_THAT(told.complaints, IsEmpty());
            const PlainScene resolved = evaluatePlainly(
                kResolve, resolveArgs(set), {evaluatePlainly("Scene.Literal", literal, {})});
            const PlainScene pruned =
                evaluatePlainly(kPrune, {{"groupName", StringAttribute(kOutput)}}, {resolved});
            for (const std::string& path : told.gone) {
                EXPECT_EQ(findLocation(pruned, path), nullptr) << path << " was retracted";
            }
            std::size_t count = 0;
            compare(*pruned, "/root", count);
            EXPECT_EQ(told.known.size(), count);
        }
        scene.setOp(client, nullptr);
    }
}

} // namespace
