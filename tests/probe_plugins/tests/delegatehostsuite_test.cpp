// The delegate's host suite as a plug-in meets it: both versions, fetched by a library that the
// plug-in manager loaded, entry by entry.

#include "delegatehostsuitetest.h"

#include <array>
#include <initializer_list>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

/// The entries in their order, which is the tables'.
constexpr std::array<const char*, kNumberOfDelegateHostEntries> kEntries{
    "setViewOp",
    "getAttributes",
    "getLocalXform",
    "getWorldXform",
    "getParentXform",
    "getPartialXform",
    "openLocations",
    "closeLocations",
    "pinLocations",
    "unpinLocations",
    "activateSourceLocations",
    "deactivateSourceLocations",
    "setWorkingSetVisibilityEnabled",
    "getWorkingSetVisibilityEnabled",
    "setVisibilityWorkingSet",
    "selectLocation",
    "selectLocations",
    "getSelectedLocations",
    "getCompatibleManipulatorsInfo",
    "callPythonCallback",
    "addComponent",
    "getComponent",
    "getComponentByIndex",
    "removeComponent",
    "removeComponentByIndex",
    "getNumberOfComponents",
    "getComponentName",
    "addViewport",
    "getViewport",
    "getViewportByIndex",
    "removeViewport",
    "removeViewportByIndex",
    "getNumberOfViewports",
    "getViewportName",
    "setManipulatedAttribute",
    "openManipulationGroup",
    "closeManipulationGroup",
    "setBoundingBoxesEnabled",
    "setProxyGeometryEnabled",
    "getDescendantLocations",
    "getLiveAttributes",
    "getCookedAttributes",
    "isProcessing",
    "computeMergedExtent",
    "insertComponent",
    "getComponentIndex",
    "hideLocations",
    "unhideLocations",
    "unhideAllLocations",
    "getHiddenLocations",
};

/// A call as `callHost` takes it, its result, and what came of it: what the scene runtime, the
/// application (bridge and channels) and the plug-ins were told, in this order.
struct Step {
    std::string call;
    std::string result;
    std::vector<std::string> effects = {};
};

/// Calls that follow one another on one delegate. It views "/root" > "a" > "b", all of them open,
/// and has a component "c" and a viewport "v".
struct Subject {
    const char* name;
    std::vector<Step> steps;

    friend void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.name; }
};

/// The attributes of "/root/a" and "/root/a/b", without what stands before the transform.
const std::string kRestOfA = "xform={before={translate=(10 0 0)} g={translate=(100 0 0)} "
                             "after={translate=(1000 0 0)}} bound=(0 1 0 1 0 1)}";
const std::string kA = "{name=\"a\" " + kRestOfA;
const std::string kB = "{xform={g={reset=1 translate=(5 0 0)}}}";

/// What the plug-ins hear when "/root/a" gets other attributes.
const std::vector<std::string> kNewsOfA{
    "ProbeComponent locationEvent /root/a attributesChanged handled=0",
    "ProbeDelegate locationEvent /root/a attributesChanged handled=0"};

std::vector<std::string> joined(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> lines;
    for (const auto& part : parts) {
        lines.insert(lines.end(), part.begin(), part.end());
    }
    return lines;
}

std::vector<std::string> viewing(const std::string& primary, const std::string& others) {
    return {"setClientOp client1 " + primary, "setClientOp client2 " + others,
            "setClientOp client3 " + others, "setClientOp client4 " + others};
}

