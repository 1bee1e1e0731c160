#include "support/delegatetest.h"

#include <array>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// Opening, pinning, hiding and selecting.
class LocationState : public DelegateTest {
protected:
    using ListMethod = void (VlViewerDelegateHostStruct::*)(const char* const*, std::uint32_t);

    void call(ListMethod method, std::vector<const char*> paths) {
        (delegate.get()->*method)(paths.data(), static_cast<std::uint32_t>(paths.size()));
    }
    void open(const char* path) { call(&VlViewerDelegateHostStruct::openLocations, {path}); }
    void hide(const char* path) { call(&VlViewerDelegateHostStruct::hideLocations, {path}); }

    /// What the plug-in is told once the client has reported these.
    Lines report(const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            client(kPrimaryClient).report(path, named(path), {"child"});
        }
        delegate->processLocationEvents();
        return plugin.takeEventLines();
    }
};

TEST_F(LocationState, listOperationsTellTheClientOnce) {
    struct Row {
        ListMethod method;
        const char* command;
    };
    const std::array<Row, 6> rows{{
        {&VlViewerDelegateHostStruct::openLocations, "setLocationsOpen client1 [/root/a /root/b]"},
        {&VlViewerDelegateHostStruct::closeLocations,
         "setLocationsClosed client1 [/root/a /root/b]"},
        {&VlViewerDelegateHostStruct::pinLocations, "setLocationsActive client2 [/root/a /root/b]"},
        {&VlViewerDelegateHostStruct::unpinLocations,
         "setLocationsInactive client2 [/root/a /root/b]"},
        {&VlViewerDelegateHostStruct::activateSourceLocations,
         "setLocationsActive client3 [/root/a /root/b]"},
        {&VlViewerDelegateHostStruct::deactivateSourceLocations,
         "setLocationsInactive client3 [/root/a /root/b]"},
    }};
    for (const Row& row : rows) {
        call(row.method, {"/root/a", "/root/b"});
        EXPECT_THAT(runtime->takeCalls(), ElementsAre(row.command));
    }
}

TEST_F(LocationState, hidingTellsNoClient) {
    hide("/root/a");
    call(&VlViewerDelegateHostStruct::unhideLocations, {"/root/a"});
    delegate->unhideAllLocations();
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
}

TEST_F(LocationState, aListWithANullPathChangesNothing) {
    for (const ListMethod method :
         {&VlViewerDelegateHostStruct::openLocations, &VlViewerDelegateHostStruct::closeLocations,
          &VlViewerDelegateHostStruct::pinLocations, &VlViewerDelegateHostStruct::unpinLocations,
          &VlViewerDelegateHostStruct::activateSourceLocations,
          &VlViewerDelegateHostStruct::deactivateSourceLocations,
          &VlViewerDelegateHostStruct::hideLocations, &VlViewerDelegateHostStruct::unhideLocations,
          &VlViewerDelegateHostStruct::selectLocations}) {
        call(method, {"/root/a", nullptr});
        (delegate.get()->*method)(nullptr, 1);
        EXPECT_EQ(delegate->locationTree.find("/root/a"), nullptr);
        EXPECT_EQ(delegate->sourceLocationTree.find("/root/a"), nullptr);
    }
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(delegate->getHiddenLocations().getNumberOfValues(), 0);
}

TEST_F(LocationState, anEmptyListReachesTheClient) {
    delegate->openLocations(nullptr, 0);
    EXPECT_THAT(runtime->takeCalls(), ElementsAre("setLocationsOpen client1 []"));
}

TEST_F(LocationState, openingALocationNotCookedYetIsRemembered) {
    open("/root/a");
    EXPECT_THAT(client(kPrimaryClient).open, ElementsAre("/root/a"));
    open("/root");
    report({"/root", "/root/a"});
    EXPECT_EQ(report({"/root/a/b"}).size(), 1U);
}

TEST_F(LocationState, closingTakesTheChildrenDown) {
    open("/root");
    report({"/root", "/root/a"});
    call(&VlViewerDelegateHostStruct::closeLocations, {"/root"});
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root leaf leafChanged handled=0", "/root/a removed handled=0"));
}

