#include "vlmanipulatorhost.h"

#include "manipulatorbridge.h"
#include "matrixattribute.h"
#include "plugininstance.h"
#include "raisedflag.h"
#include "stringvalues.h"
#include "vlmanipulatorhandlehost.h"
#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

#include "viewer_api/ManipulatorPluginSuite.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

VlManipulatorHostStruct::VlManipulatorHostStruct(const std::string& pluginName_,
                                                 VlViewportHostStruct* viewport_,
                                                 std::vector<std::string> candidates)
    : HostObject(viewport_), pluginName(pluginName_), viewport(viewport_),
      candidateLocationPaths(std::move(candidates)),
      candidates_(candidateLocationPaths.begin(), candidateLocationPaths.end()) {
    const HostCall call(*this);
    try {
        createPluginInstance(PluginKind::Manipulator, pluginName, this, pluginSuite,
                             pluginInstance);
        setXform(toMatrixAttribute({}));
        std::vector<std::string> found;
        if (VlViewerDelegateHostStruct* const owner = delegate()) {
            for (const std::string& path : candidateLocationPaths) {
                const GroupAttribute attributes =
                    owner->getAttributes(path, kVlViewerDelegatePrimary);
                if (attributes && matches(attributes)) {
                    found.push_back(path);
                }
            }
        }
        activeLocationPaths = StringAttribute(found);
        refreshEditable();
    } catch (...) {
        // The create entry may have added handles before it failed.
        endLife();
        endHandles();
        endHeld();
        destroyPluginInstance(pluginSuite, pluginInstance);
        throw;
    }
}

VlManipulatorHostStruct::~VlManipulatorHostStruct() {
    endLife();
    endHandles();
    destroyPluginInstance(pluginSuite, pluginInstance);
    endHandles();
}

void VlManipulatorHostStruct::endHandles() {
    // A destroy entry may still look at the list, and even add to it.
    while (!handles.empty()) {
        handleIndexByName.clear();
        for (VlManipulatorHandleHostStruct* const handle : std::exchange(handles, {})) {
            HostObject::retire(handle);
        }
    }
}

VlViewerDelegateHostStruct* VlManipulatorHostStruct::delegate() const {
    return viewport->viewerDelegate;
}

bool VlManipulatorHostStruct::matches(const GroupAttribute& attributes) const {
    return pluginSuite->matches(attributes.getHandle()) != 0;
}

GroupAttribute VlManipulatorHostStruct::getTags() {
    const HostCall call(*this);
    return GroupAttribute(Attribute::CreateAndSteal(pluginSuite->getTags()));
}

bool VlManipulatorHostStruct::event(VlAttributeStruct* eventData) {
    const HostCall call(*this);
    return pluginSuite->event(pluginInstance, eventData) != 0;
}

bool VlManipulatorHostStruct::prepareDraw() {
    if (activeLocationPaths.getNumberOfValues() == 0 || isInSetup_) {
        return false;
    }
    if (setupPending) {
        const RaisedFlag isInSetup(isInSetup_);
        pluginSuite->setup(pluginInstance);
        setupPending = false;
    }
    return true;
}

bool VlManipulatorHostStruct::draw() {
    const HostCall call(*this);
    if (!prepareDraw()) {
        return false;
    }
    pluginSuite->draw(pluginInstance);
    return true;
}

bool VlManipulatorHostStruct::pickerDraw(std::uint64_t pickerId) {
    const HostCall call(*this);
    if (!prepareDraw()) {
        return false;
    }
    pluginSuite->pickerDraw(pluginInstance, pickerId);
    return true;
}

void VlManipulatorHostStruct::setXform(const DoubleAttribute& value) {
    xform = value;
    xformMatrix = toMatrix(value);
}

DoubleAttribute VlManipulatorHostStruct::calculateXform() const {
    Imath::V3d center(0.0);
    double found = 0.0;
    const VlViewerDelegateHostStruct* const owner = delegate();
    for (const auto path : activeLocationPaths.getNearestSample(0.0F)) {
        // A location that plug-ins don't know (yet, or again) stands nowhere.
        const DoubleAttribute world =
            owner ? owner->getWorldXform(path.str(), kVlViewerDelegatePrimary) : DoubleAttribute();
        if (world) {
            center += toMatrix(world).translation();
            ++found;
        }
    }
    if (found > 0.0) {
        center /= found;
    }
    Imath::M44d matrix;
    matrix.setTranslation(center);
    return toMatrixAttribute(matrix);
}

Attribute VlManipulatorHostStruct::getValue(const std::string& path,
                                            const std::string& attributeName) const {
    const VlViewerDelegateHostStruct* const owner = delegate();
    return owner
               ? owner->getAttributes(path, kVlViewerDelegatePrimary).getChildByName(attributeName)
               : Attribute();
}

bool VlManipulatorHostStruct::setValue(const std::string& path, const std::string& attributeName,
                                       const Attribute& value, bool isFinal) {
    const HostCall call(*this);
    VlViewerDelegateHostStruct* const owner = delegate();
    return owner && owner->setManipulatedAttribute(path, attributeName, value, isFinal);
}

void VlManipulatorHostStruct::openManipulationGroup(const std::string& path) {
    const HostCall call(*this);
    if (VlViewerDelegateHostStruct* const owner = delegate()) {
        owner->openManipulationGroup(path);
    }
}

