#include "vlviewerdelegatehost.h"

#include "manipulatorregistry.h"
#include "vlviewerdelegatecomponenthost.h"

#include "VlScenelib/Client.h"

#include <boost/unordered_set.hpp>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

// What the delegate is asked for lists of locations: their state, their selection, and which
// manipulators fit them.

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

namespace {

constexpr const char* kSelectLocationsChannel = "__SELECT_LOCATIONS";
constexpr const char* kGetSelectedLocationsChannel = "__GET_SELECTED_LOCATIONS";

/// Whether none of the paths is null.
bool isPathList(const char* const* paths, std::uint32_t count) {
    return count == 0 || (paths && std::find(paths, paths + count, nullptr) == paths + count);
}

/// Null, which makes an operation do nothing, for a list that has a null in it.
StringAttribute packPaths(const char* const* paths, std::uint32_t count) {
    if (!isPathList(paths, count)) {
        return {};
    }
    return StringAttribute(std::span<const char* const>(paths, count));
}

/// Changes the state of locations: `tellClient` gets them as one list, and then `tellTree` one by
/// one. Nothing happens for a list that has a null in it.
template <class TellClient, class TellTree>
void changeState(const char* const* paths, std::uint32_t count, const TellClient& tellClient,
                 const TellTree& tellTree) {
    const StringAttribute list = packPaths(paths, count);
    if (!list) {
        return;
    }
    tellClient(list);
    for (const std::string_view path : list.getNearestSample(0.0F)) {
        tellTree(path);
    }
}

} // namespace

// ---- State of locations

void VlViewerDelegateHostStruct::openLocations(const char* const* paths, std::uint32_t count) {
    changeState(
        paths, count,
        [this](const StringAttribute& list) { scene.primaryClient->setLocationsOpen(list); },
        [this](std::string_view path) { locationTree.openLocation(path); });
}

void VlViewerDelegateHostStruct::closeLocations(const char* const* paths, std::uint32_t count) {
    changeState(
        paths, count,
        [this](const StringAttribute& list) { scene.primaryClient->setLocationsClosed(list); },
        [this](std::string_view path) { locationTree.closeLocation(path); });
}

void VlViewerDelegateHostStruct::pinLocations(const char* const* paths, std::uint32_t count) {
    changeState(
        paths, count, [this](const StringAttribute& list) { scene.pinLocations(list); },
        [this](std::string_view path) { locationTree.pinLocation(path); });
}

void VlViewerDelegateHostStruct::unpinLocations(const char* const* paths, std::uint32_t count) {
    changeState(
        paths, count, [this](const StringAttribute& list) { scene.unpinLocations(list); },
        [this](std::string_view path) { locationTree.unpinLocation(path); });
}

void VlViewerDelegateHostStruct::activateSourceLocations(const char* const* paths,
                                                         std::uint32_t count) {
    changeState(
        paths, count,
        [this](const StringAttribute& list) { scene.sourcesClient->setLocationsActive(list); },
        [this](std::string_view path) { sourceLocationTree.pinLocation(path); });
}

void VlViewerDelegateHostStruct::deactivateSourceLocations(const char* const* paths,
                                                           std::uint32_t count) {
    changeState(
        paths, count,
        [this](const StringAttribute& list) { scene.sourcesClient->setLocationsInactive(list); },
        [this](std::string_view path) { sourceLocationTree.unpinLocation(path); });
}

void VlViewerDelegateHostStruct::hideLocations(const char* const* paths, std::uint32_t count) {
    if (isPathList(paths, count)) {
        locationTree.hideLocations({paths, count});
    }
}

void VlViewerDelegateHostStruct::unhideLocations(const char* const* paths, std::uint32_t count) {
    if (isPathList(paths, count)) {
        locationTree.unhideLocations({paths, count});
    }
}

void VlViewerDelegateHostStruct::unhideAllLocations() {
    locationTree.unhideAllLocations();
}

StringAttribute VlViewerDelegateHostStruct::getHiddenLocations() const {
    return locationTree.getHiddenLocations();
}

// ---- Selection

void VlViewerDelegateHostStruct::setSelectedLocations(const char* const* paths,
                                                      std::uint32_t count) {
    const HostCall call(*this);
    const ComponentList::Snapshot snapshot = components.snapshot();
    for (auto place = snapshot->rbegin(); place != snapshot->rend(); ++place) {
        if (components.contains(*place)) {
            (*place)->locationsSelected(paths, count);
        }
    }
    suite->locationsSelected(instance, const_cast<const char**>(paths), count);
}

void VlViewerDelegateHostStruct::selectLocation(const char* path) {
    selectLocations(&path, 1);
}

void VlViewerDelegateHostStruct::selectLocations(const char* const* paths, std::uint32_t count) {
    if (const StringAttribute list = packPaths(paths, count)) {
        callPythonCallback(kSelectLocationsChannel, list);
    }
}

StringAttribute VlViewerDelegateHostStruct::getSelectedLocations() {
    return StringAttribute(callPythonCallback(kGetSelectedLocationsChannel, {}));
}

// ---- Manipulators

GroupAttribute VlViewerDelegateHostStruct::getCompatibleManipulatorsInfo(const char* const* paths,
                                                                         std::uint32_t count) {
    if (!isPathList(paths, count)) {
        return {};
    }
    const HostCall call(*this);
    // Not a group by path, as a dot in a location's name would lead into another group.
    boost::unordered_set<std::string_view> seen;
    std::vector<GroupAttribute> locations;
    for (const char* const path : std::span(paths, count)) {
        if (!seen.insert(path).second) {
            continue;
        }
        if (GroupAttribute attributes = getAttributes(path, kVlViewerDelegatePrimary)) {
            locations.push_back(std::move(attributes));
        }
    }
    return ViewerAPI::getCompatibleManipulatorsInfo(locations);
}

} // namespace ViewerAPI