TEST_F(LocationState, pinningShowsALocationUnderAClosedParent) {
    call(&VlViewerDelegateHostStruct::pinLocations, {"/root/a"});
    report({"/root"});
    EXPECT_EQ(report({"/root/a"}).size(), 1U);
    call(&VlViewerDelegateHostStruct::unpinLocations, {"/root/a"});
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(), testing::Contains("/root/a removed handled=0"));
}

TEST_F(LocationState, pinningInWorkingSetModeChangesTheTreeAndNotTheClient) {
    delegate->setWorkingSetVisibilityEnabled(true);
    runtime->takeCalls();
    call(&VlViewerDelegateHostStruct::pinLocations, {"/root/a"});
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
    const LocationNode* const node = delegate->locationTree.find("/root/a");
    ASSERT_NE(node, nullptr);
    EXPECT_TRUE(node->pinned);
    delegate->setWorkingSetVisibilityEnabled(false);
    EXPECT_THAT(client(kPinnedClient).active, ElementsAre("/root/a"));
}

TEST_F(LocationState, aPinOfWorkingSetModeShowsOnceTheModeIsOff) {
    const auto told = [this](const char* path, int included) {
        client(kPrimaryClient)
            .report(path,
                    VlAttribute::GroupBuilder()
                        .set("__viewerWorkingSets.viewerVisibility.polished.included",
                             IntAttribute(included))
                        .build(),
                    {"child"});
    };
    delegate->setWorkingSetVisibilityEnabled(true);
    told("/root", 1);
    told("/root/a", 0);
    delegate->processLocationEvents();
    plugin.takeEventLines();
    // In the mode the set alone says what is shown, and how.
    call(&VlViewerDelegateHostStruct::pinLocations, {"/root/a"});
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
    delegate->setWorkingSetVisibilityEnabled(false);
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root/a leaf hiddenChanged leafChanged handled=0"));
}

TEST_F(LocationState, aPinOfWorkingSetModeIsNoPinOfTheViewAfterItIsTakenAway) {
    open("/root");
    report({"/root", "/root/a"});
    delegate->setWorkingSetVisibilityEnabled(true);
    call(&VlViewerDelegateHostStruct::pinLocations, {"/root/a"});
    call(&VlViewerDelegateHostStruct::unpinLocations, {"/root/a"});
    delegate->setWorkingSetVisibilityEnabled(false);
    call(&VlViewerDelegateHostStruct::closeLocations, {"/root"});
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(), testing::Contains("/root/a removed handled=0"));
    EXPECT_THAT(client(kPinnedClient).active, IsEmpty());
}

TEST_F(LocationState, closingALocationNotCookedYetForgetsThatItWasOpened) {
    open("/root/a");
    call(&VlViewerDelegateHostStruct::closeLocations, {"/root/a"});
    open("/root");
    report({"/root", "/root/a"});
    EXPECT_THAT(report({"/root/a/b"}), IsEmpty());
}

TEST_F(LocationState, anActiveSourceLocationShowsWithWhatIsBelowItAndGoesWhenInactive) {
    call(&VlViewerDelegateHostStruct::activateSourceLocations, {"/root/a"});
    for (const char* path : {"/root", "/root/a", "/root/a/b", "/root/c"}) {
        client(kSourcesClient).report(path, named(path));
    }
    delegate->processLocationEvents();
    EXPECT_THAT(log.take("sourceLocationEvent"),
                ElementsAre("D sourceLocationEvent /root attributesChanged",
                            "D sourceLocationEvent /root/a attributesChanged",
                            "D sourceLocationEvent /root/a/b attributesChanged"));
    call(&VlViewerDelegateHostStruct::deactivateSourceLocations, {"/root/a"});
    delegate->flushLocationChanges(true);
    EXPECT_THAT(log.take("sourceLocationEvent"),
                ElementsAre("D sourceLocationEvent /root removed"));
}

TEST_F(LocationState, hidingALocationReachesWhatIsBelowIt) {
    open("/root");
    open("/root/a");
    report({"/root", "/root/a", "/root/a/b"});
    hide("/root/a");
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(), ElementsAre("/root/a hidden hiddenChanged handled=0",
                                                     testing::StartsWith("/root/a/b hidden ")));
    EXPECT_EQ(textOf(delegate->getHiddenLocations()), "\"/root/a\"");
    call(&VlViewerDelegateHostStruct::unhideLocations, {"/root/a"});
    delegate->flushLocationChanges(true);
    EXPECT_EQ(plugin.takeEventLines().size(), 2U);
    EXPECT_EQ(delegate->getHiddenLocations().getNumberOfValues(), 0);
    EXPECT_TRUE(delegate->getHiddenLocations().isValid());
}

