// One manipulator: how it is made, which locations it edits, and when its plug-in is set up.

#include "vlmanipulatorhost.h"

#include "support/manipulatortest.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr const char* kIdentity = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)";

class VlManipulatorHost : public ManipulatorTest {};

// ---- Construction

TEST_F(VlManipulatorHost, createRunsBeforeLocationsAreLookedFor) {
    populate({{"/root/a", fits()}});
    std::string pathsInCreate;
    std::string xformInCreate;
    move.onCall = [&](std::string_view entry) {
        if (entry == "create") {
            const auto& host = *static_cast<VlManipulatorHostStruct*>(move.host);
            pathsInCreate = pathsOf(host);
            xformInCreate = textOf(host.getXform());
        }
    };
    activate({"/root/a"});
    EXPECT_EQ(pathsInCreate, "null");
    EXPECT_EQ(xformInCreate, "null");
    EXPECT_THAT(takePluginLines(), ElementsAre("Move create", "Move matches {fits=1}",
                                               "channel __ACTIVE_MANIPULATORS_CHANGED "
                                               "{viewportName=\"view\" manipulatorName=\"Move\"}"));
}

TEST_F(VlManipulatorHost, keepsWhatItWasActivatedWith) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    EXPECT_EQ(host.pluginName, "Move");
    EXPECT_EQ(host.viewport, viewport);
    EXPECT_THAT(host.candidateLocationPaths, ElementsAre("/root/a", "/root/b"));
    EXPECT_EQ(host.pluginInstance, &move);
    EXPECT_TRUE(host.setupPending);
}

TEST_F(VlManipulatorHost, editsTheMatchingCandidatesInTheirOrder) {
    populate({{"/root/a", fits()}, {"/root/b", named("b")}, {"/root/c", fits()}});
    EXPECT_EQ(pathsOf(*activate({"/root/c", "/root/b", "/root/unknown", "/root/a"})),
              "(\"/root/c\" \"/root/a\")");
}

TEST_F(VlManipulatorHost, isNotAskedAboutLocationsThatAreNotThere) {
    activate({"/root/a"});
    EXPECT_THAT(log.take("matches"), IsEmpty());
}

TEST_F(VlManipulatorHost, anyAnswerButZeroIsAMatch) {
    populate({{"/root/a", fits()}});
    for (const int answer : {1, -1, 256}) {
        move.onMatches = [answer](const GroupAttribute&) { return answer; };
        EXPECT_EQ(pathsOf(*activate({"/root/a"})), "\"/root/a\"") << answer;
        viewport->deactivateAllManipulators(false);
    }
}

TEST_F(VlManipulatorHost, onAViewportWithoutADelegateItHasNoLocations) {
    const auto alone = std::make_unique<VlViewportHostStruct>("Recording", "alone", nullptr);
    alone->activateManipulator("Move", StringAttribute("/root/a"), true);
    VlManipulatorHostStruct& host = *alone->getActiveManipulator("Move");
    EXPECT_EQ(pathsOf(host), "()");
    EXPECT_FALSE(host.editable) << "the flag stays as it was";
    EXPECT_FALSE(host.getValue("/root/a", "fits").isValid());
    EXPECT_FALSE(host.setValue("/root/a", "fits", IntAttribute(1), true));
    EXPECT_EQ(textOf(host.calculateXform()), kIdentity);
    host.openManipulationGroup("/root/a");
    host.closeManipulationGroup("/root/a");
    alone->setViewFrozen(true);
    EXPECT_THAT(log.take(), ElementsAre("Move create"));
}

struct FailureRow {
    const char* name;
    std::string text;
};

TEST_F(VlManipulatorHost, pluginsThatCannotBeHadThrowTheirTextsAndLeaveNothingBehind) {
    const RecordingManipulator withoutTable(log, "WithoutTable", RecordingManipulator::Table::None);
    aim.refusesCreate = true;
    const FailureRow kRows[] = {
        {"Nobody", "Couldn't load Manipulator plugin type 'Nobody'."},
        {"Arrow", "Couldn't load Manipulator plugin type 'Arrow'."},
        {"", "Couldn't load Manipulator plugin type ''."},
        {"WithoutTable", "Error getting Manipulator plugin suite for 'WithoutTable'."},
        {"Aim", "Failed to create Manipulator plugin instance for 'Aim'."},
    };
    for (const FailureRow& row : kRows) {
        EXPECT_EQ(textThrownBy([&] { activate({"/root/a"}, row.name); }), row.text);
        EXPECT_EQ(viewport->getNumberOfActiveManipulators(), 0U);
    }
    EXPECT_THAT(log.take(), ElementsAre("Aim create")) << "neither a signal nor a destroy";
}

