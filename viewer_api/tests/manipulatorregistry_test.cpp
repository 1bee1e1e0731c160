#include "manipulatorregistry.h"

#include "support/delegatetest.h"
#include "support/recordingmanipulator.h"

#include "VlPluginSystem/VlPluginSystem.h"

#include <array>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

GroupAttribute location(const char* type) {
    return GroupAttribute{{"type", StringAttribute(type)}};
}

/// A predicate that takes locations of one type.
auto matchesType(const char* type) {
    return [type](const GroupAttribute& attributes) {
        return attributes.getChildByName("type") == StringAttribute(type) ? 1 : 0;
    };
}

/// Three manipulators, registered in an order that no sorting gives.
class ManipulatorRegistry : public DelegateTest {
protected:
    ManipulatorRegistry() {
        move.tags = GroupAttribute{{"label", StringAttribute("Move")}};
        aim.tags = GroupAttribute{{"label", StringAttribute("Aim")}, {"rank", IntAttribute(2)}};
        move.onMatches = matchesType("polymesh");
        aim.onMatches = matchesType("light");
    }

    GroupAttribute compatible(std::vector<const char*> paths) {
        return delegate->getCompatibleManipulatorsInfo(paths.data(),
                                                       static_cast<std::uint32_t>(paths.size()));
    }

    RecordingManipulator move{log, "Move"};
    RecordingManipulator withoutTable{log, "WithoutTable", RecordingManipulator::Table::None};
    RecordingManipulator aim{log, "Aim"};
};

// ---- What is registered

TEST_F(ManipulatorRegistry, registeredInfoHasTheTagsOfEachInTheManagersOrder) {
    EXPECT_EQ(textOf(getRegisteredManipulatorsInfo()),
              "{Move={label=\"Move\"} Aim={label=\"Aim\" rank=2}}");
    EXPECT_THAT(log.take(), ElementsAre("Move getTags", "Aim getTags"));
}

TEST_F(ManipulatorRegistry, nothingIsKeptBetweenQuestions) {
    static_cast<void>(getRegisteredManipulatorsInfo());
    move.tags = GroupAttribute::Empty();
    RecordingManipulator later(log, "Later");
    later.tags = GroupAttribute::Empty();
    EXPECT_EQ(textOf(getRegisteredManipulatorsInfo()),
              "{Move={} Aim={label=\"Aim\" rank=2} Later={}}");
}

TEST_F(ManipulatorRegistry, aManipulatorWhoseTagsAreNoGroupIsLeftOut) {
    move.tags = Attribute();
    aim.tags = IntAttribute(1);
    EXPECT_EQ(textOf(getRegisteredManipulatorsInfo()), "{}");
}

TEST_F(ManipulatorRegistry, tagsAreInheritedAsABuilderSetsThemUnlessTold) {
    EXPECT_TRUE(getRegisteredManipulatorsInfo().isGroupInherit(0));
}

TEST_F(ManipulatorRegistry, pluginsOfAnotherVersionAreNotListed) {
    const VlPluginRecord old = {VL_MANIPULATOR_PLUGIN_TYPE, "Old", 1, loadManipulatorSuite("Move")};
    ASSERT_TRUE(VlPluginSystem::registerPlugin(old));
    EXPECT_FALSE(getRegisteredManipulatorsInfo().getChildByName("Old").isValid());
    EXPECT_THROW(static_cast<void>(loadManipulatorSuite("Old")), std::runtime_error);
    VlPluginSystem::unregisterPlugin(old.typeName, old.name, old.apiVersion);
}

TEST_F(ManipulatorRegistry, theTagsReferenceIsTakenOver) {
    VlAttributeStruct* const handle = move.tags.getHandle();
    const GroupAttribute info = getRegisteredManipulatorsInfo();
    EXPECT_EQ(handle->refCount, 2U) << "the plug-in's and the answer's";
}

TEST_F(ManipulatorRegistry, oneWithGapsInItsTableIsPassedOverAndTheOthersAreListed) {
    ManipulatorPluginSuite table = *loadManipulatorSuite("Move");
    table.getTags = nullptr;
    const VlPluginRecord gaps = {VL_MANIPULATOR_PLUGIN_TYPE, "Gaps",
                                 VL_MANIPULATOR_PLUGIN_API_VERSION, &table};
    ASSERT_TRUE(VlPluginSystem::registerPlugin(gaps));
    EXPECT_FALSE(getRegisteredManipulatorsInfo().getChildByName("Gaps").isValid());
    EXPECT_TRUE(getRegisteredManipulatorsInfo().getChildByName("Aim").isValid());
    VlPluginSystem::unregisterPlugin(gaps.typeName, gaps.name, gaps.apiVersion);
}

// ---- Loading

TEST_F(ManipulatorRegistry, anUnknownManipulatorIsAnErrorThatNamesIt) {
    try {
        static_cast<void>(loadManipulatorSuite("Nobody"));
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Couldn't load Manipulator plugin type 'Nobody'.");
    }
}

TEST_F(ManipulatorRegistry, aManipulatorWithoutATableIsNoError) {
    EXPECT_EQ(loadManipulatorSuite("WithoutTable"), nullptr);
    EXPECT_NE(loadManipulatorSuite("Move"), nullptr);
}

