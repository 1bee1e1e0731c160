// The tables of manipulators and handles, and the viewport's entries for them, as a plug-in calls
// them: order of arguments, triples, references, conversions at the border.

#include "suites/manipulatorhandlehostsuite.h"
#include "suites/manipulatorhostsuite.h"
#include "suites/viewporthostsuite.h"
#include "support/manipulatortest.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr const char* kIdentity = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)";

// Starts with something in each place, so that nulls show as written.
struct Triple {
    static inline int something = 0;
    void* host = &something;
    void* instance = &something;
    const void* suite = &something;

    bool operator==(const Triple&) const = default;
};

constexpr Triple kNulls{nullptr, nullptr, nullptr};

template <class Host>
Triple tripleOf(const Host* object) {
    return {const_cast<Host*>(object), object->pluginInstance, object->pluginSuite};
}

/// The triple that an entry writes.
template <class... Parameters, class... Arguments>
Triple ask(void (*entry)(Parameters...), Arguments... arguments) {
    Triple found;
    entry(arguments..., &found.host, &found.instance, &found.suite);
    return found;
}

/// Takes over the reference that an entry gives.
std::string textOfResult(VlAttributeStruct* stolen) {
    return textOf(Attribute::CreateAndSteal(stolen));
}

class ManipulatorSuites : public ManipulatorTest {
protected:
    ManipulatorSuites() {
        populate({{"/root/a", at(1, 2, 3)}});
        host = activate({"/root/a"});
        log.take();
    }

    // What a plug-in has: its own pointer and the tables.
    const ManipulatorHostSuite& suite = *getManipulatorHostSuite();
    const ManipulatorHandleHostSuite& handleSuite = *getManipulatorHandleHostSuite();
    const ViewportHostSuite& viewportSuite = *getViewportHostSuite();
    VlManipulatorHostStruct* host = nullptr;
};

TEST_F(ManipulatorSuites, accessorsGiveTheSameTableEveryTime) {
    EXPECT_EQ(getManipulatorHostSuite(), &suite);
    EXPECT_EQ(getManipulatorHandleHostSuite(), &handleSuite);
}

// ---- ManipulatorHost

TEST_F(ManipulatorSuites, getPluginNameIsTheNameTextItself) {
    EXPECT_EQ(suite.getPluginName(host), host->pluginName.c_str());
    EXPECT_STREQ(suite.getPluginName(host), "Move");
}

TEST_F(ManipulatorSuites, eventReducesTheAnswerToABool) {
    for (const auto& [answer, expected] : {std::pair(0, 0), std::pair(1, 1), std::pair(-7, 1)}) {
        move.handles = answer;
        EXPECT_EQ(suite.event(host, named("press").getHandle()), expected);
    }
    EXPECT_EQ(log.take(), Lines(3, "Move event {name=\"press\"}"));
}

