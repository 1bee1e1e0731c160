#include "suites/viewerdelegatehostsuite.h"

#include "sharedglcontext.h"
#include "suites/hostsuites.h"
#include "suites/optionidgeneratorhostsuite.h"
#include "suites/viewerdelegatecomponenthostsuite.h"
#include "suites/viewportcamerahostsuite.h"
#include "suites/viewporthostsuite.h"
#include "suites/viewportlayerhostsuite.h"
#include "support/countingwindowsystem.h"
#include "support/delegatetest.h"
#include "support/recordingglcalls.h"
#include "support/recordingmanipulator.h"
#include "support/viewportplugins.h"
#include "vlviewporthost.h"

#include "VlPluginSystem/PluginManager.h"

#include <array>
#include <cstring>
#include <limits>
#include <type_traits>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr std::size_t kEntries = 50;

/// Three out parameters, filled with rubbish first.
struct Triple {
    void* host = this;
    void* instance = this;
    const void* suite = this;

    [[nodiscard]] bool isNull() const { return !host && !instance && !suite; }
};

/// Takes the reference that an entry returned.
std::string taken(VlAttributeStruct* returned) {
    return textOf(Attribute::CreateAndSteal(returned));
}

template <class Suite>
const Suite& suiteOf() {
    if constexpr (std::is_same_v<Suite, ViewerDelegateHostSuite>) {
        return *getViewerDelegateHostSuite();
    } else {
        return *getViewerDelegateHostSuiteV2();
    }
}

/// Every entry of both versions' tables, through one delegate.
template <class Suite>
class ViewerDelegateHostSuites : public DelegateTest {
protected:
    ViewerDelegateHostSuites() {
        SharedGLContext::instance() = SharedGLContext();
        windows.isQuiet = gl.isQuiet = true;
        host = delegate.get();
    }
    ~ViewerDelegateHostSuites() override {
        delegate.reset();
        SharedGLContext::instance() = SharedGLContext();
    }

    void populateTwo() {
        populate({{"/root/a", GroupBuilder()
                                  .set("xform.g.translate", DoubleAttribute({1, 0, 0}))
                                  .set("bound", DoubleAttribute({0, 1, 0, 1, 0, 1}))
                                  .build()},
                  {"/root/a/b", GroupBuilder()
                                    .set("xform.g.reset", DoubleAttribute(1))
                                    .set("xform.g.translate", DoubleAttribute({5, 0, 0}))
                                    .build()}});
    }

    VlAttributeStruct* partialXform(int includeParent, int includeBefore, int includeAfter) {
        if constexpr (std::is_same_v<Suite, ViewerDelegateHostSuite>) {
            return suite.getPartialXform(host, "/root/p", "g", "translate", 1, 0, includeParent,
                                         includeBefore, includeAfter);
        } else {
            return suite.getPartialXform(host, "/root/p", "g", "translate", 1, 0);
        }
    }

    CallJournal journal;
    CountingWindowSystem windows{journal};
    RecordingGLCalls gl{journal};
    ViewportPlugins plugins{journal};
    const Suite& suite = suiteOf<Suite>();
    VlViewerDelegateHandle host = nullptr;
    std::array<const char*, 2> paths{"/root/a", "/root/a/b"};
};

using Suites = testing::Types<ViewerDelegateHostSuiteV2, ViewerDelegateHostSuite>;
TYPED_TEST_SUITE(ViewerDelegateHostSuites, Suites);

TYPED_TEST(ViewerDelegateHostSuites, setViewOpAnswersTheCommitId) {
    const int opId = this->runtime->addOp();
    EXPECT_EQ(this->suite.setViewOp(this->host, opId), 2);
    EXPECT_EQ(this->suite.setViewOp(this->host, opId), -1);
}

