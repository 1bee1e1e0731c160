// What a manipulator may edit, where it stands, and how it reads and sets values.

#include "support/manipulatortest.h"

#include <ImathMatrix.h>
#include <ImathVec.h>

#include <algorithm>
#include <cmath>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr const char* kIdentity = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)";

class ManipulatorEditing : public ManipulatorTest {};

// ---- What may be edited

struct EditableRow {
    const char* name;
    std::vector<std::pair<std::string, GroupAttribute>> locations;
    bool isEditable;
    std::vector<std::string> asked;
};

class ManipulatorEditable : public ManipulatorTest,
                            public testing::WithParamInterface<EditableRow> {
public:
    using ManipulatorTest::exclusiveTo;
    using ManipulatorTest::fits;
    using ManipulatorTest::fitsWith;
};

TEST_P(ManipulatorEditable, asksForTheNodesUntilOneMayNotBeEdited) {
    bridge.lockedNodes = {"locked", ""};
    populate(GetParam().locations);
    std::vector<std::string> paths;
    for (const auto& [path, attributes] : GetParam().locations) {
        paths.push_back(path);
    }
    const VlManipulatorHostStruct& host = *activate(paths);
    EXPECT_EQ(host.editable, GetParam().isEditable);
    EXPECT_EQ(log.take("isNodeEditable"), GetParam().asked);
}

const std::vector<EditableRow>& editableRows() {
    using Test = ManipulatorEditable;
    static const GroupAttribute kBoth =
        GroupBuilder()
            .update(Test::exclusiveTo("ofXform"))
            .set("attributeEditor.exclusiveTo", StringAttribute("ofAll"))
            .build();
    static const GroupAttribute kOther =
        Test::fitsWith("attributeEditor.exclusiveTo", StringAttribute("ofAll"));
    static const GroupAttribute kNoText =
        GroupBuilder()
            .update(Test::fitsWith("attributeEditor.xform.exclusiveTo", IntAttribute(1)))
            .set("attributeEditor.exclusiveTo", StringAttribute("ofAll"))
            .build();
    static const GroupAttribute kEmptyText =
        Test::fitsWith("attributeEditor.exclusiveTo", StringAttribute(std::vector<std::string>()));
    static const GroupAttribute kNode = Test::exclusiveTo("n");
    static const GroupAttribute kLocked = Test::exclusiveTo("locked");
    static const std::vector<EditableRow> kRows = {
        {"noLocations", {}, true, {}},
        {"xformExclusiveTo", {{"/root/a", kNode}}, true, {"bridge isNodeEditable n"}},
        {"xformGoesFirst", {{"/root/a", kBoth}}, true, {"bridge isNodeEditable ofXform"}},
        {"exclusiveToWithoutXform", {{"/root/a", kOther}}, true, {"bridge isNodeEditable ofAll"}},
        {"xformThatIsNoText", {{"/root/a", kNoText}}, true, {"bridge isNodeEditable ofAll"}},
        {"noValueIsTheEmptyName", {{"/root/a", kEmptyText}}, false, {"bridge isNodeEditable "}},
        {"noAttribute", {{"/root/a", Test::fits()}}, false, {}},
        {"editorThatIsNoGroup",
         {{"/root/a", Test::fitsWith("attributeEditor", IntAttribute(1))}},
         false,
         {}},
        {"lockedNode", {{"/root/a", kLocked}}, false, {"bridge isNodeEditable locked"}},
        {"allOfTwo",
         {{"/root/a", kNode}, {"/root/b", kOther}},
         true,
         {"bridge isNodeEditable n", "bridge isNodeEditable ofAll"}},
        {"stopsAtALockedNode",
         {{"/root/a", kNode}, {"/root/b", kLocked}, {"/root/c", kNode}},
         false,
         {"bridge isNodeEditable n", "bridge isNodeEditable locked"}},
        {"stopsAtALocationWithout", {{"/root/a", Test::fits()}, {"/root/b", kNode}}, false, {}},
    };
    return kRows;
}

