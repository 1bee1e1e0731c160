#include "proxyruntime.h"

#include "support/delegatetest.h"

#include "VlAttribute/FloatAttribute.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;
using VlAttribute::Attribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// A runtime of proxies beside that of its delegate.
class ProxyRuntimeTest : public DelegateTest {
protected:
    ProxyRuntimeTest() {
        proxies.initialise();
        proxies.setOwner(delegate.get());
        scripted().takeCalls();
    }

    ScriptedRuntime& scripted() { return runtime->independent(); }

    /// A job whose `viewer` is this, at frame 3.
    static ProxyJob jobOf(std::uint64_t key, const Attribute& viewer) {
        ProxyJob job;
        job.key = key;
        job.proxyAttrs = GroupAttribute{{"viewer", viewer}};
        job.systemArgs = GroupBuilder().set("timeSlice.currentTime", FloatAttribute(3.0F)).build();
        return job;
    }
    static GroupAttribute op(const char* opType, const GroupAttribute& args = {}) {
        return {{"opType", StringAttribute(opType)}, {"opArgs", args}};
    }
    /// The simplest job that cooks.
    static ProxyJob cookable(std::uint64_t key) {
        return jobOf(key, GroupAttribute{{"a", op("A")}});
    }

    static GroupAttribute rootWith(const GroupAttribute& staticScene) {
        return {{"staticScene", staticScene}};
    }

    ProxyRuntime proxies;
};

// ---- Life

TEST_F(ProxyRuntimeTest, hasARuntimeOfItsOwn) {
    {
        ProxyRuntime other;
        other.initialise();
        EXPECT_THAT(scripted().takeCalls(),
                    ElementsAre("createRuntime independent", "getRootLocationPath"));
    }
    EXPECT_THAT(scripted().takeCalls(), ElementsAre("releaseRuntime"));
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
}

TEST_F(ProxyRuntimeTest, failsWithoutTheSceneLibrarysServices) {
    ProxyRuntime other;
    const auto initialise = [&] { other.initialise(); };
    for (const auto refusal :
         {ScriptedRuntime::Refusal::NoRuntime, ScriptedRuntime::Refusal::NoSuite}) {
        scripted().refuse(refusal);
        EXPECT_THAT(initialise, ThrowsMessage<std::runtime_error>(
                                    "Scenelib::createRuntime(): the host suite "
                                    "\"VlScenelibServicesHost\" gave no runtime"));
    }
    runtime->withdrawServices();
    EXPECT_THAT(initialise,
                ThrowsMessage<std::runtime_error>("Scenelib::createRuntime(): the host suite "
                                                  "\"VlScenelibServicesHost\" is not registered"));
}

// ---- Ops