TYPED_TEST(ViewerDelegateHostSuites, attributesComeWithAReference) {
    this->populateTwo();
    const std::string text = textOf(this->delegate->getAttributes("/root/a", 0));
    EXPECT_EQ(taken(this->suite.getAttributes(this->host, "/root/a", 0)), text);
    EXPECT_EQ(taken(this->suite.getCookedAttributes(this->host, "/root/a", 0)), text);
    EXPECT_EQ(this->suite.getAttributes(this->host, "/root/unknown", 0), nullptr);
    EXPECT_EQ(this->suite.getAttributes(this->host, nullptr, 0), nullptr);
    EXPECT_EQ(this->suite.getLiveAttributes(this->host, "/root/a", 0), nullptr);
    this->delegate->liveValues.liveAttributes["/root/a"].overrides["x"] = IntAttribute(1);
    EXPECT_EQ(taken(this->suite.getLiveAttributes(this->host, "/root/a", 0)), "{x=1}");
}

TYPED_TEST(ViewerDelegateHostSuites, transforms) {
    this->populateTwo();
    uint8_t isAbsolute = 7;
    EXPECT_EQ(taken(this->suite.getLocalXform(this->host, "/root/a", &isAbsolute, 0)),
              "(1 0 0 0 0 1 0 0 0 0 1 0 1 0 0 1)");
    EXPECT_EQ(isAbsolute, 0);
    Attribute::CreateAndSteal(this->suite.getLocalXform(this->host, "/root/a/b", &isAbsolute, 0));
    EXPECT_EQ(isAbsolute, 1);
    EXPECT_EQ(this->suite.getLocalXform(this->host, "/root/unknown", &isAbsolute, 0), nullptr);
    EXPECT_EQ(isAbsolute, 0);
    EXPECT_EQ(taken(this->suite.getWorldXform(this->host, "/root/a/b", 0)),
              "(1 0 0 0 0 1 0 0 0 0 1 0 5 0 0 1)");
    EXPECT_EQ(taken(this->suite.getParentXform(this->host, "/root/a/b", 0)),
              "(1 0 0 0 0 1 0 0 0 0 1 0 1 0 0 1)");
}

TYPED_TEST(ViewerDelegateHostSuites, partialXformsFlags) {
    const auto sideways = [](double x) { return DoubleAttribute({x, 0, 0}); };
    this->populate({{"/root/p", GroupBuilder()
                                    .set("xform.before.translate", sideways(10))
                                    .set("xform.g.translate", sideways(100))
                                    .set("xform.after.translate", sideways(1000))
                                    .build()}});
    this->delegate->locationTree.setAttributes(
        "/root", GroupBuilder().set("xform.g.translate", sideways(1)).build());
    this->delegate->flushLocationChanges(true);
    const bool isVersion2 = std::is_same_v<TypeParam, ViewerDelegateHostSuiteV2>;
    for (int flags = 0; flags < 8; ++flags) {
        const bool parent = isVersion2 || (flags & 1) != 0;
        const bool before = isVersion2 || (flags & 2) != 0;
        const bool after = !isVersion2 && (flags & 4) != 0;
        // Any value but 0 is a set flag.
        const DoubleAttribute matrix(Attribute::CreateAndSteal(this->partialXform(
            (flags & 1) * 2, (flags & 2) != 0 ? -1 : 0, (flags & 4) != 0 ? 5 : 0)));
        ASSERT_TRUE(matrix.isValid());
        EXPECT_EQ(matrix.getNearestSample(0.0F)[12],
                  100 + (parent ? 1 : 0) + (before ? 10 : 0) + (after ? 1000 : 0))
            << "flags " << flags;
    }
}

TYPED_TEST(ViewerDelegateHostSuites, locationLists) {
    using Entry = void (*)(VlViewerDelegateHandle, const char**, uint32_t);
    const std::pair<Entry, const char*> rows[] = {
        {this->suite.openLocations, "setLocationsOpen client1 [/root/a /root/a/b]"},
        {this->suite.closeLocations, "setLocationsClosed client1 [/root/a /root/a/b]"},
        {this->suite.pinLocations, "setLocationsActive client2 [/root/a /root/a/b]"},
        {this->suite.unpinLocations, "setLocationsInactive client2 [/root/a /root/a/b]"},
        {this->suite.activateSourceLocations, "setLocationsActive client3 [/root/a /root/a/b]"},
        {this->suite.deactivateSourceLocations, "setLocationsInactive client3 [/root/a /root/a/b]"},
    };
    for (const auto& [entry, command] : rows) {
        entry(this->host, this->paths.data(), 2);
        EXPECT_THAT(this->runtime->takeCalls(), ElementsAre(command));
    }
}