const std::vector<Subject> kSubjects{
    {"views",
     {
         {"setViewOp {op}", "2",
          joined({{"getOpFromOpId 4", "setAllOpen client1 0", "createTransaction"},
                  viewing("op4", "op4"),
                  {"commit 2", "bridge updateOp 4"}})},
         // Viewed already, but the application hears of it.
         {"setViewOp {op}", "-1", {"bridge updateOp 4"}},
         {"setViewOp -7", "3",
          joined({{"getOpFromOpId -7", "setAllOpen client1 0", "createTransaction"},
                  viewing("null", "null"),
                  {"commit 3", "bridge updateOp -7"}})},
     }},
    {"attributes",
     {
         {"getAttributes /root/a 0", kA},
         {"getAttributes /root/a 1", "null"}, // not a source
         {"getAttributes /root/a 2", "null"}, // nothing looks through it
         {"getAttributes /root/a -1", "null"},
         {"getAttributes /root/a 77", "null"},
         {"getAttributes /root/unknown 0", "null"},
         {"getAttributes \"\" 0", "null"},
         {"getAttributes (null) 0", "null"},
         {"getCookedAttributes /root/a 0", kA},
         {"getCookedAttributes /root/a 77", "null"},
         {"getCookedAttributes /root/unknown 0", "null"},
         {"getCookedAttributes (null) 0", "null"},
         {"getLiveAttributes /root/a 0", "null"}, // nothing is manipulated
         {"getLiveAttributes /root/a 1", "null"},
         {"getLiveAttributes /root/a 77", "null"},
         {"getLiveAttributes (null) 0", "null"},
         {"getDescendantLocations /root", "(\"/root/a\" \"/root/a/b\")"},
         {"getDescendantLocations /root/a/b", "()"},
         {"getDescendantLocations /root/unknown", "null"},
         {"getDescendantLocations (null)", "null"},
     }},
    {"transforms",
     {
         {"getLocalXform /root/a 0", translation("1110") + " absolute=0"},
         {"getLocalXform /root/a/b 0", translation("5") + " absolute=1"},
         {"getLocalXform /root 0", "null absolute=0"}, // has none
         {"getLocalXform /root/unknown 0", "null absolute=0"},
         {"getLocalXform (null) 0", "null absolute=0"},
         {"getLocalXform /root/a 77", "null absolute=0"},
         {"getWorldXform /root/a 0", translation("1110")},
         {"getWorldXform /root/a/b 0", translation("5")},
         {"getWorldXform /root/unknown 0", "null"},
         {"getWorldXform (null) 0", "null"},
         {"getWorldXform /root/a -1", "null"},
         {"getParentXform /root/a/b 0", translation("1110")},
         {"getParentXform /root 0", translation("0")},
         {"getParentXform /root/unknown 0", "null"},
         {"getParentXform (null) 0", "null"},
         {"getParentXform /root/a 77", "null"},
         // The flags are in a test of their own.
         {"getPartialXform /root/a g translate 0 0 1 1 0", translation("10")},
         {"getPartialXform /root/a g (null) 1 0 1 1 0", translation("110")}, // begins every name
         {"getPartialXform /root/a (null) translate 1 0 1 1 0", "null"},
         {"getPartialXform (null) g translate 1 0 1 1 0", "null"},
         {"getPartialXform /root/a nowhere translate 1 0 1 1 0", "null"},
         {"getPartialXform /root/a g nothing 1 0 1 1 0", "null"},
         {"getPartialXform /root/unknown g translate 1 0 1 1 0", "null"},
         {"getPartialXform /root/a g translate 1 77 1 1 0", "null"},
     }},
    {"openness",
     {
         {"openLocations /root/a /root/a/b",
          "done",
          {"setLocationsOpen client1 [/root/a /root/a/b]"}},
         {"openLocations /root/a (null)", "done"},
         {"openLocations (nolist) 0", "done", {"setLocationsOpen client1 []"}},
         {"openLocations (nolist) 2", "done"},
         {"closeLocations /root/a /root/a/b",
          "done",
          {"setLocationsClosed client1 [/root/a /root/a/b]"}},
         {"closeLocations /root/a (null)", "done"},
         {"closeLocations (nolist) 0", "done", {"setLocationsClosed client1 []"}},
         {"closeLocations (nolist) 2", "done"},
         {"pinLocations /root/a /root/a/b",
          "done",
          {"setLocationsActive client2 [/root/a /root/a/b]"}},
         {"pinLocations /root/a (null)", "done"},
         {"pinLocations (nolist) 0", "done", {"setLocationsActive client2 []"}},
         {"pinLocations (nolist) 2", "done"},
         {"unpinLocations /root/a /root/a/b",
          "done",
          {"setLocationsInactive client2 [/root/a /root/a/b]"}},
         {"unpinLocations /root/a (null)", "done"},
         {"unpinLocations (nolist) 0", "done", {"setLocationsInactive client2 []"}},
         {"unpinLocations (nolist) 2", "done"},
         {"activateSourceLocations /root/a /root/a/b",
          "done",
          {"setLocationsActive client3 [/root/a /root/a/b]"}},
         {"activateSourceLocations /root/a (null)", "done"},
         {"activateSourceLocations (nolist) 0", "done", {"setLocationsActive client3 []"}},
         {"activateSourceLocations (nolist) 2", "done"},
         {"deactivateSourceLocations /root/a /root/a/b",
          "done",
          {"setLocationsInactive client3 [/root/a /root/a/b]"}},
         {"deactivateSourceLocations /root/a (null)", "done"},
         {"deactivateSourceLocations (nolist) 0", "done", {"setLocationsInactive client3 []"}},
         {"deactivateSourceLocations (nolist) 2", "done"},
     }},
    {"workingSets",
     {
         {"getWorkingSetVisibilityEnabled", "0"},
         {"setWorkingSetVisibilityEnabled 2", "done",
          joined({{"createTransaction", "setOpArgs op2 WorkingSet.MultipleOnePassResolve {}",
                   "setOpInputs op2 [op1]"},
                  viewing("op3", "op1"),
                  {"commit 2", "setAllOpen client1 1"}})},
         {"getWorkingSetVisibilityEnabled", "1"},
         {"setWorkingSetVisibilityEnabled 1", "done"}, // no change
         // The plug-in's own reference has gone when the host uses what it kept.
         {"setVisibilityWorkingSet group:name=string:s",
          "done",
          {"createTransaction",
           "setOpArgs op2 WorkingSet.MultipleOnePassResolve {workingSetsInfo={viewerVisibility="
           "{name=\"s\" polish=1}} outputGroupName=\"__viewerWorkingSets\"}",
           "commit 3"}},
         {"setVisibilityWorkingSet null",
          "done",
          {"createTransaction", "setOpArgs op2 WorkingSet.MultipleOnePassResolve {}", "commit 4"}},
         {"setVisibilityWorkingSet int:1", "done"}, // no group is none, as before
         {"setWorkingSetVisibilityEnabled 0", "done",
          joined({{"setAllOpen client1 0", "createTransaction"},
                  viewing("op1", "op1"),
                  {"commit 5", "setLocationsActive client2 []"}})},
         {"getWorkingSetVisibilityEnabled", "0"},
     }},
    {"selection",
     {
         {"selectLocation /root/a", "done", {"channel __SELECT_LOCATIONS \"/root/a\""}},
         {"selectLocation (null)", "done"},
         {"selectLocations /root/a /root/a/b",
          "done",
          {"channel __SELECT_LOCATIONS (\"/root/a\" \"/root/a/b\")"}},
         {"selectLocations (nolist) 0", "done", {"channel __SELECT_LOCATIONS ()"}},
         {"selectLocations /root/a (null)", "done"},
         {"selectLocations (nolist) 2", "done"},
         {"getSelectedLocations", "\"/root/a\"", {"channel __GET_SELECTED_LOCATIONS null"}},
     }},
    {"channels",
     {
         {"callPythonCallback echo int:1", "1", {"channel echo 1"}},
         {"callPythonCallback echo null", "null", {"channel echo null"}},
         {"callPythonCallback silent int:1", "null", {"channel silent 1"}},
         {"callPythonCallback \"\" int:1", "null", {"channel  1"}},
         {"callPythonCallback (null) int:1", "null"},
     }},
    {"manipulators",
     {
         // Asked from the attributes that it was told of, up to the first match.
         {"getCompatibleManipulatorsInfo /root/a /root/a/b",
          "{ProbeManipulator={label=\"Probe it\" rank=2}}",
          {"ProbeManipulator matches " + kA, "ProbeManipulator getTags"}},
         {"getCompatibleManipulatorsInfo /root/a/b /root/a",
          "{}",
          {"ProbeManipulator matches " + kB, "ProbeManipulator matches " + kA}},
         {"getCompatibleManipulatorsInfo /root/unknown", "{}"},
         {"getCompatibleManipulatorsInfo (nolist) 0", "{}"},
         {"getCompatibleManipulatorsInfo (nolist) 2", "null"},
         {"getCompatibleManipulatorsInfo /root/a (null)", "null"},
     }},
    {"components",
     {
         {"getNumberOfComponents", "1"},
         {"addComponent ProbeComponent d",
          "found",
          {"ProbeComponent create", "ProbeComponent setup"}},
         {"insertComponent ProbeComponent e 0",
          "found",
          {"ProbeComponent create", "ProbeComponent setup"}},
         {"insertComponent ProbeComponent f 4", "null"}, // beyond the end
         {"insertComponent ProbeComponent f -1", "null"},
         {"insertComponent ProbeComponent last 3",
          "found",
          {"ProbeComponent create", "ProbeComponent setup"}},
         {"getNumberOfComponents", "4"},
         {"getComponentName 0", "e"},
         {"getComponentName 4", ""},
         {"getComponentName -1", ""},
         {"getComponentIndex c", "1"},
         {"getComponentIndex unknown", "-1"},
         {"getComponentIndex (null)", "-1"},
         {"getComponent c", "found"},
         {"getComponent unknown", "null"},
         {"getComponent (null)", "null"},
         {"getComponentByIndex 0", "found"},
         {"getComponentByIndex 4", "null"},
         {"getComponentByIndex -1", "null"},
         {"removeComponent e", "done", {"ProbeComponent cleanup", "ProbeComponent destroy"}},
         {"removeComponent unknown", "done"},
         {"removeComponent (null)", "done"},
         {"removeComponentByIndex 0", "done", {"ProbeComponent cleanup", "ProbeComponent destroy"}},
         {"removeComponentByIndex 2", "done"},
         {"removeComponentByIndex -1", "done"},
         {"getNumberOfComponents", "2"},
         {"addComponent ProbeComponent (null)",
          "found",
          {"ProbeComponent create", "ProbeComponent setup"}},
         {"getComponentIndex \"\"", "2"},
     }},
    {"viewports",
     {
         {"getNumberOfViewports", "1"},
         {"addViewport {viewport} w", "done", {"ProbeViewport create"}},
         {"addViewport 0 nothing", "done"},
         {"getNumberOfViewports", "2"},
         {"getViewportName 1", "w"},
         {"getViewportName 2", ""},
         {"getViewportName -1", ""},
         {"getViewport w", "found"},
         {"getViewport unknown", "null"},
         {"getViewport (null)", "null"},
         {"getViewportByIndex 1", "found"},
         {"getViewportByIndex 2", "null"},
         {"getViewportByIndex -1", "null"},
         {"removeViewport v", "done", {"ProbeViewport destroy"}},
         {"removeViewport unknown", "done"},
         {"removeViewport (null)", "done"},
         {"removeViewportByIndex 1", "done"},
         {"removeViewportByIndex -1", "done"},
         {"getViewportName 0", "w"},
         // The name stands for the new one from now on.
         {"addViewport {viewport} w", "done", {"ProbeViewport create"}},
         {"getViewportName 0", ""},
         {"getViewportName 1", "w"},
         {"removeViewportByIndex 0", "done", {"ProbeViewport destroy"}},
         {"getNumberOfViewports", "1"},
         {"addViewport {viewport} (null)", "done", {"ProbeViewport create"}},
         {"getViewport \"\"", "found"},
     }},
    {"liveValues",
     {
         {"setManipulatedAttribute /root/a name 0 string:live", "1",
          joined({{"bridge setValue /root/a name \"live\""}, kNewsOfA})},
         {"getLiveAttributes /root/a 0", "{name=\"live\"}"},
         {"getLiveAttributes /root/a 1", "null"},
         {"getAttributes /root/a 0", "{name=\"live\" " + kRestOfA},
         {"getCookedAttributes /root/a 0", kA},
         {"setManipulatedAttribute /root/a name 1 null", "0"},
         {"setManipulatedAttribute /root/unknown name 1 int:1",
          "0",
          {"bridge setValue /root/unknown name 1 final",
           "bridge cleanupLiveAttributes /root/unknown"}},
         {"setManipulatedAttribute (null) name 1 int:1",
          "0",
          {"bridge setValue  name 1 final", "bridge cleanupLiveAttributes "}},
         // An open group holds back what plug-ins hear.
         {"openManipulationGroup /root/a", "done", {"bridge openManipulationGroup /root/a"}},
         {"setManipulatedAttribute /root/a name 5 string:last",
          "1",
          {"bridge setValue /root/a name \"last\" final"}},
         {"closeManipulationGroup /root/a", "done",
          joined({{"bridge closeManipulationGroup /root/a"}, kNewsOfA})},
         {"openManipulationGroup (null)", "done", {"bridge openManipulationGroup "}},
         {"closeManipulationGroup (null)", "done", {"bridge closeManipulationGroup "}},
         {"closeManipulationGroup /root/never",
          "done",
          {"bridge closeManipulationGroup /root/never"}},
     }},
    {"generatedLocations",
     {
         // Any value but 0 is on, and the application hears of every call.
         {"setBoundingBoxesEnabled 2", "done", {"channel __BOUNDING_BOXES_CHANGED 1"}},
         {"setBoundingBoxesEnabled 1", "done", {"channel __BOUNDING_BOXES_CHANGED 1"}},
         {"setBoundingBoxesEnabled 0", "done", {"channel __BOUNDING_BOXES_CHANGED 0"}},
         {"setProxyGeometryEnabled 255", "done", {"channel __PROXY_GEOMETRY_CHANGED 1"}},
         {"setProxyGeometryEnabled 0", "done", {"channel __PROXY_GEOMETRY_CHANGED 0"}},
     }},
    {"extents",
     {
         {"computeMergedExtent \"\" /root/a", "(1110 1111 0 1 0 1)"},
         {"computeMergedExtent (null) /root/a", "(1110 1111 0 1 0 1)"},
         {"computeMergedExtent \"\" (null) /root/a", "(1110 1111 0 1 0 1)"},
         {"computeMergedExtent /root/a /root/a", "null"},
         {"computeMergedExtent \"\" /root/unknown", "null"},
         {"computeMergedExtent \"\" (null)", "null"},
         {"computeMergedExtent \"\" (nolist) 0", "null"},
         {"computeMergedExtent \"\" (nolist) 2", "null"},
         {"isProcessing", "0", {"ProbeComponent isProcessing", "ProbeDelegate isProcessing"}},
     }},
    {"hiding",
     {
         {"getHiddenLocations", "()"},
         {"hideLocations /root/a /root/a/b", "done"},
         {"hideLocations /root (null)", "done"},
         {"hideLocations (nolist) 0", "done"},
         {"hideLocations (nolist) 2", "done"},
         {"getHiddenLocations", "(\"/root/a\" \"/root/a/b\")"},
         {"unhideLocations /root/a /root/unknown", "done"},
         {"unhideLocations /root/a/b (null)", "done"},
         {"unhideLocations (nolist) 0", "done"},
         {"unhideLocations (nolist) 1", "done"},
         {"getHiddenLocations", "\"/root/a/b\""},
         {"unhideAllLocations", "done"},
         {"getHiddenLocations", "()"},
     }},
};

class DelegateHostSuite : public DelegateHostSuiteTest,
                          public testing::WithParamInterface<std::tuple<Version, Subject>> {};

TEST_P(DelegateHostSuite, answersAndDoesAsTold) {
    const auto& [version, subject] = GetParam();
    for (const Step& step : subject.steps) {
        SCOPED_TRACE(step.call);
        EXPECT_EQ(call(version, step.call), step.result);
        EXPECT_EQ(takeEffects(), step.effects);
    }
}

INSTANTIATE_TEST_SUITE_P(Entries, DelegateHostSuite,
                         testing::Combine(testing::Values("delegate2", "delegate"),
                                          testing::ValuesIn(kSubjects)),
                         [](const auto& row) {
                             return std::string(std::get<1>(row.param).name) + "_" +
                                    std::get<0>(row.param);
                         });

TEST(DelegateHostSuiteSubjects, callEveryEntry) {
    std::set<std::string> called;
    for (const Subject& subject : kSubjects) {
        for (const Step& step : subject.steps) {
            called.insert(step.call.substr(0, step.call.find(' ')));
        }
    }
    EXPECT_EQ(called, std::set<std::string>(kEntries.begin(), kEntries.end()));
}

} // namespace