TEST_F(VlManipulatorHost, getTagsAsksThePlugin) {
    move.tags = named("Move");
    VlManipulatorHostStruct& host = *activate({});
    log.take();
    EXPECT_EQ(textOf(host.getTags()), "{name=\"Move\"}");
    EXPECT_THAT(log.take(), ElementsAre("Move getTags"));
    VlAttributeStruct* const handle = move.tags.getHandle();
    EXPECT_EQ(handle->refCount, 1U) << "the reference is taken over";
    move.tags = IntAttribute(1);
    EXPECT_FALSE(host.getTags().isValid()) << "tags that are no group";
}

// ---- Locations that come and go

TEST_F(VlManipulatorHost, aLocationThatGoesAndComesBackReturnsAtTheEndOfTheList) {
    populate({{"/root/a", fits()}, {"/root/b", fits()}});
    VlManipulatorHostStruct* const host = activate({"/root/a", "/root/b"});
    remove("/root/a");
    EXPECT_EQ(pathsOf(*host), "\"/root/b\"");
    cook("/root/a", fits());
    EXPECT_EQ(viewport->getActiveManipulator("Move"), host) << "alive all along";
    EXPECT_EQ(pathsOf(*host), "(\"/root/b\" \"/root/a\")");
}

TEST_F(VlManipulatorHost, aLocationThatGoesAndComesBackInOnePumpReturnsAtTheEndOfTheList) {
    populate({{"/root/a", fits()}, {"/root/b", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    client(kPrimaryClient).reportGone("/root/a");
    cook("/root/a", fits());
    EXPECT_EQ(pathsOf(host), "(\"/root/b\" \"/root/a\")");
}

TEST_F(VlManipulatorHost, aRemovedLocationIsGoneBeforePluginsHearOfIt) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a"});
    std::string pathsWhenTold;
    plugin.onCall = [&](std::string_view entry, std::string_view) {
        if (entry == "locationEvent") {
            pathsWhenTold = pathsOf(host);
        }
    };
    log.take();
    remove("/root/a");
    EXPECT_EQ(pathsWhenTold, "()");
    EXPECT_THAT(log.take("matches"), IsEmpty()) << "there is nothing to ask about";
}

TEST_F(VlManipulatorHost, aPinnedLocationsEventsCountToo) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    client(kPinnedClient).report("/root/b", fits());
    client(kPinnedClient).reportGone("/root/a");
    delegate->processLocationEvents();
    EXPECT_EQ(pathsOf(host), "\"/root/b\"");
}

TEST_F(VlManipulatorHost, proxiesThatComeAndGoAreNoEventsForIt) {
    populate({{"/root/a", named("a")}});
    const VlManipulatorHostStruct& host = *activate({"/root/a/proxy"});
    log.take();
    delegate->locationTree.cook("/root/a/proxy", fits(), {}, true, false);
    delegate->processLocationEvents();
    EXPECT_EQ(pathsOf(host), "()");
    EXPECT_THAT(log.take("matches"), IsEmpty());
}

TEST_F(VlManipulatorHost, aProxyThatIsThereAtActivationIsEdited) {
    populate({{"/root/a", named("a")}});
    delegate->locationTree.cook("/root/a/proxy", fits(), {}, true, false);
    delegate->processLocationEvents();
    EXPECT_EQ(pathsOf(*activate({"/root/a/proxy"})), "\"/root/a/proxy\"");
}

TEST_F(VlManipulatorHost, aPathThatWasNotGivenAtActivationNeverEnters) {
    populate({});
    const VlManipulatorHostStruct& host = *activate({"/root/a"});
    log.take();
    cook("/root/b", fits());
    cook("/root/a/x", fits());
    EXPECT_EQ(pathsOf(host), "()");
    EXPECT_THAT(log.take("matches"), IsEmpty());
}

TEST_F(VlManipulatorHost, aLocationThatNoLongerMatchesLeaves) {
    populate({{"/root/a", fits()}, {"/root/b", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    cook("/root/a", named("a"));
    EXPECT_EQ(pathsOf(host), "\"/root/b\"");
    cook("/root/a", fits());
    EXPECT_EQ(pathsOf(host), "(\"/root/b\" \"/root/a\")");
}

TEST_F(VlManipulatorHost, onLocationChangedTellsWhetherTheListChanged) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    EXPECT_FALSE(host.onLocationChanged("/root/a", fits())) << "there already";
    EXPECT_TRUE(host.onLocationChanged("/root/b", fits()));
    EXPECT_FALSE(host.onLocationChanged("/root/c", fits())) << "no candidate";
    EXPECT_TRUE(host.onLocationChanged("/root/a", named("a")));
    EXPECT_FALSE(host.onLocationChanged("/root/a", named("a")));
    EXPECT_TRUE(host.onLocationChanged("/root/b", GroupAttribute()));
    EXPECT_FALSE(host.onLocationChanged("/root/b", GroupAttribute()));
    EXPECT_FALSE(host.onLocationChanged("/root/c", GroupAttribute()));
}

TEST_F(VlManipulatorHost, whatHappensToOtherLocationsAsksNobody) {
    populate({{"/root/a", exclusiveTo("n")}, {"/root/c", exclusiveTo("n")}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    log.take();
    host.onLocationChanged("/root/c", fits());
    host.onLocationChanged("/root/c", GroupAttribute());
    EXPECT_THAT(log.take(), IsEmpty());
    host.onLocationChanged("/root/a", fits());
    EXPECT_THAT(log.take(), testing::Not(IsEmpty()));
}

TEST_F(VlManipulatorHost, aTransformSetInCreateGivesWayToTheIdentity) {
    move.onCall = [&](std::string_view entry) {
        if (entry == "create") {
            auto& host = *static_cast<VlManipulatorHostStruct*>(move.host);
            host.setXform(DoubleAttribute(std::vector<double>(16, 2.0), 4));
        }
    };
    const VlManipulatorHostStruct& host = *activate({});
    EXPECT_EQ(textOf(host.getXform()), kIdentity);
    EXPECT_EQ(host.xformMatrix, Imath::M44d());
}

TEST_F(VlManipulatorHost, aHandedOutListDoesNotFollow) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a"});
    const StringAttribute before = host.getLocationPaths();
    remove("/root/a");
    EXPECT_EQ(textOf(before), "\"/root/a\"");
}

TEST_F(VlManipulatorHost, aPathGivenTwiceStandsTwiceUntilItGoes) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/a"});
    EXPECT_EQ(pathsOf(host), "(\"/root/a\" \"/root/a\")");
    remove("/root/a");
    cook("/root/a", fits());
    EXPECT_EQ(pathsOf(host), "\"/root/a\"");
}

// ---- Drawing and events

TEST_F(VlManipulatorHost, activatedBeforeItsLocationsAreCookedItDrawsNothingAndIsNotSetUp) {
    populate({});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    log.take();
    EXPECT_FALSE(host.draw());
    EXPECT_FALSE(host.pickerDraw(1));
    cook("/root/a", named("a"));
    EXPECT_FALSE(host.draw()) << "an event that doesn't match";
    EXPECT_THAT(log.take("setup"), IsEmpty());

    cook("/root/a", fits());
    log.take();
    EXPECT_TRUE(host.draw());
    EXPECT_THAT(log.take(), ElementsAre("Move setup", "Move draw"));
    EXPECT_TRUE(host.draw());
    EXPECT_TRUE(host.pickerDraw(7));
    EXPECT_THAT(log.take(), ElementsAre("Move draw", "Move pickerDraw 7"));
}

TEST_F(VlManipulatorHost, pickerDrawSetsItUpAndPassesTheIdUnchanged) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    log.take();
    EXPECT_TRUE(host.pickerDraw(0xFFFF'FFFF'FFFF'FFFF));
    EXPECT_THAT(log.take(), ElementsAre("Move setup", "Move pickerDraw 18446744073709551615"));
}

TEST_F(VlManipulatorHost, afterTheLastLocationItIsNotDrawnAndStillGetsEvents) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    remove("/root/a");
    log.take();
    EXPECT_FALSE(host.draw());
    EXPECT_FALSE(host.pickerDraw(1));
    host.event(named("press").getHandle());
    EXPECT_THAT(log.take(), ElementsAre("Move event {name=\"press\"}"));
}

TEST_F(VlManipulatorHost, eventsComeBeforeTheSetupAndAnswerWhetherTheyWereHandled) {
    VlManipulatorHostStruct& host = *activate({});
    log.take();
    EXPECT_FALSE(host.event(nullptr));
    for (const int answer : {1, -1, 2}) {
        move.handles = answer;
        EXPECT_TRUE(host.event(nullptr));
    }
    EXPECT_EQ(log.take("event").size(), 4U);
}

TEST_F(VlManipulatorHost, anEventsHandleIsOnlyLent) {
    VlManipulatorHostStruct& host = *activate({});
    const GroupAttribute event = named("press");
    host.event(event.getHandle());
    EXPECT_EQ(event.getHandle()->refCount, 1U);
}

TEST_F(VlManipulatorHost, aSetupThatThrewIsTriedAgain) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    move.onCall = [](std::string_view entry) {
        if (entry == "setup") {
            throw std::runtime_error("no shader");
        }
    };
    EXPECT_EQ(textThrownBy([&] { host.draw(); }), "no shader");
    EXPECT_EQ(textThrownBy([&] { host.pickerDraw(1); }), "no shader");
    move.onCall = nullptr;
    log.take();
    EXPECT_TRUE(host.draw());
    EXPECT_THAT(log.take(), ElementsAre("Move setup", "Move draw"));
}

TEST_F(VlManipulatorHost, aDrawFromWithinTheSetupDrawsNothing) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    move.onCall = [&](std::string_view entry) {
        if (entry == "setup") {
            EXPECT_FALSE(host.draw());
            EXPECT_FALSE(host.pickerDraw(1));
        }
    };
    log.take();
    EXPECT_TRUE(host.draw());
    EXPECT_THAT(log.take(), ElementsAre("Move setup", "Move draw"));
}

} // namespace
} // namespace ViewerAPI::test