INSTANTIATE_TEST_SUITE_P(Rows, ManipulatorEditable, testing::ValuesIn(editableRows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ManipulatorEditing, whatMayBeEditedIsAskedAnewWhenAListedLocationChanges) {
    populate({{"/root/a", exclusiveTo("n")}, {"/root/b", exclusiveTo("locked")}});
    bridge.lockedNodes = {"locked"};
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    EXPECT_FALSE(host.editable);
    remove("/root/b");
    EXPECT_TRUE(host.editable);
    cook("/root/a", exclusiveTo("locked"));
    EXPECT_FALSE(host.editable);
    bridge.lockedNodes.clear();
    EXPECT_FALSE(host.editable) << "nothing tells";
    cook("/root/a", exclusiveTo("locked"));
    EXPECT_TRUE(host.editable);
}

TEST_F(ManipulatorEditing, aLocationThatHasJustComeMayBeEdited) {
    populate({});
    const VlManipulatorHostStruct& host = *activate({"/root/a"});
    cook("/root/a", exclusiveTo("n"));
    EXPECT_EQ(pathsOf(host), "\"/root/a\"");
    EXPECT_TRUE(host.editable);
}

TEST_F(ManipulatorEditing, anEmptyListThatIsNotNullStaysEditable) {
    populate({{"/root/a", fits()}});
    const VlManipulatorHostStruct& host = *activate({"/root/a"});
    EXPECT_FALSE(host.editable);
    remove("/root/a");
    EXPECT_TRUE(host.editable);
}

TEST_F(ManipulatorEditing, isNotEditableWhileItIsMade) {
    bool editable = true;
    move.onCall = [&](std::string_view entry) {
        if (entry == "create") {
            auto& host = *static_cast<VlManipulatorHostStruct*>(move.host);
            host.refreshEditable();
            editable = host.editable;
        }
    };
    EXPECT_TRUE(activate({})->editable);
    EXPECT_FALSE(editable) << "no list yet";
}

// ---- Transforms

TEST_F(ManipulatorEditing, itsXformIsTheIdentityAtFirst) {
    const VlManipulatorHostStruct& host = *activate({});
    EXPECT_EQ(textOf(host.getXform()), kIdentity);
    EXPECT_EQ(host.getXform().getTupleSize(), 4);
    EXPECT_EQ(host.xformMatrix, Imath::M44d());
}

TEST_F(ManipulatorEditing, itsXformIsWhatWasSet) {
    VlManipulatorHostStruct& host = *activate({});
    const DoubleAttribute xform({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}, 1);
    host.setXform(xform);
    EXPECT_EQ(host.getXform().getHandle(), xform.getHandle()) << "the attribute itself";
    for (int index = 0; index < 16; ++index) {
        EXPECT_EQ(host.xformMatrix[index / 4][index % 4], index + 1.0);
    }
    host.setXform(DoubleAttribute());
    EXPECT_FALSE(host.getXform().isValid());
    EXPECT_EQ(host.xformMatrix, Imath::M44d());
}

TEST_F(ManipulatorEditing, calculateXformIsATranslationToTheMeanOfTheLocations) {
    const GroupAttribute turned = fitsWith(
        "xform",
        toAttribute(
            {{"g", {{"translate", {2, 4, -6}}, {"rotate", {90, 0, 0, 1}}, {"scale", {3, 3, 3}}}}}));
    populate({{"/root/a", turned}, {"/root/a/b", at(1, 0, 0)}, {"/root/c", fits()}});
    EXPECT_EQ(textOf(activate({"/root/a"})->calculateXform()),
              "(1 0 0 0 0 1 0 0 0 0 1 0 2 4 -6 1)");
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/a/b", "/root/c"}, "Aim");
    // In the world "/root/a/b" stands 3 along its parent's turned x axis.
    const DoubleAttribute mean = host.calculateXform();
    Imath::M44d expected;
    expected.setTranslation(Imath::V3d(4, 11, -12) / 3.0);
    const auto values = mean.getNearestSample(0.0F);
    ASSERT_EQ(values.size(), 16U);
    for (std::size_t index = 0; index < 16; ++index) {
        const double wanted = expected.getValue()[index];
        EXPECT_NEAR(values[index], wanted, 1e-14 * std::max(1.0, std::abs(wanted))) << index;
    }
    EXPECT_EQ(mean.getTupleSize(), 4);
}

TEST_F(ManipulatorEditing, calculateXformLeavesOutWhatPluginsNoLongerKnow) {
    populate({{"/root/a", at(2, 0, 0)}, {"/root/b", at(4, 0, 0)}});
    const VlManipulatorHostStruct& host = *activate({"/root/a", "/root/b"});
    delegate->flushCaches();
    EXPECT_EQ(textOf(host.calculateXform()), kIdentity);
    cook("/root", named("root"));
    cook("/root/b", at(4, 0, 0));
    EXPECT_EQ(pathsOf(host), "(\"/root/a\" \"/root/b\")");
    EXPECT_EQ(textOf(host.calculateXform()), "(1 0 0 0 0 1 0 0 0 0 1 0 4 0 0 1)");
}

TEST_F(ManipulatorEditing, calculateXformWithoutLocationsIsTheIdentity) {
    VlManipulatorHostStruct& host = *activate({"/root/a"});
    host.setXform(DoubleAttribute({2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 5, 5, 5, 1}, 4));
    EXPECT_EQ(textOf(host.calculateXform()), kIdentity) << "whatever the transform is";
}

// ---- Values

TEST_F(ManipulatorEditing, getValueReadsAnyLocationByADottedName) {
    populate({{"/root/a", exclusiveTo("n")}});
    const VlManipulatorHostStruct& host = *activate({});
    EXPECT_EQ(textOf(host.getValue("/root/a", "fits")), "1");
    EXPECT_EQ(textOf(host.getValue("/root/a", "attributeEditor.xform.exclusiveTo")), "\"n\"");
    for (const char* name : {"fits.x", "nothing", ""}) {
        EXPECT_FALSE(host.getValue("/root/a", name).isValid()) << name;
    }
    EXPECT_FALSE(host.getValue("/root/unknown", "fits").isValid());
}

TEST_F(ManipulatorEditing, setValueSetsALiveValueThatGetValueReads) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({});
    log.take();
    EXPECT_TRUE(host.setValue("/root/a", "fits", IntAttribute(2), false));
    EXPECT_EQ(textOf(host.getValue("/root/a", "fits")), "2");
    EXPECT_EQ(log.take("setValue"), Lines{"bridge setValue /root/a fits 2"});
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    EXPECT_FALSE(host.setValue("/root/a", "fits", Attribute(), false)) << "no value";
    EXPECT_FALSE(host.setValue("/root/unknown", "fits", IntAttribute(2), false));
}

TEST_F(ManipulatorEditing, manipulationGroupsAreTheDelegates) {
    populate({{"/root/a", fits()}});
    VlManipulatorHostStruct& host = *activate({});
    log.take();
    host.openManipulationGroup("/root/a");
    EXPECT_TRUE(host.setValue("/root/a", "fits", IntAttribute(2), true));
    EXPECT_THAT(log.take(), ElementsAre("bridge openManipulationGroup /root/a",
                                        "bridge setValue /root/a fits 2 final"));
    host.closeManipulationGroup("/root/a");
    EXPECT_THAT(log.take(), ElementsAre("bridge closeManipulationGroup /root/a",
                                        "D locationEvent /root/a attributesChanged handled=0"));
}

} // namespace
} // namespace ViewerAPI::test