TYPED_TEST(ViewerDelegateHostSuites, hiding) {
    this->suite.hideLocations(this->host, this->paths.data(), 2);
    EXPECT_EQ(taken(this->suite.getHiddenLocations(this->host)), "(\"/root/a\" \"/root/a/b\")");
    this->suite.unhideLocations(this->host, this->paths.data(), 1);
    EXPECT_EQ(taken(this->suite.getHiddenLocations(this->host)), "\"/root/a/b\"");
    this->suite.unhideAllLocations(this->host);
    EXPECT_EQ(taken(this->suite.getHiddenLocations(this->host)), "()");
}

TYPED_TEST(ViewerDelegateHostSuites, workingSets) {
    EXPECT_EQ(this->suite.getWorkingSetVisibilityEnabled(this->host), 0);
    this->suite.setWorkingSetVisibilityEnabled(this->host, 2);
    EXPECT_EQ(this->suite.getWorkingSetVisibilityEnabled(this->host), 1);
    const GroupAttribute workingSet = this->named("set");
    this->suite.setVisibilityWorkingSet(this->host, workingSet.getHandle());
    EXPECT_EQ(this->delegate->scene.visibilityWorkingSet, workingSet);
    this->suite.setVisibilityWorkingSet(this->host, nullptr);
    EXPECT_FALSE(this->delegate->scene.visibilityWorkingSet.isValid());
}

TYPED_TEST(ViewerDelegateHostSuites, selection) {
    this->suite.selectLocation(this->host, "/root/a");
    this->suite.selectLocations(this->host, this->paths.data(), 2);
    this->channels.onFire = [](const std::string&) { return Attribute(StringAttribute("/x")); };
    EXPECT_EQ(taken(this->suite.getSelectedLocations(this->host)), "\"/x\"");
    EXPECT_THAT(this->log.take(),
                ElementsAre("channel __SELECT_LOCATIONS \"/root/a\"",
                            "channel __SELECT_LOCATIONS (\"/root/a\" \"/root/a/b\")",
                            "channel __GET_SELECTED_LOCATIONS null"));
}

TYPED_TEST(ViewerDelegateHostSuites, callbacks) {
    this->channels.onFire = [](const std::string&) { return Attribute(IntAttribute(2)); };
    const IntAttribute value(1);
    EXPECT_EQ(taken(this->suite.callPythonCallback(this->host, "x", value.getHandle())), "2");
    EXPECT_EQ(taken(this->suite.callPythonCallback(this->host, "y", nullptr)), "2");
    this->channels.onFire = nullptr;
    EXPECT_EQ(this->suite.callPythonCallback(this->host, "z", nullptr), nullptr);
    EXPECT_EQ(this->suite.callPythonCallback(this->host, nullptr, nullptr), nullptr);
    EXPECT_THAT(this->log.take(), ElementsAre("channel x 1", "channel y null", "channel z null"));
}

TYPED_TEST(ViewerDelegateHostSuites, compatibleManipulators) {
    this->populateTwo();
    RecordingManipulator manipulator(this->log, "Move");
    manipulator.tags = GroupAttribute{{"label", StringAttribute("Move")}};
    manipulator.onMatches = [](const GroupAttribute& attributes) {
        return attributes.getChildByName("bound").isValid() ? 1 : 0;
    };
    const auto& getInfo = this->suite.getCompatibleManipulatorsInfo;
    EXPECT_EQ(taken(getInfo(this->host, this->paths.data(), 2)), "{Move={label=\"Move\"}}");
    EXPECT_EQ(taken(getInfo(this->host, this->paths.data() + 1, 1)), "{}");
    EXPECT_EQ(taken(getInfo(this->host, nullptr, 0)), "{}");
    EXPECT_EQ(getInfo(this->host, nullptr, 1), nullptr);
}

