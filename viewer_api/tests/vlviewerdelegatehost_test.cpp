#include "vlviewerdelegatehost.h"

#include "support/delegatetest.h"

#include "VlLogging/LogSink.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class VlViewerDelegateHost : public DelegateTest {
protected:
    std::string failureOfConstruction(const std::string& pluginName) {
        try {
            const VlViewerDelegateHostStruct other(pluginName, nullptr);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no failure";
    }
};

// ---- Construction and destruction

TEST_F(VlViewerDelegateHost, makesClientsAndOpsInOneTransactionAfterThePlugin) {
    delegate.reset();
    log.take();
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "create") {
            EXPECT_THAT(runtime->takeCalls(), IsEmpty());
        }
    };
    runtime->takeCalls();
    delegate = std::make_unique<VlViewerDelegateHostStruct>("D", &pythonObject);
    EXPECT_THAT(log.take(), ElementsAre("D create"));
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("createRuntime runtime-async", "createTransaction",
                            "createClient client5", "createClient client6", "createClient client7",
                            "createClient client8", "setEventCachingEnabled client8 1",
                            "createOp op4", "setOpArgs op4 no-op null", "createOp op5",
                            "createOp op6", "setOpInputs op6 [op5]",
                            "setOpArgs op6 WorkingSet.Prune {groupName=\"__viewerWorkingSets\"}",
                            "setOpArgs op5 WorkingSet.MultipleOnePassResolve {}", "commit 2",
                            "setLocationsActive client5 [/root]", "setAllOpen client7 1"));
}

TEST_F(VlViewerDelegateHost, startsFromItsDefaults) {
    EXPECT_EQ(delegate->eventLimit, -1);
    EXPECT_EQ(delegate->cleanupIntervalMs, 1000);
    EXPECT_EQ(delegate->lastCleanup, clock.now);
    EXPECT_EQ(delegate->manipulationFreeze.freezeState, FreezeState::Idle);
    EXPECT_EQ(delegate->manipulationFreeze.freezePeriodMs, 0);
    EXPECT_EQ(delegate->scene.viewOp, delegate->scene.noOp);
    EXPECT_EQ(delegate->scene.workingSetOps.size(), 2U);
    EXPECT_FALSE(delegate->getWorkingSetVisibilityEnabled());
    EXPECT_EQ(textOf(delegate->identityXform), "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)");
    EXPECT_EQ(delegate->identityXform.getTupleSize(), 4);
}

TEST_F(VlViewerDelegateHost, hasABridgeOfItsOwnWhichEndsWithIt) {
    EXPECT_EQ(bridge.numberOfBridges, 1);
    delegate->cleanup();
    EXPECT_EQ(bridge.numberOfBridges, 1);
    delegate.reset();
    EXPECT_EQ(bridge.numberOfBridges, 0);
}

TEST_F(VlViewerDelegateHost, endsComponentsThenThePluginWithoutAnyCleanup) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    log.take();
    delegate.reset();
    EXPECT_THAT(log.take(), ElementsAre("A destroy", "B destroy", "D destroy"));
}

TEST_F(VlViewerDelegateHost, endsClientsAndRuntimeAfterThePlugin) {
    runtime->takeCalls();
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            EXPECT_THAT(runtime->takeCalls(), IsEmpty());
        }
    };
    delegate.reset();
    const Lines calls = runtime->takeCalls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.back(), "releaseRuntime");
}

TEST_F(VlViewerDelegateHost, canStillBeAskedFromThePluginsDestroy) {
    delegate->addComponent("A", "a");
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            EXPECT_EQ(delegate->getNumberOfComponents(), 0U);
            EXPECT_FALSE(delegate->getAttributes("/root", kVlViewerDelegatePrimary).isValid());
        }
    };
    // Not through reset(), which would take the pointer away first.
    delete delegate.get();
    static_cast<void>(delegate.release());
}