TEST_F(LocationState, hidingBeforeALocationExistsTakesEffectWhenItDoes) {
    hide("/root/a");
    open("/root");
    EXPECT_THAT(report({"/root", "/root/a"}),
                testing::Contains(
                    "/root/a hidden leaf attributesChanged hiddenChanged leafChanged handled=0"));
}

TEST_F(LocationState, unhideAllShowsEverything) {
    open("/root");
    report({"/root", "/root/a", "/root/b"});
    hide("/root/a");
    hide("/root/b");
    hide("/root/unknown");
    delegate->flushLocationChanges(true);
    plugin.takeEventLines();
    delegate->unhideAllLocations();
    delegate->flushLocationChanges(true);
    EXPECT_EQ(plugin.takeEventLines().size(), 2U);
    EXPECT_EQ(delegate->getHiddenLocations().getNumberOfValues(), 0);
}

TEST_F(LocationState, aGeneratedLocationCanNotBeHidden) {
    report({"/root"});
    delegate->locationTree.cook("/root/proxy", named("proxy"), {}, true, false);
    delegate->flushLocationChanges(true);
    hide("/root/proxy");
    EXPECT_EQ(delegate->getHiddenLocations().getNumberOfValues(), 0);
    plugin.takeEventLines();
    delegate->flushLocationChanges(true);
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
}

// ---- Selection

TEST_F(LocationState, aSelectionReachesComponentsFromLastToFirstAndThenThePlugin) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    log.take();
    call(&VlViewerDelegateHostStruct::setSelectedLocations, {"/root/a", "/root/b"});
    EXPECT_THAT(log.take(), ElementsAre("B locationsSelected [/root/a /root/b]",
                                        "A locationsSelected [/root/a /root/b]",
                                        "D locationsSelected [/root/a /root/b]"));
}

TEST_F(LocationState, anEmptySelectionIsPassedOn) {
    delegate->setSelectedLocations(nullptr, 0);
    EXPECT_THAT(log.take(), ElementsAre("D locationsSelected []"));
}

TEST_F(LocationState, aComponentThatRemovesAnotherOnSelectionKeepsTheRestInformed) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    componentB.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "locationsSelected") {
            delegate->removeComponent("a");
        }
    };
    log.take();
    delegate->setSelectedLocations(nullptr, 0);
    EXPECT_THAT(log.take("locationsSelected"),
                ElementsAre("B locationsSelected []", "D locationsSelected []"));
}

TEST_F(LocationState, selectingFiresTheChannelWithThePaths) {
    delegate->selectLocation("/root/a");
    EXPECT_THAT(log.take(), ElementsAre("channel __SELECT_LOCATIONS \"/root/a\""));
    call(&VlViewerDelegateHostStruct::selectLocations, {"/root/a", "/root/b"});
    EXPECT_THAT(log.take(), ElementsAre("channel __SELECT_LOCATIONS (\"/root/a\" \"/root/b\")"));
    delegate->selectLocations(nullptr, 0);
    EXPECT_THAT(log.take(), ElementsAre("channel __SELECT_LOCATIONS ()"));
    delegate->selectLocation(nullptr);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(LocationState, theSelectionIsAskedOfTheChannel) {
    channels.onFire = [](const std::string&) { return Attribute(StringAttribute("/root/a")); };
    EXPECT_EQ(textOf(delegate->getSelectedLocations()), "\"/root/a\"");
    EXPECT_THAT(log.take(), ElementsAre("channel __GET_SELECTED_LOCATIONS null"));
}

TEST_F(LocationState, anAnswerThatIsNoTextIsNoSelection) {
    channels.onFire = [](const std::string&) { return Attribute(IntAttribute(1)); };
    EXPECT_FALSE(delegate->getSelectedLocations().isValid());
}

} // namespace
} // namespace ViewerAPI::test