TEST_F(ManipulatorRegistry, aListedManipulatorThatHasGoneMeanwhileFailsTheWholeQuestion) {
    move.onGetTags = [] {
        VlPluginSystem::unregisterPlugin(VL_MANIPULATOR_PLUGIN_TYPE, "Aim",
                                         VL_MANIPULATOR_PLUGIN_API_VERSION);
    };
    try {
        static_cast<void>(getRegisteredManipulatorsInfo());
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Couldn't load Manipulator plugin type 'Aim'.");
    }
}

TEST_F(ManipulatorRegistry, exceptionsOfTheEntriesPassThrough) {
    move.onGetTags = [] { throw std::out_of_range("tags"); };
    EXPECT_THROW(static_cast<void>(getRegisteredManipulatorsInfo()), std::out_of_range);
    populate({{"/root/a", location("polymesh")}});
    EXPECT_THROW(compatible({"/root/a"}), std::out_of_range);
    move.onMatches = [](const GroupAttribute&) -> int { throw 42; };
    EXPECT_THROW(compatible({"/root/a"}), int);
}

// ---- What fits a selection

TEST_F(ManipulatorRegistry, oneMatchingLocationOfTwoIsEnough) {
    populate({{"/root/a", location("light")}, {"/root/b", location("polymesh")}});
    EXPECT_EQ(textOf(compatible({"/root/a", "/root/b"})),
              "{Move={label=\"Move\"} Aim={label=\"Aim\" rank=2}}");
    EXPECT_EQ(textOf(compatible({"/root/b"})), "{Move={label=\"Move\"}}");
}

TEST_F(ManipulatorRegistry, theWalkStopsAtTheFirstMatchOfEachPlugin) {
    populate({{"/root/a", location("light")},
              {"/root/b", location("polymesh")},
              {"/root/c", location("polymesh")}});
    compatible({"/root/a", "/root/b", "/root/c"});
    EXPECT_THAT(log.take(),
                ElementsAre("Move matches {type=\"light\"}", "Move matches {type=\"polymesh\"}",
                            "Move getTags", "Aim matches {type=\"light\"}", "Aim getTags"));
}

TEST_F(ManipulatorRegistry, aPluginThatMatchesNothingIsNotAskedForItsTags) {
    populate({{"/root/a", location("camera")}});
    EXPECT_EQ(textOf(compatible({"/root/a"})), "{}");
    EXPECT_THAT(log.take("getTags"), IsEmpty());
}

TEST_F(ManipulatorRegistry, anyAnswerButZeroIsAMatch) {
    populate({{"/root/a", location("x")}});
    for (const int answer : {1, -1, 256}) {
        move.onMatches = [answer](const GroupAttribute&) { return answer; };
        EXPECT_EQ(textOf(compatible({"/root/a"})), "{Move={label=\"Move\"}}") << answer;
    }
}

TEST_F(ManipulatorRegistry, theOrderIsThePluginsAndNotTheLocations) {
    populate({{"/root/a", location("light")}, {"/root/b", location("polymesh")}});
    EXPECT_EQ(compatible({"/root/a", "/root/b"}), compatible({"/root/b", "/root/a"}));
    EXPECT_EQ(compatible({"/root/a", "/root/b"}).getChildName(0), "Move");
}

TEST_F(ManipulatorRegistry, anEmptySelectionFitsNothing) {
    move.onMatches = [](const GroupAttribute&) { return 1; };
    EXPECT_EQ(textOf(compatible({})), "{}");
    EXPECT_EQ(textOf(delegate->getCompatibleManipulatorsInfo(nullptr, 0)), "{}");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ManipulatorRegistry, aLocationWithoutAttributesIsAskedAbout) {
    populate({{"/root/a", GroupAttribute::Empty()}});
    compatible({"/root/a"});
    EXPECT_THAT(log.take(), ElementsAre("Move matches {}", "Aim matches {}"));
}

TEST_F(ManipulatorRegistry, aLocationThatPluginsWereNotToldOfMatchesNothing) {
    move.onMatches = [](const GroupAttribute&) { return 1; };
    EXPECT_EQ(textOf(compatible({"/root/unknown", ""})), "{}");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ManipulatorRegistry, aPathThatStandsTwiceIsAskedAboutOnce) {
    populate({{"/root/a", location("camera")}});
    compatible({"/root/a", "/root/a"});
    EXPECT_THAT(log.take(),
                ElementsAre("Move matches {type=\"camera\"}", "Aim matches {type=\"camera\"}"));
}

TEST_F(ManipulatorRegistry, aDotInALocationsNameIsPartOfTheName) {
    populate({{"/root/a.b", location("polymesh")}, {"/root/..", location("light")}});
    EXPECT_EQ(textOf(compatible({"/root/a.b"})), "{Move={label=\"Move\"}}");
    EXPECT_EQ(textOf(compatible({"/root/.."})), "{Aim={label=\"Aim\" rank=2}}");
}

TEST_F(ManipulatorRegistry, liveValuesAreSeen) {
    populate({{"/root/a", location("camera")}});
    delegate->setManipulatedAttribute("/root/a", "type", StringAttribute("polymesh"), false);
    EXPECT_EQ(textOf(compatible({"/root/a"})), "{Move={label=\"Move\"}}");
}

TEST_F(ManipulatorRegistry, aListWithANullInItAnswersNull) {
    EXPECT_FALSE(compatible({"/root/a", nullptr}).isValid());
    EXPECT_FALSE(delegate->getCompatibleManipulatorsInfo(nullptr, 1).isValid());
    EXPECT_THAT(log.take(), IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