void VlManipulatorHostStruct::closeManipulationGroup(const std::string& path) {
    const HostCall call(*this);
    if (VlViewerDelegateHostStruct* const owner = delegate()) {
        owner->closeManipulationGroup(path);
    }
}

bool VlManipulatorHostStruct::onLocationChanged(const std::string& path,
                                                const GroupAttribute& attributes) {
    // First, as this is all that most of a scene's locations should cost.
    if (!candidates_.contains(path)) {
        return false;
    }
    const HostCall call(*this);
    return attributes && matches(attributes) ? addLocationPath(path) : removeLocationPath(path);
}

bool VlManipulatorHostStruct::removeLocationPath(const std::string& path) {
    std::vector<std::string> paths = toStrings(activeLocationPaths);
    const bool isRemoved = std::erase(paths, path) > 0;
    activeLocationPaths = StringAttribute(paths);
    refreshEditable();
    return isRemoved;
}

bool VlManipulatorHostStruct::addLocationPath(const std::string& path) {
    std::vector<std::string> paths = toStrings(activeLocationPaths);
    const bool isNew = std::ranges::find(paths, path) == paths.end();
    if (isNew) {
        paths.push_back(path);
    }
    activeLocationPaths = StringAttribute(paths);
    refreshEditable();
    return isNew;
}

void VlManipulatorHostStruct::refreshEditable() {
    if (!delegate()) {
        return;
    }
    // Held: the application may bring other locations when it is asked.
    const StringAttribute paths = activeLocationPaths;
    const auto active = paths.getNearestSample(0.0F);
    const bool isEach = paths.isValid() && std::ranges::all_of(active, [this](const auto& path) {
                            return isEditable(path.str());
                        });
    // Another list has been asked about meanwhile, and that answer is the newer one.
    if (activeLocationPaths.getHandle() == paths.getHandle()) {
        editable = isEach;
    }
}

bool VlManipulatorHostStruct::isEditable(const std::string& path) const {
    // Also of a location that plug-ins don't know yet: one that has just come is told to them only
    // when the manipulator has it already, and nothing would ask again then.
    const GroupAttribute editor{
        delegate()->locationTree.getAttributes(path, false).getChildByName("attributeEditor")};
    StringAttribute node{editor.getChildByName("xform.exclusiveTo")};
    if (!node) {
        node = StringAttribute(editor.getChildByName("exclusiveTo"));
    }
    return node && delegate()->bridge->isNodeEditable(node.getValue("").c_str());
}

// ---- Handles

VlManipulatorHandleHostStruct*
VlManipulatorHostStruct::addManipulatorHandle(const std::string& handlePluginName,
                                              const std::string& name) {
    const HostCall call(*this);
    std::unique_ptr<VlManipulatorHandleHostStruct, RetireHostObject> handle(
        new VlManipulatorHandleHostStruct(handlePluginName, this));
    handleIndexByName[name] = static_cast<std::uint32_t>(handles.size());
    handles.push_back(handle.get());
    return handle.release();
}

VlManipulatorHandleHostStruct*
VlManipulatorHostStruct::getManipulatorHandle(const std::string& name) const {
    const auto found = handleIndexByName.find(name);
    return found == handleIndexByName.end() ? nullptr : getManipulatorHandleByIndex(found->second);
}

VlManipulatorHandleHostStruct*
VlManipulatorHostStruct::getManipulatorHandleByIndex(std::uint32_t index) const {
    return index < handles.size() ? handles[index] : nullptr;
}

void VlManipulatorHostStruct::removeManipulatorHandle(const std::string& name) {
    const auto found = handleIndexByName.find(name);
    if (found == handleIndexByName.end()) {
        return;
    }
    const HostCall call(*this);
    const std::uint32_t index = found->second;
    handleIndexByName.erase(found);
    // A name left over from a removal by index may lead nowhere.
    if (index >= handles.size()) {
        return;
    }
    const std::unique_ptr<VlManipulatorHandleHostStruct, RetireHostObject> handle(handles[index]);
    handles.erase(handles.begin() + index);
    for (auto& [other, otherIndex] : handleIndexByName) {
        if (otherIndex > index) {
            --otherIndex;
        }
    }
}

void VlManipulatorHostStruct::removeManipulatorHandleByIndex(std::uint32_t index) {
    if (index > handles.size()) {
        return;
    }
    if (index == handles.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    const HostCall call(*this);
    const std::unique_ptr<VlManipulatorHandleHostStruct, RetireHostObject> handle(handles[index]);
    handles.erase(handles.begin() + index);
    // The walk ends at the removed handle's name, and those behind it keep their index: told to
    // plug-in authors with the table, and not to be tidied.
    for (auto entry = handleIndexByName.begin(); entry != handleIndexByName.end(); ++entry) {
        if (entry->second == index) {
            handleIndexByName.erase(entry);
            break;
        }
        if (entry->second > index) {
            --entry->second;
        }
    }
}

std::uint32_t VlManipulatorHostStruct::getNumberOfManipulatorHandles() const {
    return static_cast<std::uint32_t>(handles.size());
}

const char* VlManipulatorHostStruct::getManipulatorHandleName(std::uint32_t index) const {
    if (index > handles.size()) {
        return "";
    }
    const auto found = std::ranges::find_if(
        handleIndexByName, [index](const auto& entry) { return entry.second == index; });
    return found == handleIndexByName.end() ? "" : found->first.c_str();
}

} // namespace ViewerAPI
