// The manipulators of a viewport: activation, its end, and what the user interface hears of it.

#include "support/manipulatortest.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class ViewportManipulators : public ManipulatorTest {
protected:
    static std::string signalOf(const std::string& manipulator,
                                const std::string& viewportName = "view") {
        return "channel __ACTIVE_MANIPULATORS_CHANGED {viewportName=\"" + viewportName +
               "\" manipulatorName=\"" + manipulator + "\"}";
    }
    [[nodiscard]] Lines activeNames() const {
        Lines names;
        for (const VlManipulatorHostStruct* const manipulator : viewport->activeManipulators) {
            names.push_back(manipulator->pluginName);
        }
        return names;
    }
};

TEST_F(ViewportManipulators, standInTheOrderOfTheirActivation) {
    activate({});
    activate({}, "Aim");
    EXPECT_EQ(activeNames(), (Lines{"Move", "Aim"}));
    EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 2U);
    EXPECT_EQ(viewport->getActiveManipulatorByIndex(1), viewport->getActiveManipulator("Aim"));
    for (const std::uint32_t index : {2U, 3U, ~0U}) {
        EXPECT_EQ(viewport->getActiveManipulatorByIndex(index), nullptr);
    }
    for (const char* name : {"move", "Mov", "Move ", ""}) {
        EXPECT_EQ(viewport->getActiveManipulator(name), nullptr) << "names compare exactly";
    }
}

TEST_F(ViewportManipulators, activatingTwiceLeavesOneInstanceAndSendsOneSignal) {
    VlManipulatorHostStruct* const first = activate({"/root/a"});
    EXPECT_EQ(activate({"/root/b"}), first);
    EXPECT_THAT(first->candidateLocationPaths, ElementsAre("/root/a"));
    EXPECT_EQ(move.numberOfInstances, 1);
    EXPECT_THAT(log.take(), ElementsAre("Move create", signalOf("Move")));
}

TEST_F(ViewportManipulators, oneMayBeActiveOnSeveralViewports) {
    VlViewportHostStruct* const other = addViewport("other");
    activate({});
    other->activateManipulator("Move", {}, true);
    EXPECT_EQ(move.numberOfInstances, 2);
    EXPECT_EQ(log.take("__ACTIVE_MANIPULATORS_CHANGED"),
              (Lines{signalOf("Move"), signalOf("Move", "other")}));
    viewport->deactivateManipulator("Move", true);
    EXPECT_EQ(other->getNumberOfActiveManipulators(), 1U);
}

TEST_F(ViewportManipulators, anInvalidListOfPathsIsEmpty) {
    for (const StringAttribute& paths : {StringAttribute(), StringAttribute(IntAttribute(1))}) {
        viewport->activateManipulator("Move", paths, false);
        EXPECT_THAT(viewport->getActiveManipulator("Move")->candidateLocationPaths, IsEmpty());
        viewport->deactivateAllManipulators(false);
    }
}

TEST_F(ViewportManipulators, withoutTheSignalNothingIsSent) {
    viewport->activateManipulator("Move", {}, false);
    viewport->activateManipulator("Aim", {}, false);
    viewport->deactivateManipulator("Move", false);
    viewport->deactivateAllManipulators(false);
    EXPECT_THAT(log.take("__ACTIVE_MANIPULATORS_CHANGED"), IsEmpty());
    EXPECT_EQ(move.numberOfInstances + aim.numberOfInstances, 0);
}

TEST_F(ViewportManipulators, theSignalComesWhenTheListIsAsItTells) {
    std::vector<Lines> seen;
    channels.onFire = [&](const std::string&) {
        seen.push_back(activeNames());
        return VlAttribute::Attribute();
    };
    activate({});
    activate({}, "Aim");
    viewport->deactivateManipulator("Move", true);
    viewport->deactivateAllManipulators(true);
    EXPECT_THAT(seen, ElementsAre(Lines{"Move"}, Lines{"Move", "Aim"}, Lines{"Aim"}, Lines{}));
}

TEST_F(ViewportManipulators, deactivationDestroysAndThenSends) {
    activate({});
    activate({}, "Aim");
    log.take();
    viewport->deactivateManipulator("Move", true);
    EXPECT_THAT(log.take(), ElementsAre("Move destroy", signalOf("Move")));
    viewport->deactivateManipulator("Move", true);
    viewport->deactivateManipulator("Nobody", true);
    EXPECT_THAT(log.take(), IsEmpty()) << "unknown names are ignored";
}

TEST_F(ViewportManipulators, deactivationOfAllDestroysInOrderAndSendsAnEmptyName) {
    activate({});
    activate({}, "Aim");
    log.take();
    viewport->deactivateAllManipulators(true);
    EXPECT_THAT(log.take(), ElementsAre("Move destroy", "Aim destroy", signalOf("")));
}

