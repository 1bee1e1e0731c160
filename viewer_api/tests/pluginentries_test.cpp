#include "pluginentries.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>

namespace ViewerAPI {
namespace {

/// A table with something in every entry.
template <class Suite>
Suite makeComplete() {
    std::array<void (*)(), sizeof(Suite) / sizeof(void (*)())> entries;
    entries.fill([] {});
    return std::bit_cast<Suite>(entries);
}

/// What is missing from a table in which these entries alone are null.
template <class Suite, class... Entries>
std::string missingWithout(PluginKind kind, Entries Suite::*... entries) {
    Suite suite = makeComplete<Suite>();
    ((suite.*entries = nullptr), ...);
    return getMissingEntries(kind, &suite);
}

TEST(PluginEntries, aCompleteTableLacksNothing) {
    EXPECT_EQ(missingWithout<ViewportPluginSuite>(PluginKind::Viewport), "");
}

TEST(PluginEntries, allThatIsMissingIsNamedInTheOrderOfTheTable) {
    EXPECT_EQ(missingWithout(PluginKind::Viewport, &ViewportPluginSuite::draw,
                             &ViewportPluginSuite::create),
              "create, draw");
}

TEST(PluginEntries, whatIsNeverCalledMayBeNull) {
    using Camera = ViewportCameraPluginSuite;
    EXPECT_EQ(missingWithout(PluginKind::ViewportCamera, &Camera::reserved6, &Camera::reserved7,
                             &Camera::reserved10, &Camera::reserved11, &Camera::reserved12,
                             &Camera::reserved13, &Camera::reserved14),
              "");
    using Handle = ManipulatorHandlePluginSuite;
    EXPECT_EQ(missingWithout(PluginKind::ManipulatorHandle, &Handle::reserved5, &Handle::reserved6),
              "");
}

TEST(PluginEntries, eachKindsTableHasItsOwn) {
    EXPECT_EQ(missingWithout(PluginKind::ViewerDelegate, &ViewerDelegatePluginSuite::locationEvent,
                             &ViewerDelegatePluginSuite::sourceLocationEvent,
                             &ViewerDelegatePluginSuite::cleanup,
                             &ViewerDelegatePluginSuite::computeExtent),
              "locationEvent, sourceLocationEvent, cleanup, computeExtent");
    EXPECT_EQ(missingWithout(PluginKind::ViewerDelegateComponent,
                             &ViewerDelegateComponentPluginSuite::destroy,
                             &ViewerDelegateComponentPluginSuite::isProcessing,
                             &ViewerDelegateComponentPluginSuite::computeExtent),
              "destroy, isProcessing, computeExtent");
    EXPECT_EQ(missingWithout(PluginKind::Viewport, &ViewportPluginSuite::setup,
                             &ViewportPluginSuite::freeze, &ViewportPluginSuite::customPick),
              "setup, freeze, customPick");
    EXPECT_EQ(missingWithout(PluginKind::ViewportLayer, &ViewportLayerPluginSuite::freeze,
                             &ViewportLayerPluginSuite::setOption,
                             &ViewportLayerPluginSuite::usesPickingCache,
                             &ViewportLayerPluginSuite::customPick),
              "freeze, setOption, usesPickingCache, customPick");
    EXPECT_EQ(
        missingWithout(PluginKind::ViewportCamera, &ViewportCameraPluginSuite::getCameraTypeID,
                       &ViewportCameraPluginSuite::setup, &ViewportCameraPluginSuite::asAttribute,
                       &ViewportCameraPluginSuite::setDirty),
        "getCameraTypeID, setup, asAttribute, setDirty");
    EXPECT_EQ(missingWithout(PluginKind::Manipulator, &ManipulatorPluginSuite::matches,
                             &ManipulatorPluginSuite::getTags, &ManipulatorPluginSuite::getOption),
              "matches, getTags, getOption");
    EXPECT_EQ(missingWithout(PluginKind::ManipulatorHandle, &ManipulatorHandlePluginSuite::event,
                             &ManipulatorHandlePluginSuite::notify),
              "event, notify");
}

} // namespace
} // namespace ViewerAPI
