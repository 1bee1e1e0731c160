// Manipulators and handles whose plug-ins call back into the host while they are called: end
// themselves, their viewport or each other, and fail half-way.

#include "support/manipulatortest.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

struct CallRow {
    const char* entry;
    std::function<void(VlManipulatorHostStruct&)> call;
};

struct EndRow {
    const char* name;
    std::function<void(VlViewerDelegateHostStruct&, VlViewportHostStruct&)> end;
};

class ManipulatorEndedInItsCall : public ManipulatorTest,
                                  public testing::WithParamInterface<std::tuple<CallRow, EndRow>> {
};

TEST_P(ManipulatorEndedInItsCall, isDestroyedWhenTheCallReturns) {
    const CallRow row = std::get<CallRow>(GetParam());
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    host.addManipulatorHandle("Arrow", "a");
    if (row.entry != std::string_view("setup")) {
        host.draw();
    }
    log.take();
    bool wasAlive = false;
    const auto end = [&] {
        std::get<EndRow>(GetParam()).end(*delegate, *viewport);
        wasAlive = move.numberOfInstances == 1 && arrow.numberOfInstances == 1;
        // The plug-in still has its pointers, and may use them until its call ends.
        EXPECT_EQ(host.getManipulatorHandle("a"), host.handles[0]);
        EXPECT_EQ(pathsOf(host), "\"/root/a\"");
    };
    move.onCall = [&](std::string_view entry) {
        if (entry == row.entry) {
            end();
        }
    };
    move.onMatches = [&](const GroupAttribute&) {
        if (row.entry == std::string_view("matches")) {
            end();
        }
        return 1;
    };
    move.onGetTags = [&] { end(); };
    row.call(host);
    EXPECT_TRUE(wasAlive);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Arrow destroy", "Move destroy"));
}

INSTANTIATE_TEST_SUITE_P(
    Entries, ManipulatorEndedInItsCall,
    testing::Combine(
        testing::Values(CallRow{"event", [](auto& host) { host.event(nullptr); }},
                        CallRow{"setup", [](auto& host) { host.draw(); }},
                        CallRow{"draw", [](auto& host) { host.draw(); }},
                        CallRow{"pickerDraw", [](auto& host) { host.pickerDraw(1); }},
                        CallRow{"matches",
                                [](auto& host) {
                                    host.onLocationChanged("/root/a", GroupAttribute::Empty());
                                }},
                        CallRow{"getTags", [](auto& host) { static_cast<void>(host.getTags()); }}),
        testing::Values(
            EndRow{"ByName", [](auto&, auto& view) { view.deactivateManipulator("Move", true); }},
            EndRow{"WithAll", [](auto&, auto& view) { view.deactivateAllManipulators(true); }},
            EndRow{"WithItsViewport", [](auto& all, auto&) { all.removeViewport("view"); }})),
    [](const auto& row) {
        return std::get<CallRow>(row.param).entry + std::string(std::get<EndRow>(row.param).name);
    });

class ManipulatorReentrance : public ManipulatorTest {
protected:
    /// Runs once, in the first call of this entry.
    template <class Plugin>
    static void once(Plugin& plugin, const char* entry, const std::function<void()>& action) {
        plugin.onCall = [entry, action, isDone = false](std::string_view called) mutable {
            if (called == entry && !std::exchange(isDone, true)) {
                action();
            }
        };
    }
};

TEST_F(ManipulatorReentrance, deactivationInItsOwnCallLeavesTheListAtOnce) {
    VlManipulatorHostStruct& host = *activate({});
    once(move, "event", [&] {
        viewport->deactivateManipulator(host.pluginName, true);
        EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
        EXPECT_NE(activate({"/root/new"}), &host) << "and may be activated anew";
    });
    log.take();
    host.event(nullptr);
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 1U);
    EXPECT_EQ(move.numberOfInstances, 1);
    EXPECT_EQ(log.take("__ACTIVE_MANIPULATORS_CHANGED").size(), 2U);
}

TEST_F(ManipulatorReentrance, theViewportsDrawOutlivesItsManipulatorsOwnEnd) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    plugins.hooks["viewport1.draw"] = [&](auto&) {
        host.draw();
        EXPECT_EQ(move.numberOfInstances, 1) << "as the outermost call is still on";
    };
    once(move, "draw", [&] { viewport->deactivateManipulator("Move", true); });
    viewport->draw();
    EXPECT_EQ(move.numberOfInstances, 0);
}

TEST_F(ManipulatorReentrance, theDelegateMayEndItsViewportsInAManipulatorsCall) {
    VlManipulatorHostStruct& host = *activate({});
    once(move, "event", [&] { delegate->cleanup(); });
    log.take();
    host.event(nullptr);
    EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Move destroy"));
}