TEST_F(ProxyRuntimeTest, cooksAnOpByWayOfACollapseAndAClientAtTheRoot) {
    EXPECT_EQ(proxies.submit(jobOf(1, GroupAttribute{{"load", op("Load")}})),
              SubmitStatus::Cooking);
    EXPECT_THAT(scripted().takeCommands(),
                ElementsAre("createTransaction", "createOp op1",
                            "setOpArgs op1 Load {system={timeSlice={currentTime=3}}}",
                            "createOp op2", "setOpArgs op2 HierarchyCollapse {}",
                            "setOpInputs op2 [op1]", "commit 1", "createTransaction",
                            "createClient client1", "setClientOp client1 op2",
                            "setLocationsActive client1 [/root]", "commit 2"));
    EXPECT_EQ(proxies.getNumberOfCooks(), 1U);
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(ProxyRuntimeTest, twoOpsMakeAChainOfThree) {
    proxies.submit(jobOf(1, GroupAttribute{{"z", op("First")}, {"a", op("Second")}}));
    Lines commands = scripted().takeCommands();
    std::erase_if(commands,
                  [](const std::string& line) { return line.rfind("setOpInputs", 0) != 0; });
    EXPECT_THAT(commands, ElementsAre("setOpInputs op2 [op1]", "setOpInputs op3 [op2]"));
}

TEST_F(ProxyRuntimeTest, anOpsArgsOverrideTheSystemsDeeply) {
    const GroupAttribute args = GroupBuilder()
                                    .set("fileName", StringAttribute("x"))
                                    .set("system.timeSlice.currentTime", FloatAttribute(9.0F))
                                    .build();
    ProxyJob job = jobOf(1, GroupAttribute{{"load", op("Load", args)}});
    job.systemArgs = GroupBuilder()
                         .update(job.systemArgs)
                         .set("timeSlice.numSamples", IntAttribute(2))
                         .set("variables.shot", StringAttribute("s"))
                         .build();
    proxies.submit(job);
    EXPECT_THAT(scripted().takeCommands()[2],
                "setOpArgs op1 Load {system={timeSlice={currentTime=9 numSamples=2} "
                "variables={shot=\"s\"}} fileName=\"x\"}");
}

TEST_F(ProxyRuntimeTest, passesOverWhatIsNoOpAndGoesOn) {
    const GroupAttribute ops{{"text", StringAttribute("Load")},
                             {"untyped", GroupAttribute{{"opArgs", GroupAttribute::Empty()}}},
                             {"mistyped", GroupAttribute{{"opType", IntAttribute(1)}}},
                             {"load", op("Load")}};
    EXPECT_EQ(proxies.submit(jobOf(1, ops)), SubmitStatus::Cooking);
    EXPECT_THAT(scripted().takeCommands(),
                ElementsAre("createTransaction", "createOp op1",
                            "setOpArgs op1 Load {system={timeSlice={currentTime=3}}}",
                            "createOp op2", "setOpArgs op2 HierarchyCollapse {}",
                            "setOpInputs op2 [op1]", "commit 1", "createTransaction",
                            "createClient client1", "setClientOp client1 op2",
                            "setLocationsActive client1 [/root]", "commit 2"));
}

TEST_F(ProxyRuntimeTest, aJobWithoutAnyOpIsNone) {
    for (const Attribute& viewer :
         {Attribute(GroupAttribute::Empty()), Attribute(IntAttribute(1)),
          Attribute(GroupAttribute{{"untyped", GroupAttribute::Empty()}}), Attribute()}) {
        EXPECT_EQ(proxies.submit(jobOf(1, viewer)), SubmitStatus::NoOp) << textOf(viewer);
        EXPECT_THAT(scripted().takeCommands(),
                    ElementsAre("createTransaction", testing::StartsWith("commit ")));
    }
    EXPECT_EQ(proxies.getNumberOfCooks(), 0U);
}

// ---- Files

TEST_F(ProxyRuntimeTest, asksTheUserInterfaceHowAFileIsLoaded) {
    channels.onFire = [](const std::string&) {
        return Attribute(op("Load", {{"name", StringAttribute("x")}}));
    };
    EXPECT_EQ(proxies.submit(jobOf(1, StringAttribute("a.obj"))), SubmitStatus::Cooking);
    EXPECT_THAT(log.take(),
                ElementsAre("channel getViewerProxyLoaderOp {filePath=\"a.obj\" frameTime=3}"));
    EXPECT_EQ(scripted().takeCommands()[2],
              "setOpArgs op1 Load {system={timeSlice={currentTime=3}} name=\"x\"}");
}

TEST_F(ProxyRuntimeTest, aFileThatNobodyCanLoadIsNoJob) {
    EXPECT_EQ(proxies.submit(jobOf(1, StringAttribute("a.obj"))), SubmitStatus::NoOp);
    for (const Attribute& answer : {Attribute(StringAttribute("Load")), Attribute(IntAttribute(1)),
                                    Attribute(GroupAttribute::Empty())}) {
        channels.onFire = [&answer](const std::string&) { return answer; };
        EXPECT_EQ(proxies.submit(jobOf(1, StringAttribute("a.obj"))), SubmitStatus::NoOp)
            << textOf(answer);
    }
    EXPECT_EQ(proxies.getNumberOfCooks(), 0U);
}

TEST_F(ProxyRuntimeTest, passesTheListenersErrorOnAndCooksNothing) {
    channels.onFire = [](const std::string&) -> Attribute { throw std::runtime_error("listener"); };
    EXPECT_THROW(proxies.submit(jobOf(1, StringAttribute("a.obj"))), std::runtime_error);
    EXPECT_EQ(proxies.getNumberOfCooks(), 0U);
    EXPECT_THAT(scripted().takeCommands(), IsEmpty());
}

// ---- Limits

TEST_F(ProxyRuntimeTest, aSecondSubmissionOfAKeyInFlightStartsNothing) {
    proxies.submit(cookable(1));
    scripted().takeCommands();
    EXPECT_EQ(proxies.submit(cookable(1)), SubmitStatus::Cooking);
    EXPECT_THAT(scripted().takeCommands(), IsEmpty());
    EXPECT_EQ(proxies.getNumberOfCooks(), 1U);
}

TEST_F(ProxyRuntimeTest, takesNoMoreThan1024Cooks) {
    for (std::uint64_t key = 1; key <= 1024; ++key) {
        ASSERT_EQ(proxies.submit(cookable(key)), SubmitStatus::Cooking);
    }
    scripted().takeCommands();
    EXPECT_EQ(proxies.submit(cookable(1025)), SubmitStatus::Full);
    EXPECT_EQ(proxies.submit(cookable(1)), SubmitStatus::Full);
    EXPECT_THAT(scripted().takeCommands(), IsEmpty());
    EXPECT_EQ(proxies.getNumberOfCooks(), 1024U);
    proxies.cancel(7);
    EXPECT_EQ(proxies.submit(cookable(1025)), SubmitStatus::Cooking);
}

// ---- Results

TEST_F(ProxyRuntimeTest, aCookIsFinishedWithTheFirstEventOfItsClient) {
    proxies.submit(cookable(5));
    EXPECT_THAT(proxies.pollFinished(), IsEmpty());
    const GroupAttribute scene{{"a", named("first")}};
    scripted().client(1).report("/root", rootWith(scene));
    scripted().client(1).report("/root", rootWith({{"a", named("second")}}));
    const auto finished = proxies.pollFinished();
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0].key, 5U);
    EXPECT_EQ(finished[0].proxyAttrs, cookable(5).proxyAttrs);
    EXPECT_EQ(finished[0].systemArgs, cookable(5).systemArgs);
    EXPECT_EQ(finished[0].staticScene, scene);
    EXPECT_TRUE(scripted().client(1).isReleased);
    EXPECT_EQ(proxies.getNumberOfCooks(), 0U);
    EXPECT_THAT(proxies.pollFinished(), IsEmpty());
}