TYPED_TEST(ViewerDelegateHostSuites, generatedGeometryIsSwitched) {
    this->suite.setBoundingBoxesEnabled(this->host, 0);
    this->suite.setBoundingBoxesEnabled(this->host, 200);
    this->suite.setProxyGeometryEnabled(this->host, 0);
    this->suite.setProxyGeometryEnabled(this->host, 1);
    EXPECT_THAT(this->log.take(), ElementsAre("channel __BOUNDING_BOXES_CHANGED 0",
                                              "channel __BOUNDING_BOXES_CHANGED 1",
                                              "channel __PROXY_GEOMETRY_CHANGED 0",
                                              "channel __PROXY_GEOMETRY_CHANGED 1"));
}

TYPED_TEST(ViewerDelegateHostSuites, aListenersErrorPassesThroughTheTable) {
    this->channels.onFire = [](const std::string&) -> Attribute {
        throw std::runtime_error("listener");
    };
    EXPECT_THROW(this->suite.callPythonCallback(this->host, "x", nullptr), std::runtime_error);
    EXPECT_THROW(this->suite.selectLocation(this->host, "/root"), std::runtime_error);
}

TYPED_TEST(ViewerDelegateHostSuites, components) {
    Triple added;
    this->suite.addComponent(this->host, "A", "a", &added.host, &added.instance, &added.suite);
    VlViewerDelegateComponentHostStruct* const component = this->delegate->getComponent("a");
    ASSERT_NE(component, nullptr);
    EXPECT_EQ(added.host, component);
    EXPECT_EQ(added.instance, component->instance);
    EXPECT_EQ(added.suite, component->suite);

    Triple inserted;
    this->suite.insertComponent(this->host, "B", "b", 0, &inserted.host, &inserted.instance,
                                &inserted.suite);
    EXPECT_EQ(inserted.host, this->delegate->getComponent("b"));
    EXPECT_EQ(this->suite.getNumberOfComponents(this->host), 2U);
    EXPECT_STREQ(this->suite.getComponentName(this->host, 0), "b");
    EXPECT_EQ(this->suite.getComponentIndex(this->host, "a"), 1);

    Triple found;
    this->suite.getComponent(this->host, "a", &found.host, &found.instance, &found.suite);
    EXPECT_EQ(found.host, component);
    this->suite.getComponentByIndex(this->host, 0, &found.host, &found.instance, &found.suite);
    EXPECT_EQ(found.host, inserted.host);

    this->suite.removeComponent(this->host, "a");
    this->suite.removeComponentByIndex(this->host, 0);
    EXPECT_EQ(this->suite.getNumberOfComponents(this->host), 0U);
}

