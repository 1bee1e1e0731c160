// The probes themselves: a delegate with a component, driven through their options.

#include "probetest.h"

#include "vlviewerdelegatecomponenthost.h"

#include <algorithm>
#include <stdexcept>

namespace {

using VlAttribute::StringAttribute;

using ProbePluginsTest = ProbeTest;

TEST_F(ProbePluginsTest, callsAreRecordedUntilTheLogIsCleared) {
    delegate->setup();
    runtime.client(1).report("/root");
    delegate->processLocationEvents();
    EXPECT_EQ(log(), (Lines{"setup", "locationEvent /root leaf attributesChanged hiddenChanged "
                                     "leafChanged handled=0"}));
    delegate->setOption(id("clearLog"), {});
    EXPECT_EQ(log(), Lines{});
}

TEST_F(ProbePluginsTest, optionsAreKeptAndRecordedByName) {
    delegate->setOption(id("colour"), StringAttribute("red"));
    EXPECT_EQ(delegate->getOption(id("colour")), StringAttribute("red"));
    EXPECT_EQ(log(), (Lines{"setOption colour \"red\"", "getOption colour"}));
}

TEST_F(ProbePluginsTest, theLibraryLogTellsTheOrderAcrossInstances) {
    delegate->addComponent("ProbeComponent", "c");
    delegate->setOption(id("clearLog"), {});
    delegate->setSelectedLocations(nullptr, 0);
    EXPECT_EQ(log("libraryLog"),
              (Lines{"ProbeComponent locationsSelected []", "ProbeDelegate locationsSelected []"}));
}

TEST_F(ProbePluginsTest, rulesThrowOrAnswerAsOftenAsTold) {
    command("throwStd:no good@setup#1");
    EXPECT_THROW(delegate->setup(), std::runtime_error);
    EXPECT_NO_THROW(delegate->setup());
    command("throwOther@freeze");
    EXPECT_THROW(delegate->freeze(), int);
    EXPECT_THROW(delegate->freeze(), int);
    command("return:1@isProcessing");
    EXPECT_TRUE(delegate->isProcessing());
    command("clear");
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(ProbePluginsTest, aRuleReachesAPluginThatHasNoInstanceYet) {
    command("returnNull@ProbeComponent.create");
    EXPECT_THROW(delegate->addComponent("ProbeComponent", "c"), std::runtime_error);
    EXPECT_EQ(delegate->getNumberOfComponents(), 0U);
}

TEST_F(ProbePluginsTest, attributesAreAnsweredAsTold) {
    command("returnAttribute:double:0 1 0 2 0 3@getBounds");
    runtime.client(1).report("/root");
    delegate->processLocationEvents();
    const double expected[] = {0, 1, 0, 2, 0, 3};
    const VlAttribute::DoubleAttribute bounds = delegate->getBounds("/root");
    EXPECT_TRUE(std::ranges::equal(bounds.getNearestSample(0.0F), expected));
}

TEST_F(ProbePluginsTest, theHostIsCalledAtOnceOrFromWithinAnEntryInBothVersions) {
    command("call:delegate.getNumberOfComponents");
    command("call:delegate2.addComponent ProbeComponent c@setup#1");
    delegate->setup();
    EXPECT_EQ(log(), (Lines{"-> delegate.getNumberOfComponents: 0", "setup",
                            "-> delegate2.addComponent: found"}));
    EXPECT_EQ(delegate->getNumberOfComponents(), 1U);
}

TEST_F(ProbePluginsTest, anUnknownCallIsAnError) {
    EXPECT_THROW(command("call:delegate.fly"), std::runtime_error);
    EXPECT_THROW(command("call:camera.getFOV"), std::runtime_error);
    EXPECT_THROW(command("call:delegate.getAttributes"), std::runtime_error);
}

} // namespace
