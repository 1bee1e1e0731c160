#pragma once

#include "locationtree.h"
#include "support/attributetext.h"
#include "support/treetext.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace ViewerAPI::test {

inline constexpr WorkingSetState kNoData{};
inline constexpr WorkingSetState kIncluded{true, true, false};
inline constexpr WorkingSetState kIncludedLeaf{true, true, true};
inline constexpr WorkingSetState kExcluded{true, false, false};

/// What the first record of a location names, if it has children to show or not.
inline const std::string kNewOpen = " attributesChanged hiddenChanged leafChanged";
inline const std::string kNewClosed = " leaf attributesChanged hiddenChanged leafChanged";

class LocationTreeTest : public testing::Test {
protected:
    void cook(const char* path,
              VlAttribute::GroupAttribute attributes = VlAttribute::GroupAttribute::Empty()) {
        tree.cook(path, std::move(attributes), kNoData, false, false);
    }
    void cookLeaf(const char* path) {
        tree.cook(path, VlAttribute::GroupAttribute::Empty(), kNoData, false, true);
    }
    void cookWith(const char* path, const WorkingSetState& state) {
        tree.cook(path, VlAttribute::GroupAttribute::Empty(), state, false, false);
    }
    void cookProxy(const char* path,
                   VlAttribute::GroupAttribute attributes = VlAttribute::GroupAttribute::Empty()) {
        tree.cook(path, std::move(attributes), kNoData, true, false);
    }
    void hide(const char* path) { tree.hideLocations(std::array{path}); }
    void unhide(const char* path) { tree.unhideLocations(std::array{path}); }
    Lines collect() { return collectLines(tree); }

    /// "/root", open, with "/root/a" and "/root/a/b", all known to the plug-ins.
    void showThree() {
        tree.openLocation("/root");
        tree.openLocation("/root/a");
        cook("/root");
        cook("/root/a");
        cookLeaf("/root/a/b");
        ASSERT_EQ(collect(),
                  (Lines{"/root" + kNewOpen, "/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
    }
    /// The same three in working-set mode.
    void showThreeOfWorkingSet() {
        tree.setMode(true);
        cookWith("/root", kIncluded);
        cookWith("/root/a", kIncluded);
        cookWith("/root/a/b", kIncluded);
        ASSERT_EQ(collect(),
                  (Lines{"/root" + kNewOpen, "/root/a" + kNewOpen, "/root/a/b" + kNewOpen}));
    }

    LocationTree tree;
};

} // namespace ViewerAPI::test