TEST_F(ViewportManipulators, deactivationOfAllOnAnEmptyListSendsNothing) {
    viewport->deactivateAllManipulators(true);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ViewportManipulators, theContextIsCurrentForCreateAndDestroy) {
    viewport->setup(7);
    windows.isQuiet = false;
    Lines seen;
    move.onCall = [&](std::string_view entry) {
        seen.push_back(std::string(entry));
        for (const std::string& line : journal.take()) {
            seen.push_back(line);
        }
    };
    const auto windowCalls = [&](const std::function<void()>& action) {
        journal.take();
        seen.clear();
        action();
        return seen;
    };
    EXPECT_THAT(windowCalls([&] { activate({}); }),
                ElementsAre("create", "makeCurrent dc7 context1"));
    EXPECT_THAT(windowCalls([&] { viewport->deactivateManipulator("Move", true); }),
                ElementsAre("destroy", "makeCurrent dc7 context1"));
    activate({});
    EXPECT_THAT(windowCalls([&] { viewport->deactivateAllManipulators(true); }),
                ElementsAre("destroy", "makeCurrent dc7 context1"));
    windowCalls([&] { viewport->deactivateAllManipulators(true); });
    EXPECT_EQ(journal.take(), Lines{}) << "nothing at all on an empty list";
}

TEST_F(ViewportManipulators, drawingAndEventsOfTheViewportLeaveThemAlone) {
    populate({{"/root/a", fits()}});
    activate({"/root/a"});
    viewport->setup(7);
    log.take();
    viewport->draw();
    viewport->event(nullptr);
    viewport->hover(true, 1, 1);
    viewport->resize(1, 1);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ViewportManipulators, endWithTheViewportAfterItsLayersAndBeforeItsPlugin) {
    viewport->addLayer("Recording", "l");
    activate({});
    activate({}, "Aim");
    for (const char* entry : {"layer1.destroy", "viewport1.destroy"}) {
        plugins.hooks[entry] = [&](auto& instance) { log.lines.push_back(instance.name); };
    }
    log.take();
    delegate->removeViewport("view");
    EXPECT_THAT(log.take(), ElementsAre("layer1", "Move destroy", "Aim destroy", "viewport1"))
        << "and no signal";
}

TEST_F(ViewportManipulators, endWithTheDelegate) {
    activate({});
    log.take();
    delegate.reset();
    EXPECT_THAT(takePluginLines(), ElementsAre("Move destroy", "D destroy"));
}

// ---- What the pump tells them

TEST_F(ViewportManipulators, aChangeOfItsLocationsMakesTheViewportDirty) {
    populate({{"/root/a", fits()}});
    VlViewportHostStruct* const other = addViewport("other");
    activate({"/root/a", "/root/b"});
    EXPECT_FALSE(viewport->isDirty) << "activation alone does not";
    struct Row {
        const char* what;
        std::function<void()> action;
        bool isDirty;
    };
    const Row kRows[] = {
        {"cooked again", [&] { cook("/root/a", fits()); }, false},
        {"no candidate", [&] { cook("/root/c", fits()); }, false},
        {"comes", [&] { cook("/root/b", fits()); }, true},
        {"no longer fits", [&] { cook("/root/a", named("a")); }, true},
        {"goes", [&] { remove("/root/b"); }, true},
        {"gone already", [&] { remove("/root/b"); }, false},
        {"another goes", [&] { remove("/root/c"); }, false},
    };
    for (const Row& row : kRows) {
        viewport->setDirty(false);
        row.action();
        EXPECT_EQ(viewport->isDirty, row.isDirty) << row.what;
        EXPECT_FALSE(other->isDirty) << row.what;
    }
}

TEST_F(ViewportManipulators, everyOneOfEveryViewportIsTold) {
    VlViewportHostStruct* const other = addViewport("other");
    populate({});
    activate({"/root/a"});
    activate({"/root/a"}, "Aim");
    other->activateManipulator("Move", StringAttribute("/root/a"), false);
    log.take();
    cook("/root/a", fits());
    EXPECT_EQ(log.take("matches"),
              (Lines{"Move matches {fits=1}", "Aim matches {fits=1}", "Move matches {fits=1}"}));
    EXPECT_TRUE(viewport->isDirty);
    EXPECT_TRUE(other->isDirty);
}

TEST_F(ViewportManipulators, areToldWithoutTheWorkingSetsData) {
    populate({});
    activate({"/root/a"});
    log.take();
    cook("/root/a",
         fitsWith("__viewerWorkingSets.viewerVisibility.polished.included", IntAttribute(1)));
    EXPECT_THAT(log.take("matches"), ElementsAre("Move matches {fits=1}"));
}

TEST_F(ViewportManipulators, areToldOfNothingWhileAManipulationFreezesTheScene) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    host.setValue("/root/a", "x", IntAttribute(1), false);
    remove("/root/a");
    EXPECT_EQ(pathsOf(host), "\"/root/a\"");
    host.setValue("/root/a", "x", IntAttribute(1), true);
    delegate->processLocationEvents();
    EXPECT_EQ(pathsOf(host), "()");
}

} // namespace
} // namespace ViewerAPI::test