TEST_F(ManipulatorSuites, drawAndPickerDrawTellWhetherTheyDrew) {
    EXPECT_EQ(suite.draw(host), 1);
    EXPECT_EQ(suite.pickerDraw(host, 0xFFFF'FFFF'FFFF'FFFF), 1);
    EXPECT_THAT(log.take(),
                ElementsAre("Move setup", "Move draw", "Move pickerDraw 18446744073709551615"));
    remove("/root/a");
    EXPECT_EQ(suite.draw(host), 0);
    EXPECT_EQ(suite.pickerDraw(host, 1), 0);
}

TEST_F(ManipulatorSuites, xformIsSetAndGotAndComesWithAReference) {
    EXPECT_EQ(textOfResult(suite.getXform(host)), kIdentity);
    const DoubleAttribute xform({2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 5, 6, 7, 1}, 4);
    suite.setXform(host, xform.getHandle());
    EXPECT_EQ(xform.getHandle()->refCount, 2U) << "the host's own";
    const Attribute got = Attribute::CreateAndSteal(suite.getXform(host));
    EXPECT_EQ(got.getHandle(), xform.getHandle());
    EXPECT_EQ(xform.getHandle()->refCount, 3U) << "and the caller's";
    suite.setXform(host, nullptr);
    EXPECT_EQ(suite.getXform(host), nullptr);
    suite.setXform(host, IntAttribute(1).getHandle());
    EXPECT_EQ(suite.getXform(host), nullptr) << "what is no double is none";
    EXPECT_EQ(host->xformMatrix, Imath::M44d());
}

TEST_F(ManipulatorSuites, calculateXformIsTheLocationsPosition) {
    EXPECT_EQ(textOfResult(suite.calculateXform(host)), "(1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1)");
}

TEST_F(ManipulatorSuites, getValueIsNullForWhatIsNotThere) {
    EXPECT_EQ(textOfResult(suite.getValue(host, "/root/a", "xform.group.translate")), "(1 2 3)");
    EXPECT_EQ(suite.getValue(host, "/root/a", "nothing"), nullptr);
    EXPECT_EQ(suite.getValue(host, "/root/b", "fits"), nullptr);
    EXPECT_EQ(suite.getValue(host, nullptr, "fits"), nullptr);
    EXPECT_EQ(suite.getValue(host, "/root/a", nullptr), nullptr);
}

TEST_F(ManipulatorSuites, setValueIsFinalForAnythingButZero) {
    const IntAttribute value(5);
    EXPECT_EQ(suite.setValue(host, "/root/a", "x", value.getHandle(), 0), 1);
    EXPECT_EQ(suite.setValue(host, "/root/a", "x", value.getHandle(), -2), 1);
    EXPECT_EQ(log.take("setValue"),
              (Lines{"bridge setValue /root/a x 5", "bridge setValue /root/a x 5 final"}));
    EXPECT_EQ(suite.setValue(host, "/root/a", "x", nullptr, 0), 0);
    EXPECT_EQ(suite.setValue(host, "/root/b", "x", value.getHandle(), 0), 0);
    EXPECT_EQ(suite.setValue(host, nullptr, "x", value.getHandle(), 0), 0);
    EXPECT_THROW(suite.setValue(host, "/root/a", nullptr, value.getHandle(), 0),
                 std::runtime_error);
    EXPECT_EQ(textOfResult(suite.getValue(host, "/root/a", "x")), "5");
}

TEST_F(ManipulatorSuites, getViewportGivesTheViewportsTriple) {
    EXPECT_EQ(ask(suite.getViewport, host),
              (Triple{viewport, viewport->pluginHandle, viewport->pluginSuite}));
}

TEST_F(ManipulatorSuites, getLocationPathsGivesTheListWithAReference) {
    EXPECT_EQ(textOfResult(suite.getLocationPaths(host)), "\"/root/a\"");
    remove("/root/a");
    EXPECT_EQ(textOfResult(suite.getLocationPaths(host)), "()");
}

TEST_F(ManipulatorSuites, handlesAreAddedFoundAndRemoved) {
    const Triple a = ask(suite.addManipulatorHandle, host, "Arrow", "a");
    const Triple b = ask(suite.addManipulatorHandle, host, "Ring", "b");
    EXPECT_EQ(a, tripleOf(host->handles[0]));
    EXPECT_EQ(b, tripleOf(host->handles[1]));
    EXPECT_EQ(suite.getNumberOfManipulatorHandles(host), 2U);
    EXPECT_EQ(ask(suite.getManipulatorHandle, host, "b"), b);
    EXPECT_EQ(ask(suite.getManipulatorHandleByIndex, host, 0U), a);
    EXPECT_STREQ(suite.getManipulatorHandleName(host, 1), "b");
    suite.removeManipulatorHandle(host, "a");
    EXPECT_EQ(ask(suite.getManipulatorHandleByIndex, host, 0U), b);
    suite.removeManipulatorHandleByIndex(host, 0);
    EXPECT_EQ(suite.getNumberOfManipulatorHandles(host), 0U);
    EXPECT_THAT(log.take("destroy"), ElementsAre("Arrow destroy", "Ring destroy"));
}

TEST_F(ManipulatorSuites, aHandleAtAnIndexEqualToTheCountIsThreeNulls) {
    EXPECT_EQ(ask(suite.getManipulatorHandleByIndex, host, 0U), kNulls);
    ask(suite.addManipulatorHandle, host, "Arrow", "a");
    EXPECT_EQ(ask(suite.getManipulatorHandleByIndex, host, 1U), kNulls);
    EXPECT_EQ(ask(suite.getManipulatorHandleByIndex, host, ~0U), kNulls);
    EXPECT_EQ(ask(suite.getManipulatorHandle, host, "b"), kNulls);
    EXPECT_EQ(ask(suite.getManipulatorHandle, host, static_cast<const char*>(nullptr)), kNulls);
}

TEST_F(ManipulatorSuites, theNameOfAnUnusedIndexIsEmptyAndNeverNull) {
    for (const std::uint32_t index : {0U, 1U, ~0U}) {
        EXPECT_STREQ(suite.getManipulatorHandleName(host, index), "");
    }
}

TEST_F(ManipulatorSuites, exceptionsOfTheHostComeThroughTheTable) {
    EXPECT_EQ(textThrownBy([&] { ask(suite.addManipulatorHandle, host, "Nobody", "a"); }),
              "Couldn't load ManipulatorHandle plugin type 'Nobody'.");
    const auto* const null = static_cast<const char*>(nullptr);
    EXPECT_EQ(textThrownBy([&] { ask(suite.addManipulatorHandle, host, null, null); }),
              "Couldn't load ManipulatorHandle plugin type ''.");
    EXPECT_EQ(textThrownBy([&] { suite.removeManipulatorHandleByIndex(host, 0); }),
              "invalid vector<T> subscript");
    suite.removeManipulatorHandleByIndex(host, 1);
    suite.removeManipulatorHandle(host, "a");
    suite.removeManipulatorHandle(host, nullptr);
    EXPECT_EQ(suite.getNumberOfManipulatorHandles(host), 0U);
}

TEST_F(ManipulatorSuites, registeredManipulatorsNeedNoHostObject) {
    move.tags = named("Move");
    EXPECT_EQ(textOfResult(suite.getRegisteredManipulatorsInfo()), "{Move={name=\"Move\"}}");
}

TEST_F(ManipulatorSuites, isEditableIsWhatTheHostFound) {
    EXPECT_EQ(suite.isEditable(host), 0);
    cook("/root/a", exclusiveTo("n"));
    EXPECT_EQ(suite.isEditable(host), 1);
}

TEST_F(ManipulatorSuites, manipulationGroupsReachTheDelegate) {
    suite.openManipulationGroup(host, "/root/a");
    suite.closeManipulationGroup(host, "/root/a");
    EXPECT_THAT(log.take(), ElementsAre("bridge openManipulationGroup /root/a",
                                        "bridge closeManipulationGroup /root/a"));
}

// ---- ManipulatorHandleHost

class ManipulatorHandleSuite : public ManipulatorSuites {
protected:
    ManipulatorHandleSuite() : handle(host->addManipulatorHandle("Arrow", "a")) { log.take(); }

    VlManipulatorHandleHostStruct* const handle;
};

TEST_F(ManipulatorHandleSuite, getManipulatorGivesTheOwnersTriple) {
    EXPECT_EQ(ask(handleSuite.getManipulator, handle), tripleOf(host));
}

TEST_F(ManipulatorHandleSuite, xformsComeWithAReference) {
    EXPECT_EQ(handleSuite.getLocalXform(handle), nullptr);
    EXPECT_EQ(textOfResult(handleSuite.getCombinedXform(handle)), kIdentity);
    const DoubleAttribute local({2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 1, 1, 1}, 4);
    handleSuite.setLocalXform(handle, local.getHandle());
    EXPECT_EQ(local.getHandle()->refCount, 2U) << "the host's own";
    {
        const Attribute got = Attribute::CreateAndSteal(handleSuite.getLocalXform(handle));
        EXPECT_EQ(got.getHandle(), local.getHandle());
        EXPECT_EQ(local.getHandle()->refCount, 3U) << "and the caller's";
    }
    suite.setXform(
        host, DoubleAttribute({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1}, 4).getHandle());
    EXPECT_EQ(textOfResult(handleSuite.getCombinedXform(handle)),
              "(2 0 0 0 0 2 0 0 0 0 2 0 6 1 1 1)");
    handleSuite.setLocalXform(handle, nullptr);
    EXPECT_EQ(handleSuite.getLocalXform(handle), nullptr);
}

TEST_F(ManipulatorHandleSuite, callsReachThePlugin) {
    for (const auto& [answer, expected] : {std::pair(0, 0), std::pair(1, 1), std::pair(-7, 1)}) {
        arrow.handles = answer;
        EXPECT_EQ(handleSuite.event(handle, nullptr), expected);
    }
    log.take();
    handleSuite.draw(handle);
    handleSuite.pickerDraw(handle, 0xFFFF'FFFF'FFFF'FFFF);
    handleSuite.notifyPlugin(handle);
    EXPECT_THAT(log.take(),
                ElementsAre("Arrow draw", "Arrow pickerDraw 18446744073709551615", "Arrow notify"));
}

TEST_F(ManipulatorHandleSuite, flagsAreStoredAsBoolsAndAnswered) {
    EXPECT_EQ(handleSuite.isEngaged(handle), 0);
    EXPECT_EQ(handleSuite.isMarked(handle), 0);
    EXPECT_EQ(handleSuite.setEngaged(handle, 2), 1);
    EXPECT_EQ(handleSuite.isEngaged(handle), 1);
    EXPECT_EQ(handleSuite.isMarked(handle), 0);
    EXPECT_EQ(handleSuite.setMarked(handle, -2), 1);
    EXPECT_EQ(handleSuite.isMarked(handle), 1);
    EXPECT_EQ(handleSuite.setEngaged(handle, 0), 0);
    EXPECT_EQ(handleSuite.isEngaged(handle), 0);
    EXPECT_EQ(handleSuite.setMarked(handle, 0), 0);
    EXPECT_EQ(handleSuite.isMarked(handle), 0);
    EXPECT_THAT(log.take(), IsEmpty()) << "their meaning is the plug-in's";
}

TEST_F(ManipulatorHandleSuite, aDrawGoesFromTheViewportThroughBothTables) {
    plugins.hooks["viewport1.draw"] = [&](auto&) {
        log.lines.push_back("viewport");
        const Triple manipulator = ask(viewportSuite.getActiveManipulatorByIndex, viewport, 0U);
        EXPECT_EQ(suite.draw(manipulator.host), 1);
    };
    move.onCall = [&](std::string_view entry) {
        if (entry == "draw") {
            handleSuite.draw(ask(suite.getManipulatorHandle, move.host, "a").host);
        }
    };
    viewport->draw();
    EXPECT_THAT(log.take(), ElementsAre("viewport", "Move setup", "Move draw", "Arrow draw"));
}

// ---- ViewportHost, the six entries

TEST_F(ManipulatorSuites, theViewportsEntriesAlwaysSignal) {
    const StringAttribute paths({"/root/a", "/root/b"});
    viewportSuite.activateManipulator(viewport, "Aim", paths.getHandle());
    EXPECT_EQ(paths.getHandle()->refCount, 1U) << "it stays the caller's";
    EXPECT_THAT(viewport->getActiveManipulator("Aim")->candidateLocationPaths,
                ElementsAre("/root/a", "/root/b"));
    viewportSuite.deactivateManipulator(viewport, "Aim");
    viewportSuite.deactivateAllManipulators(viewport);
    EXPECT_EQ(log.take("__ACTIVE_MANIPULATORS_CHANGED"),
              (Lines{"channel __ACTIVE_MANIPULATORS_CHANGED "
                     "{viewportName=\"view\" manipulatorName=\"Aim\"}",
                     "channel __ACTIVE_MANIPULATORS_CHANGED "
                     "{viewportName=\"view\" manipulatorName=\"Aim\"}",
                     "channel __ACTIVE_MANIPULATORS_CHANGED "
                     "{viewportName=\"view\" manipulatorName=\"\"}"}));
}

TEST_F(ManipulatorSuites, theViewportsEntriesFindActiveManipulators) {
    EXPECT_EQ(viewportSuite.getNumberOfActiveManipulators(viewport), 1U);
    EXPECT_EQ(ask(viewportSuite.getActiveManipulatorByIndex, viewport, 0U), tripleOf(host));
    EXPECT_EQ(ask(viewportSuite.getActiveManipulator, viewport, "Move"), tripleOf(host));
    for (const std::uint32_t index : {1U, 2U, ~0U}) {
        EXPECT_EQ(ask(viewportSuite.getActiveManipulatorByIndex, viewport, index), kNulls);
    }
    for (const char* name : {"Aim", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(ask(viewportSuite.getActiveManipulator, viewport, name), kNulls);
    }
}

TEST_F(ManipulatorSuites, theViewportsEntriesTakeNullsAndLetExceptionsThrough) {
    EXPECT_EQ(textThrownBy([&] { viewportSuite.activateManipulator(viewport, nullptr, nullptr); }),
              "Couldn't load Manipulator plugin type ''.");
    viewportSuite.deactivateManipulator(viewport, nullptr);
    viewportSuite.activateManipulator(viewport, "Aim", nullptr);
    viewportSuite.deactivateManipulator(viewport, "Aim");
    viewportSuite.activateManipulator(viewport, "Aim", IntAttribute(1).getHandle());
    EXPECT_THAT(viewport->getActiveManipulator("Aim")->candidateLocationPaths, IsEmpty());
    EXPECT_EQ(viewportSuite.getNumberOfActiveManipulators(viewport), 2U);
}

} // namespace
} // namespace ViewerAPI::test
