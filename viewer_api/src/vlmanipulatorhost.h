#pragma once

#include "hostobject.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <ImathMatrix.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

struct ManipulatorPluginSuite;
struct VlAttributeStruct;

namespace ViewerAPI {

struct VlManipulatorHandleHostStruct;
struct VlViewerDelegateHostStruct;
struct VlViewportHostStruct;

/// The host side of one Manipulator plug-in instance, active on a viewport for some locations.
///
/// It edits those of the locations given at activation that exist and that the plug-in matches, and
/// keeps this list up to date as they come, change and go. Its plug-in is set up late, when it is
/// first drawn with a location to edit. Whatever a plug-in throws passes through. [ui-thread]
struct VlManipulatorHostStruct : public HostObject {
    /// Loads the plug-in, whose `create` runs before the locations are looked for. Throws
    /// std::runtime_error when it can't be had or its `create` answers null. `viewport` owns the
    /// manipulator.
    VlManipulatorHostStruct(const std::string& pluginName, VlViewportHostStruct* viewport,
                            std::vector<std::string> candidateLocationPaths);
    /// Ends the handles in their order, then the plug-in instance.
    ~VlManipulatorHostStruct() override;

    /// What the plug-in says of itself, not of this instance.
    [[nodiscard]] VlAttribute::GroupAttribute getTags();
    [[nodiscard]] VlAttribute::StringAttribute getLocationPaths() const {
        return activeLocationPaths;
    }

    /// Whether the plug-in handled the event; it is asked also before it was set up. The handle is
    /// lent for the call.
    bool event(VlAttributeStruct* eventData);
    /// Both set the plug-in up the first time; a setup that throws is tried again. False, and
    /// nothing is called, without a location to edit, and from within the setup. [gl-current]
    bool draw();
    bool pickerDraw(std::uint64_t pickerId);

    /// The transform that plug-in and handles share, as it was set; the identity at first, and null
    /// while the plug-in's `create` runs.
    [[nodiscard]] VlAttribute::DoubleAttribute getXform() const { return xform; }
    /// Null stands for the identity.
    void setXform(const VlAttribute::DoubleAttribute& value);
    /// A translation to the mean of the world positions of those locations that plug-ins know; the
    /// identity without any.
    [[nodiscard]] VlAttribute::DoubleAttribute calculateXform() const;

    /// An attribute of any location, live values on top; null when there is none.
    [[nodiscard]] VlAttribute::Attribute getValue(const std::string& path,
                                                  const std::string& attributeName) const;
    /// As the delegate's setManipulatedAttribute.
    bool setValue(const std::string& path, const std::string& attributeName,
                  const VlAttribute::Attribute& value, bool isFinal);
    void openManipulationGroup(const std::string& path);
    void closeManipulationGroup(const std::string& path);

    /// A location has new attributes, or, with null, is gone. Whether the list of locations that
    /// are edited has changed; one that was not given at activation never enters.
    bool onLocationChanged(const std::string& path, const VlAttribute::GroupAttribute& attributes);
    /// Asks anew whether all locations may be edited: each has to name, as
    /// "attributeEditor.xform.exclusiveTo" or "attributeEditor.exclusiveTo", a node that the
    /// application lets edit.
    void refreshEditable();

    // ---- Handles. By name the one that was added last is found.

    /// Throws when the plug-in can't be loaded, and then nothing has changed.
    VlManipulatorHandleHostStruct* addManipulatorHandle(const std::string& handlePluginName,
                                                        const std::string& name);
    [[nodiscard]] VlManipulatorHandleHostStruct*
    getManipulatorHandle(const std::string& name) const;
    [[nodiscard]] VlManipulatorHandleHostStruct*
    getManipulatorHandleByIndex(std::uint32_t index) const;
    void removeManipulatorHandle(const std::string& name);
    /// An index equal to the count throws std::out_of_range, a larger one is ignored. Names that
    /// sort behind the removed handle's keep the index that they had.
    void removeManipulatorHandleByIndex(std::uint32_t index);
    [[nodiscard]] std::uint32_t getNumberOfManipulatorHandles() const;
    /// "" for a handle that no name leads to. Valid until the list of handles changes.
    [[nodiscard]] const char* getManipulatorHandleName(std::uint32_t index) const;

    std::string pluginName;
    VlViewportHostStruct* viewport; ///< borrowed
    const std::vector<std::string> candidateLocationPaths;
    /// In the order in which they were found. Null while the manipulator is being made.
    VlAttribute::StringAttribute activeLocationPaths;
    VlAttribute::DoubleAttribute xform;
    Imath::M44d xformMatrix; ///< the same
    std::map<std::string, std::uint32_t> handleIndexByName;
    std::vector<VlManipulatorHandleHostStruct*> handles; ///< owned
    bool setupPending = true;
    bool editable = false;
    const ManipulatorPluginSuite* pluginSuite = nullptr;
    void* pluginInstance = nullptr;

private:
    [[nodiscard]] VlViewerDelegateHostStruct* delegate() const;
    [[nodiscard]] bool matches(const VlAttribute::GroupAttribute& attributes) const;
    bool prepareDraw();
    bool addLocationPath(const std::string& path);
    bool removeLocationPath(const std::string& path);
    [[nodiscard]] bool isEditable(const std::string& path) const;
    void endHandles();

    const std::unordered_set<std::string_view> candidates_; ///< of `candidateLocationPaths`
    bool isInSetup_ = false;
};

} // namespace ViewerAPI