TYPED_TEST(ViewerDelegateHostSuites, absentComponentsAreThreeNulls) {
    this->delegate->addComponent("A", "a");
    Triple triple;
    this->suite.getComponent(this->host, "b", &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(triple.isNull());
    triple = {};
    this->suite.getComponent(this->host, nullptr, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(triple.isNull());
    for (const uint32_t index : {1U, std::numeric_limits<uint32_t>::max()}) {
        triple = {};
        this->suite.getComponentByIndex(this->host, index, &triple.host, &triple.instance,
                                        &triple.suite);
        EXPECT_TRUE(triple.isNull());
        EXPECT_STREQ(this->suite.getComponentName(this->host, index), "");
        this->suite.removeComponentByIndex(this->host, index);
    }
    triple = {};
    this->suite.insertComponent(this->host, "B", "b", 2, &triple.host, &triple.instance,
                                &triple.suite);
    EXPECT_TRUE(triple.isNull());
    EXPECT_EQ(this->suite.getComponentIndex(this->host, "b"), -1);
    EXPECT_EQ(this->suite.getComponentIndex(this->host, nullptr), -1);
    this->suite.removeComponent(this->host, "b");
    this->suite.removeComponent(this->host, nullptr);
    EXPECT_EQ(this->suite.getNumberOfComponents(this->host), 1U);
}

TYPED_TEST(ViewerDelegateHostSuites, aComponentThatDoesNotLoadIsAnException) {
    Triple triple;
    EXPECT_THROW(this->suite.addComponent(this->host, "nobody", "a", &triple.host, &triple.instance,
                                          &triple.suite),
                 std::runtime_error);
}

TYPED_TEST(ViewerDelegateHostSuites, viewports) {
    auto* const viewport = new VlViewportHostStruct("Recording", "v", this->delegate.get());
    this->suite.addViewport(this->host, viewport, "v");
    EXPECT_EQ(this->suite.getNumberOfViewports(this->host), 1U);
    EXPECT_STREQ(this->suite.getViewportName(this->host, 0), "v");
    Triple byName;
    this->suite.getViewport(this->host, "v", &byName.host, &byName.instance, &byName.suite);
    EXPECT_EQ(byName.host, viewport);
    EXPECT_EQ(byName.instance, viewport->pluginHandle);
    EXPECT_EQ(byName.suite, viewport->pluginSuite);
    Triple byIndex;
    this->suite.getViewportByIndex(this->host, 0, &byIndex.host, &byIndex.instance, &byIndex.suite);
    EXPECT_EQ(byIndex.host, viewport);
    this->suite.removeViewport(this->host, "v");
    EXPECT_EQ(this->suite.getNumberOfViewports(this->host), 0U);
    this->suite.addViewport(this->host,
                            new VlViewportHostStruct("Recording", "w", this->delegate.get()), "w");
    this->suite.removeViewportByIndex(this->host, 0);
    EXPECT_EQ(this->suite.getNumberOfViewports(this->host), 0U);
}

TYPED_TEST(ViewerDelegateHostSuites, absentViewportsAreThreeNulls) {
    Triple triple;
    this->suite.getViewport(this->host, "v", &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(triple.isNull());
    triple = {};
    this->suite.getViewport(this->host, nullptr, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(triple.isNull());
    triple = {};
    this->suite.getViewportByIndex(this->host, 0, &triple.host, &triple.instance, &triple.suite);
    EXPECT_TRUE(triple.isNull());
    EXPECT_STREQ(this->suite.getViewportName(this->host, 0), "");
    this->suite.removeViewport(this->host, "v");
    this->suite.removeViewport(this->host, nullptr);
    this->suite.removeViewportByIndex(this->host, 0);
}

TYPED_TEST(ViewerDelegateHostSuites, manipulatedValues) {
    this->populate({{"/root/a", this->named("cooked")}});
    const StringAttribute value("live");
    const auto set = [&](const char* path, VlAttributeStruct* handle, int isFinal) {
        return this->suite.setManipulatedAttribute(this->host, path, "name", handle, isFinal);
    };
    this->suite.openManipulationGroup(this->host, "/root/a");
    EXPECT_EQ(set("/root/a", value.getHandle(), 0), 1);
    EXPECT_EQ(taken(this->suite.getAttributes(this->host, "/root/a", 0)), "{name=\"live\"}");
    EXPECT_EQ(taken(this->suite.getCookedAttributes(this->host, "/root/a", 0)),
              "{name=\"cooked\"}");
    EXPECT_THAT(this->plugin.takeEventLines(), IsEmpty());
    this->suite.closeManipulationGroup(this->host, "/root/a");
    EXPECT_THAT(this->plugin.takeEventLines(), ElementsAre("/root/a attributesChanged handled=0"));
    // Any value but 0 is final.
    EXPECT_EQ(set("/root/a", value.getHandle(), 256), 1);
    EXPECT_EQ(this->delegate->manipulationFreeze.freezeState, FreezeState::Settling);
    EXPECT_EQ(set("/root/a", nullptr, 1), 0);
    EXPECT_EQ(set("/root/unknown", value.getHandle(), 1), 0);
    EXPECT_EQ(set(nullptr, value.getHandle(), 1), 0);
    EXPECT_THROW(
        this->suite.setManipulatedAttribute(this->host, "/root/a", nullptr, value.getHandle(), 1),
        std::runtime_error);
}

TYPED_TEST(ViewerDelegateHostSuites, descendantsExtentsAndProcessing) {
    this->populateTwo();
    EXPECT_EQ(taken(this->suite.getDescendantLocations(this->host, "/root")),
              "(\"/root/a\" \"/root/a/b\")");
    EXPECT_EQ(this->suite.getDescendantLocations(this->host, "/root/unknown"), nullptr);
    EXPECT_EQ(taken(this->suite.computeMergedExtent(this->host, this->paths.data(), 2, "")),
              "(1 2 0 1 0 1)");
    EXPECT_EQ(this->suite.computeMergedExtent(this->host, this->paths.data(), 1, "/root/a"),
              nullptr);
    EXPECT_EQ(taken(this->suite.computeMergedExtent(this->host, this->paths.data(), 1, nullptr)),
              "(1 2 0 1 0 1)");
    EXPECT_EQ(this->suite.computeMergedExtent(this->host, nullptr, 1, nullptr), nullptr);
    EXPECT_EQ(this->suite.isProcessing(this->host), 0);
    this->plugin.processing = 256;
    EXPECT_EQ(this->suite.isProcessing(this->host), 1);
}

TYPED_TEST(ViewerDelegateHostSuites, aPluginReachesItsDelegateThroughWhatCreateGot) {
    EXPECT_EQ(this->plugin.host, this->delegate.get());
    this->delegate->addComponent("A", "a");
    EXPECT_EQ(this->suite.getNumberOfComponents(this->plugin.host), 1U);
}

using ViewerDelegateHostSuiteVersion = DelegateTest;

TEST_F(ViewerDelegateHostSuiteVersion, eitherReachesTheSameDelegate) {
    const ViewerDelegateHostSuiteV2& version2 = *getViewerDelegateHostSuiteV2();
    const ViewerDelegateHostSuite& version3 = *getViewerDelegateHostSuite();
    const char* path = "/root/a";
    version2.hideLocations(plugin.host, &path, 1);
    EXPECT_EQ(taken(version3.getHiddenLocations(plugin.host)), "\"/root/a\"");
    version3.unhideAllLocations(plugin.host);
    EXPECT_EQ(taken(version2.getHiddenLocations(plugin.host)), "()");
}

TEST(ViewerDelegateHostSuiteVersions, differInEntry5Alone) {
    static_assert(sizeof(ViewerDelegateHostSuite) == kEntries * sizeof(void*));
    static_assert(sizeof(ViewerDelegateHostSuiteV2) == kEntries * sizeof(void*));
    std::array<std::uintptr_t, kEntries> version2{};
    std::array<std::uintptr_t, kEntries> version3{};
    std::memcpy(version2.data(), getViewerDelegateHostSuiteV2(), sizeof(version2));
    std::memcpy(version3.data(), getViewerDelegateHostSuite(), sizeof(version3));
    for (std::size_t entry = 0; entry < kEntries; ++entry) {
        EXPECT_EQ(version2[entry] == version3[entry], entry != 5) << "entry " << entry;
    }
}

TEST(ViewerDelegateHostSuiteVersions, haveNoGaps) {
    std::array<const void*, kEntries> entries{};
    std::memcpy(entries.data(), getViewerDelegateHostSuite(), sizeof(entries));
    std::vector<std::size_t> nullEntries;
    for (std::size_t entry = 0; entry < kEntries; ++entry) {
        if (!entries[entry]) {
            nullEntries.push_back(entry);
        }
    }
    EXPECT_THAT(nullEntries, IsEmpty());
}

TEST(HostSuites, areOfferedUnderTheirNamesAndVersions) {
    registerHostSuites();
    registerHostSuites();
    const std::tuple<const char*, std::uint32_t, const void*> rows[] = {
        {"OptionIdGeneratorHost", 1, getOptionIdGeneratorHostSuite()},
        {"ViewerDelegateComponentHost", 2, getViewerDelegateComponentHostSuite()},
        {"ViewerDelegateHost", 2, getViewerDelegateHostSuiteV2()},
        {"ViewerDelegateHost", 3, getViewerDelegateHostSuite()},
        {"ViewportCameraHost", 2, getViewportCameraHostSuite()},
        {"ViewportHost", 3, getViewportHostSuite()},
        {"ViewportLayerHost", 2, getViewportLayerHostSuite()},
    };
    for (const auto& [name, version, suite] : rows) {
        EXPECT_EQ(PluginManager::getHostSuite(name, version), suite) << name << ' ' << version;
        EXPECT_EQ(PluginManager::getHostSuite(name, version + 10), nullptr) << name;
    }
}

} // namespace
} // namespace ViewerAPI::test