TEST_F(ProxyRuntimeTest, finishedCooksComeInTheOrderOfTheirKeysAndOthersCookOn) {
    for (const std::uint64_t key : {9U, 4U, 6U}) {
        proxies.submit(cookable(key));
    }
    scripted().client(1).report("/root", rootWith({{"a", named("nine")}}));
    scripted().client(2).report("/root", rootWith({{"a", named("four")}}));
    const auto finished = proxies.pollFinished();
    ASSERT_EQ(finished.size(), 2U);
    EXPECT_EQ(finished[0].key, 4U);
    EXPECT_EQ(textOf(finished[0].staticScene), "{a={name=\"four\"}}");
    EXPECT_EQ(finished[1].key, 9U);
    EXPECT_FALSE(scripted().client(3).isReleased);
    EXPECT_EQ(proxies.getNumberOfCooks(), 1U);
}

TEST_F(ProxyRuntimeTest, aRootWithoutASceneOrNoRootAtAllFinishesWithNone) {
    proxies.submit(cookable(1));
    proxies.submit(cookable(2));
    proxies.submit(cookable(3));
    scripted().client(1).report("/root", named("root"));
    scripted().client(2).reportGone("/root");
    scripted().client(3).report("/root", {{"staticScene", IntAttribute(1)}});
    const auto finished = proxies.pollFinished();
    ASSERT_EQ(finished.size(), 3U);
    for (const auto& cook : finished) {
        EXPECT_FALSE(cook.staticScene.isValid());
    }
}