// ---- In the pump

TEST_F(ManipulatorReentrance, matchesMayDeactivateItWhileALocationIsTold) {
    populate({});
    activate({"/root/a"});
    activate({"/root/a"}, "Aim");
    move.onMatches = [&](const GroupAttribute&) {
        viewport->deactivateManipulator("Move", false);
        return 1;
    };
    cook("/root/a", fits());
    EXPECT_EQ(move.numberOfInstances, 0);
    EXPECT_EQ(pathsOf(*viewport->getActiveManipulator("Aim")), "\"/root/a\"");
}

TEST_F(ManipulatorReentrance, isNodeEditableMayDeactivateAll) {
    populate({});
    activate({"/root/a"});
    activate({"/root/a"}, "Aim");
    bridge.onCall = [&](const std::string& line) {
        if (line == "isNodeEditable n") {
            viewport->deactivateAllManipulators(true);
        }
    };
    log.take();
    cook("/root/a", exclusiveTo("n"));
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
    EXPECT_EQ(move.numberOfInstances + aim.numberOfInstances, 0);
    EXPECT_EQ(log.take("matches").size(), 1U) << "those that have ended are not told";
}

TEST_F(ManipulatorReentrance, isNodeEditableMayDeactivateAllWhileOneIsMade) {
    populate({{"/root/a", exclusiveTo("n")}});
    activate({}, "Aim");
    bridge.onCall = [&](const std::string& line) {
        if (line == "isNodeEditable n") {
            viewport->deactivateAllManipulators(true);
        }
    };
    EXPECT_NE(activate({"/root/a"}), nullptr) << "it was not active yet";
    EXPECT_EQ(aim.numberOfInstances, 0);
}

TEST_F(ManipulatorReentrance, isNodeEditableMayRemoveTheViewports) {
    VlViewportHostStruct* const other = addViewport("other");
    populate({});
    activate({"/root/a"});
    other->activateManipulator("Aim", StringAttribute("/root/a"), false);
    bridge.onCall = [&](const std::string& line) {
        if (line == "isNodeEditable n") {
            delegate->removeViewport("view");
            delegate->removeViewport("other");
        }
    };
    log.take();
    cook("/root/a", exclusiveTo("n"));
    EXPECT_EQ(delegate->getNumberOfViewports(), 0U);
    EXPECT_EQ(move.numberOfInstances + aim.numberOfInstances, 0);
    EXPECT_THAT(log.take("matches"), ElementsAre(testing::StartsWith("Move")));
}