TEST_F(VlViewerDelegateHost, countsTheInstancesThatLive) {
    const std::int32_t count = VlViewerDelegateHostStruct::getInstanceCount();
    {
        const VlViewerDelegateHostStruct other("D", nullptr);
        EXPECT_EQ(VlViewerDelegateHostStruct::getInstanceCount(), count + 1);
    }
    EXPECT_EQ(VlViewerDelegateHostStruct::getInstanceCount(), count);
}

TEST_F(VlViewerDelegateHost, lowersTheCountAfterThePluginsDestroy) {
    const std::int32_t count = VlViewerDelegateHostStruct::getInstanceCount();
    std::int32_t seen = 0;
    plugin.onCall = [&](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            seen = VlViewerDelegateHostStruct::getInstanceCount();
        }
    };
    delegate.reset();
    EXPECT_EQ(seen, count);
    EXPECT_EQ(VlViewerDelegateHostStruct::getInstanceCount(), count - 1);
}

TEST_F(VlViewerDelegateHost, keepsTheCountRaisedForAPluginThatDoesNotLoad) {
    const std::int32_t count = VlViewerDelegateHostStruct::getInstanceCount();
    EXPECT_EQ(failureOfConstruction("nobody"),
              "Couldn't load ViewerDelegate plugin type 'nobody'.");
    EXPECT_EQ(VlViewerDelegateHostStruct::getInstanceCount(), count + 1);
}

TEST_F(VlViewerDelegateHost, failsWhenItsPluginCreatesNothing) {
    plugin.refusesCreate = true;
    EXPECT_EQ(failureOfConstruction("D"),
              "Failed to create Viewer Delegate plugin instance for 'D'.");
    EXPECT_THAT(log.take(), ElementsAre("D create"));
}

TEST_F(VlViewerDelegateHost, failsWithoutTheRuntimeHostSuiteAndDestroysThePluginInstance) {
    runtime->withdraw();
    EXPECT_EQ(failureOfConstruction("D"), "Error getting Scenelib Runtime Host suite.");
    EXPECT_THAT(log.take(), ElementsAre("D create", "D destroy"));
}

TEST_F(VlViewerDelegateHost, endsWhatItsPluginAddedWhenTheConstructionFails) {
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "create") {
            static_cast<VlViewerDelegateHostStruct*>(plugin.host)->addComponent("A", "a");
        }
    };
    componentA.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            const auto* const host = static_cast<const VlViewerDelegateHostStruct*>(plugin.host);
            EXPECT_EQ(host->getNumberOfComponents(), 0U);
            EXPECT_EQ(host->getHiddenLocations().getNumberOfValues(), 0);
        }
    };
    runtime->withdraw();
    EXPECT_EQ(failureOfConstruction("D"), "Error getting Scenelib Runtime Host suite.");
    EXPECT_THAT(log.take(),
                ElementsAre("D create", "A create", "A setup", "A destroy", "D destroy"));
    plugin.refusesCreate = true;
    EXPECT_EQ(failureOfConstruction("D"),
              "Failed to create Viewer Delegate plugin instance for 'D'.");
    EXPECT_THAT(log.take(), ElementsAre("D create", "A create", "A setup", "A destroy"));
    EXPECT_EQ(componentA.numberOfInstances, 0);
}

TEST_F(VlViewerDelegateHost, failsWithoutARuntime) {
    runtime->refuse(ScriptedRuntime::Refusal::NoRuntime);
    EXPECT_EQ(failureOfConstruction("D"), "Error instantiating a Runtime object.");
}

TEST_F(VlViewerDelegateHost, failsWithoutARuntimeSuite) {
    runtime->refuse(ScriptedRuntime::Refusal::NoSuite);
    EXPECT_EQ(failureOfConstruction("D"), "Error getting runtimeSuite for 'runtime-async'.");
}

// ---- The plug-in's life

TEST_F(VlViewerDelegateHost, forwardsSetupFreezeAndThawAndNothingElse) {
    delegate->setup();
    delegate->freeze();
    delegate->thaw();
    EXPECT_THAT(log.take(), ElementsAre("D setup", "D freeze", "D thaw"));
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
}