TEST_F(ProxyRuntimeTest, cancellingReleasesTheClient) {
    proxies.submit(cookable(1));
    proxies.cancel(2);
    EXPECT_FALSE(scripted().client(1).isReleased);
    proxies.cancel(1);
    EXPECT_TRUE(scripted().client(1).isReleased);
    scripted().client(1).report("/root", rootWith({{"a", named("late")}}));
    EXPECT_THAT(proxies.pollFinished(), IsEmpty());
}

TEST_F(ProxyRuntimeTest, clearDropsCooksAndThenWhatIsMemoised) {
    proxies.submit(cookable(1));
    scripted().takeCalls();
    proxies.clear();
    EXPECT_THAT(scripted().takeCalls(), ElementsAre("releaseClient client1", "flushCaches"));
    EXPECT_EQ(proxies.getNumberOfCooks(), 0U);
}

// ---- Flattening

/// One level of a scene.
GroupAttribute level(const char* name,
                     std::initializer_list<std::pair<const char*, GroupAttribute>> children = {}) {
    GroupBuilder builder;
    builder.set("a", GroupAttribute{{"name", StringAttribute(name)}});
    for (const auto& [childName, child] : children) {
        builder.set(std::string("c.") + childName, child);
    }
    return builder.build();
}

std::vector<std::string> flatten(const GroupAttribute& scene) {
    std::map<std::uint64_t, ProxyResult> results;
    ProxyRuntime::storeStaticScene(7, scene, results);
    std::vector<std::string> lines;
    for (const ProxyResultItem& item : results.at(7)) {
        lines.push_back(item.name + " " + textOf(item.attrs.getChildByName("name")));
    }
    return lines;
}

TEST(ProxyStaticScene, ofARootAloneIsOneItem) {
    EXPECT_THAT(flatten(level("root")), ElementsAre(" \"root\""));
}

TEST(ProxyStaticScene, listsParentsFirstAndSiblingsByName) {
    const GroupAttribute scene = level(
        "root", {{"z", level("z", {{"b", level("zb")}, {"a", level("za", {{"x", level("zax")}})}})},
                 {"a", level("a", {{"c", level("ac")}})},
                 {"a10", level("a10")},
                 {"a9", level("a9")}});
    EXPECT_THAT(flatten(scene),
                ElementsAre(" \"root\"", "/a \"a\"", "/a10 \"a10\"", "/a9 \"a9\"", "/z \"z\"",
                            "/a/c \"ac\"", "/z/a \"za\"", "/z/b \"zb\"", "/z/a/x \"zax\""));
}

TEST(ProxyStaticScene, aNameWithADotLeadsToAnotherChildAndLosesItsAttributes) {
    const GroupAttribute scene = level("root", {{"a", level("a")}, {"b.d", level("bd")}});
    EXPECT_THAT(flatten(scene), ElementsAre(" \"root\"", "/a \"a\"", "/b null"));
}

TEST(ProxyStaticScene, thatIsNullIsOneItemWithNullAttributes) {
    std::map<std::uint64_t, ProxyResult> results;
    ProxyRuntime::storeStaticScene(7, {}, results);
    EXPECT_THAT(results.at(7), ElementsAre(ProxyResultItem{"", {}}));
}

TEST(ProxyStaticScene, replacesWhatTheKeyHad) {
    std::map<std::uint64_t, ProxyResult> results;
    ProxyRuntime::storeStaticScene(7, level("root", {{"a", level("a")}}), results);
    const ProxyResult* const place = &results.at(7);
    ProxyRuntime::storeStaticScene(7, level("other"), results);
    EXPECT_EQ(&results.at(7), place);
    EXPECT_EQ(place->size(), 1U);
}

} // namespace
} // namespace ViewerAPI::test