TEST_F(ManipulatorReentrance, isNodeEditableMayPumpAgain) {
    populate({{"/root/a", exclusiveTo("n")}, {"/root/b", exclusiveTo("n")}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    bridge.onCall = [&, isDone = false](const std::string& line) mutable {
        if (line == "isNodeEditable n" && !std::exchange(isDone, true)) {
            client(kPrimaryClient).reportGone("/root/b");
            delegate->processLocationEvents();
        }
    };
    cook("/root/a", exclusiveTo("n"));
    delegate->processLocationEvents();
    EXPECT_EQ(pathsOf(host), "\"/root/a\"");
    EXPECT_TRUE(host.editable);
}

TEST_F(ManipulatorReentrance, aListThatChangesWhileItIsAskedAboutKeepsItsOwnAnswer) {
    populate({{"/root/a", exclusiveTo("n")}, {"/root/b", exclusiveTo("locked")}});
    bridge.lockedNodes = {"locked"};
    VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    EXPECT_FALSE(host.editable);
    bridge.onCall = [&, isDone = false](const std::string& line) mutable {
        if (line == "isNodeEditable n" && !std::exchange(isDone, true)) {
            EXPECT_TRUE(host.onLocationChanged("/root/b", GroupAttribute()));
            EXPECT_TRUE(host.editable);
        }
    };
    host.refreshEditable();
    EXPECT_TRUE(host.editable);
}

TEST_F(ManipulatorReentrance, anExceptionOfMatchesLeavesThePumpAndTheManipulator) {
    populate({});
    VlManipulatorHostStruct* const host = activate({"/root/a"});
    move.onMatches = [](const GroupAttribute&) -> int { throw std::runtime_error("no type"); };
    EXPECT_EQ(textThrownBy([&] { cook("/root/a", fits()); }), "no type");
    EXPECT_FALSE(host->isInCall());
    move.onMatches = [](const GroupAttribute&) { return 1; };
    cook("/root/a", fits());
    EXPECT_EQ(pathsOf(*host), "\"/root/a\"");
}

// ---- In create

TEST_F(ManipulatorReentrance, aCreateThatFailsAfterAddingHandlesEndsThem) {
    for (const bool throws : {false, true}) {
        move.refusesCreate = !throws;
        once(move, "create", [&] {
            auto& host = *static_cast<VlManipulatorHostStruct*>(move.host);
            host.addManipulatorHandle("Arrow", "a");
            host.addManipulatorHandle("Ring", "b");
            if (throws) {
                throw std::runtime_error("no memory");
            }
        });
        EXPECT_EQ(textThrownBy([&] { activate({}); }),
                  throws ? "no memory"
                         : "Failed to create Manipulator plugin instance for 'Move'.");
        EXPECT_THAT(log.take(), ElementsAre("Move create", "Arrow create", "Ring create",
                                            "Arrow destroy", "Ring destroy"));
        EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
    }
}

TEST_F(ManipulatorReentrance, aCreateThatFailsEndsAlsoHandlesThatWaitForTheirEnd) {
    move.refusesCreate = true;
    once(move, "create", [&] {
        auto& host = *static_cast<VlManipulatorHostStruct*>(move.host);
        VlManipulatorHandleHostStruct* const handle = host.addManipulatorHandle("Arrow", "a");
        once(arrow, "event", [&] { host.removeManipulatorHandle("a"); });
        handle->event(nullptr);
        EXPECT_EQ(arrow.numberOfInstances, 1) << "ended in its own call";
    });
    plugins.hooks["viewport1.draw"] = [&](auto&) {
        EXPECT_THROW(activate({}), std::runtime_error);
        EXPECT_EQ(arrow.numberOfInstances, 0) << "its manipulator is gone";
    };
    viewport->draw();
    EXPECT_THAT(log.take("destroy"), ElementsAre("Arrow destroy"));
}

TEST_F(ManipulatorReentrance, matchesThatThrowsWhileItIsMadeEndsIt) {
    populate({{"/root/a", fits()}});
    once(move, "create", [&] {
        static_cast<VlManipulatorHostStruct*>(move.host)->addManipulatorHandle("Arrow", "a");
    });
    move.onMatches = [](const GroupAttribute&) -> int { throw 42; };
    EXPECT_THROW(activate({"/root/a"}), int);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Arrow destroy", "Move destroy"));
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
}

TEST_F(ManipulatorReentrance, activatingItselfInCreateLeavesTheInnerOne) {
    once(move, "create", [&] { activate({"/root/inner"}); });
    VlManipulatorHostStruct* const host = activate({"/root/outer"});
    EXPECT_THAT(host->candidateLocationPaths, ElementsAre("/root/inner"));
    EXPECT_EQ(move.numberOfInstances, 1);
    EXPECT_EQ(log.take("__ACTIVE_MANIPULATORS_CHANGED").size(), 1U);
}

TEST_F(ManipulatorReentrance, deactivatingItselfInCreateDoesNothing) {
    once(move, "create", [&] {
        viewport->deactivateManipulator("Move", true);
        viewport->deactivateAllManipulators(true);
    });
    EXPECT_NE(activate({}), nullptr);
    EXPECT_EQ(log.take("__ACTIVE_MANIPULATORS_CHANGED").size(), 1U);
}

TEST_F(ManipulatorReentrance, removingTheViewportInCreateEndsTheManipulatorWithIt) {
    once(move, "create", [&] { delegate->removeViewport("view"); });
    viewport->activateManipulator("Move", {}, false);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Move destroy"));
}

// ---- In destroy and in the signal

TEST_F(ManipulatorReentrance, destroySeesTheViewportWithoutIt) {
    activate({});
    activate({}, "Aim");
    std::vector<std::uint32_t> counts;
    for (RecordingManipulator* const each : {&move, &aim}) {
        once(*each, "destroy",
             [&] { counts.push_back(viewport->getNumberOfActiveManipulators()); });
    }
    viewport->deactivateManipulator("Move", false);
    viewport->deactivateAllManipulators(false);
    EXPECT_THAT(counts, ElementsAre(1U, 0U));
}

TEST_F(ManipulatorReentrance, destroySeesNoHandles) {
    VlManipulatorHostStruct* const host = activate({});
    host->addManipulatorHandle("Arrow", "a");
    std::uint32_t count = 99;
    once(move, "destroy", [&] { count = host->getNumberOfManipulatorHandles(); });
    viewport->deactivateManipulator("Move", false);
    EXPECT_EQ(count, 0U);
}

TEST_F(ManipulatorReentrance, whatDestroyEntriesAddEndsWithTheManipulator) {
    VlManipulatorHostStruct* const host = activate({});
    host->addManipulatorHandle("Arrow", "a");
    once(arrow, "destroy", [&] { host->addManipulatorHandle("Ring", "late"); });
    once(move, "destroy", [&] { host->addManipulatorHandle("Ring", "later"); });
    log.take();
    viewport->deactivateManipulator("Move", false);
    EXPECT_THAT(log.take(), ElementsAre("Arrow destroy", "Ring create", "Ring destroy",
                                        "Move destroy", "Ring create", "Ring destroy"));
}

TEST_F(ManipulatorReentrance, whatDestroyEntriesActivateEndsWithTheViewport) {
    activate({});
    once(move, "destroy", [&] { activate({}, "Aim"); });
    plugins.hooks["viewport1.destroy"] = [&](auto&) { activate({}, "Move"); };
    log.take();
    delegate->removeViewport("view");
    EXPECT_EQ(move.numberOfInstances + aim.numberOfInstances, 0);
    EXPECT_THAT(log.take("create"), ElementsAre("Aim create", "Move create"));
}

TEST_F(ManipulatorReentrance, theListenerMayDeactivateWhatItHearsOf) {
    channels.onFire = [&](const std::string&) {
        viewport->deactivateAllManipulators(false);
        return VlAttribute::Attribute();
    };
    EXPECT_EQ(activate({}), nullptr);
    EXPECT_EQ(move.numberOfInstances, 0);
}

TEST_F(ManipulatorReentrance, anExceptionOfTheListenerPassesThroughWithTheWorkDone) {
    channels.onFire = [](const std::string&) -> VlAttribute::Attribute {
        throw std::runtime_error("in the user interface");
    };
    EXPECT_EQ(textThrownBy([&] { activate({}); }), "in the user interface");
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 1U);
    EXPECT_EQ(textThrownBy([&] { viewport->deactivateManipulator("Move", true); }),
              "in the user interface");
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
    EXPECT_EQ(move.numberOfInstances, 0);
}

// ---- Handles

TEST_F(ManipulatorReentrance, aHandleRemovedInItsOwnCallIsDestroyedWhenItReturns) {
    VlManipulatorHostStruct& host = *activate({});
    const std::pair<const char*, std::function<void(VlManipulatorHandleHostStruct&)>> kRows[] = {
        {"event", [](auto& handle) { handle.event(nullptr); }},
        {"draw", [](auto& handle) { handle.draw(); }},
        {"pickerDraw", [](auto& handle) { handle.pickerDraw(1); }},
        {"notify", [](auto& handle) { handle.notifyPlugin(); }},
    };
    for (const bool byIndex : {false, true}) {
        for (const auto& [entry, call] : kRows) {
            VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
            once(arrow, entry, [&] {
                byIndex ? host.removeManipulatorHandleByIndex(0)
                        : host.removeManipulatorHandle("a");
                EXPECT_EQ(host.getNumberOfManipulatorHandles(), 0U) << entry;
                EXPECT_EQ(arrow.numberOfInstances, 1) << entry;
            });
            call(handle);
            EXPECT_EQ(arrow.numberOfInstances, 0) << entry;
        }
    }
}

TEST_F(ManipulatorReentrance, aHandlesCallThatEndsTheManipulatorEndsBothAfterwards) {
    VlManipulatorHandleHostStruct& handle = *activate({})->addManipulatorHandle("Arrow", "a");
    once(arrow, "event", [&] {
        viewport->deactivateManipulator("Move", false);
        EXPECT_EQ(move.numberOfInstances + arrow.numberOfInstances, 2);
        EXPECT_TRUE(handle.getCombinedXform().isValid());
    });
    log.take();
    handle.event(nullptr);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Arrow destroy", "Move destroy"));
}

TEST_F(ManipulatorReentrance, aHandleThatAddsAnotherInItsCreateComesSecond) {
    VlManipulatorHostStruct& host = *activate({});
    once(arrow, "create", [&] { host.addManipulatorHandle("Ring", "inner"); });
    VlManipulatorHandleHostStruct* const outer = host.addManipulatorHandle("Arrow", "outer");
    EXPECT_EQ(host.getManipulatorHandleByIndex(1), outer);
    EXPECT_STREQ(host.getManipulatorHandleName(0), "inner");
    EXPECT_STREQ(host.getManipulatorHandleName(1), "outer");
}

TEST_F(ManipulatorReentrance, aHandlesDestroySeesTheManipulatorWithoutIt) {
    VlManipulatorHostStruct& host = *activate({});
    host.addManipulatorHandle("Arrow", "a");
    host.addManipulatorHandle("Ring", "b");
    std::string nameAtZero;
    once(arrow, "destroy", [&] { nameAtZero = host.getManipulatorHandleName(0); });
    host.removeManipulatorHandle("a");
    EXPECT_EQ(nameAtZero, "b");
}

} // namespace
} // namespace ViewerAPI::test
