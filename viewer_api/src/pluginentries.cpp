#include "pluginentries.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <span>

namespace ViewerAPI {
namespace {

using Entry = void (*)();
using Names = std::span<const char* const>;

/// Stands for an entry that is never called.
constexpr const char* kReserved = nullptr;

/// The names of a table's entries in the order of its slots.
template <class Suite>
using SlotNames = std::array<const char*, sizeof(Suite) / sizeof(Entry)>;

constexpr SlotNames<ViewerDelegatePluginSuite> kViewerDelegate{"create",
                                                               "destroy",
                                                               "locationEvent",
                                                               "sourceLocationEvent",
                                                               "locationsSelected",
                                                               "setOption",
                                                               "getOption",
                                                               "freeze",
                                                               "thaw",
                                                               "setup",
                                                               "cleanup",
                                                               "isProcessing",
                                                               "getBounds",
                                                               "computeExtent"};

constexpr SlotNames<ViewerDelegateComponentPluginSuite> kViewerDelegateComponent{
    "create", "destroy", "locationEvent", "locationsSelected", "setOption",    "getOption",
    "setup",  "cleanup", "isProcessing",  "getBounds",         "computeExtent"};

constexpr SlotNames<ViewportPluginSuite> kViewport{
    "create", "destroy",   "setup",     "cleanup", "event", "draw",       "resize",
    "hover",  "setOption", "getOption", "freeze",  "thaw",  "pickerDraw", "customPick"};

constexpr SlotNames<ViewportLayerPluginSuite> kViewportLayer{
    "create",    "destroy",   "setup",      "cleanup",          "event",
    "draw",      "resize",    "hover",      "freeze",           "thaw",
    "setOption", "getOption", "pickerDraw", "usesPickingCache", "customPick"};

constexpr SlotNames<ViewportCameraPluginSuite> kViewportCamera{
    "create",    "destroy",     "getCameraTypeID", "setViewportDimensions",
    "setOption", "getOption",   kReserved,         kReserved,
    "setup",     "asAttribute", kReserved,         kReserved,
    kReserved,   kReserved,     kReserved,         "setDirty"};

constexpr SlotNames<ManipulatorPluginSuite> kManipulator{
    "create", "destroy", "matches",    "getTags",   "setup",
    "event",  "draw",    "pickerDraw", "setOption", "getOption"};

constexpr SlotNames<ManipulatorHandlePluginSuite> kManipulatorHandle{
    "create", "destroy", "event", "draw", "pickerDraw", kReserved, kReserved, "notify"};

Names namesOf(PluginKind kind) {
    // In the order of PluginKind.
    static constexpr std::array<Names, 7> kNames{
        kViewerDelegate, kViewerDelegateComponent, kViewport, kViewportLayer, kViewportCamera,
        kManipulator,    kManipulatorHandle};
    return kNames[static_cast<std::size_t>(kind)];
}

} // namespace

std::string getMissingEntries(PluginKind kind, const void* suite) {
    std::string missing;
    const auto* slot = static_cast<const std::byte*>(suite);
    for (const char* const name : namesOf(kind)) {
        Entry entry;
        std::memcpy(&entry, slot, sizeof entry);
        slot += sizeof entry;
        if (entry || name == kReserved) {
            continue;
        }
        if (!missing.empty()) {
            missing += ", ";
        }
        missing += name;
    }
    return missing;
}

} // namespace ViewerAPI