TEST_F(VlViewerDelegateHost, keepsPumpingBetweenFreezeAndThaw) {
    delegate->freeze();
    client(kPrimaryClient).report("/root");
    delegate->processLocationEvents();
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
}

TEST_F(VlViewerDelegateHost, cleansUpComponentsFromLastToFirstAndThenThePlugin) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    log.take();
    delegate->cleanup();
    EXPECT_THAT(log.take(),
                ElementsAre("B cleanup", "B destroy", "A cleanup", "A destroy", "D cleanup"));
    EXPECT_EQ(delegate->getNumberOfComponents(), 0U);
}

TEST_F(VlViewerDelegateHost, cleanupEndsThoughAComponentsCleanupAddsAnother) {
    delegate->addComponent("A", "a");
    componentA.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "cleanup") {
            delegate->addComponent("B", "b");
        }
    };
    log.take();
    delegate->cleanup();
    EXPECT_EQ(delegate->getNumberOfComponents(), 1U);
}

TEST_F(VlViewerDelegateHost, givesThePluginAReferenceOfItsOwnToAnOption) {
    const Attribute value = StringAttribute("text");
    delegate->setOption(17, value);
    EXPECT_EQ(plugin.options[17].getHandle(), value.getHandle());
    EXPECT_EQ(delegate->getOption(17), value);
    EXPECT_FALSE(delegate->getOption(18).isValid());
    EXPECT_THAT(log.take(),
                ElementsAre("D setOption 17 \"text\"", "D getOption 17", "D getOption 18"));
}

TEST_F(VlViewerDelegateHost, passesANullOptionOn) {
    delegate->setOption(17, {});
    EXPECT_THAT(log.take(), ElementsAre("D setOption 17 null"));
}

TEST_F(VlViewerDelegateHost, flushCachesOfAnEmptyTreeTellsNobody) {
    delegate->flushCaches();
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
}

TEST_F(VlViewerDelegateHost, flushCachesTakesTheSceneDownAtOnce) {
    populate({{"/root/a", named("a")}});
    delegate->flushCaches();
    EXPECT_THAT(plugin.takeEventLines(), ElementsAre("/root removed handled=0"));
}

// ---- Callbacks into the user interface

TEST_F(VlViewerDelegateHost, firesChannelsAtItsPythonObject) {
    channels.onFire = [](const std::string&) { return Attribute(IntAttribute(2)); };
    EXPECT_EQ(delegate->callPythonCallback("x", IntAttribute(1)), Attribute(IntAttribute(2)));
    EXPECT_EQ(channels.hostedPythonObject, &pythonObject);
    EXPECT_THAT(log.take(), ElementsAre("channel x 1"));
}

TEST_F(VlViewerDelegateHost, letsExceptionsOfItsPluginPass) {
    plugin.onCall = [](std::string_view, std::string_view) {
        throw std::runtime_error("from the plug-in");
    };
    EXPECT_THROW(delegate->setup(), std::runtime_error);
    EXPECT_THROW(delegate->freeze(), std::runtime_error);
    EXPECT_THROW(delegate->cleanup(), std::runtime_error);
    EXPECT_THROW(static_cast<void>(delegate->isProcessing()), std::runtime_error);
    plugin.onCall = nullptr;
}

TEST_F(VlViewerDelegateHost, survivesAPluginThatThrowsFromDestroy) {
    plugin.onCall = [](std::string_view entry, std::string_view) {
        if (entry == "destroy") {
            throw std::runtime_error("from destroy");
        }
    };
    const std::int32_t count = VlViewerDelegateHostStruct::getInstanceCount();
    setLogSink([](const LogRecord&) {});
    delegate.reset();
    setLogSink({});
    EXPECT_EQ(VlViewerDelegateHostStruct::getInstanceCount(), count - 1);
    plugin.onCall = nullptr;
}

} // namespace
} // namespace ViewerAPI::test
