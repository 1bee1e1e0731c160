#pragma once

#include "hostobject.h"

#include "VlAttribute/DoubleAttribute.h"

#include <ImathMatrix.h>

#include <cstdint>
#include <string>

struct ManipulatorHandlePluginSuite;
struct VlAttributeStruct;

namespace ViewerAPI {

struct VlManipulatorHostStruct;

/// The host side of one ManipulatorHandle plug-in instance, a part of a manipulator: an arrow, a
/// ring. It has a transform of its own within the manipulator's, and two flags whose meaning is the
/// plug-in's. Whatever a plug-in throws passes through. [ui-thread]
struct VlManipulatorHandleHostStruct : public HostObject {
    /// Throws std::runtime_error when the plug-in can't be had or its `create` answers null.
    /// `manipulator` owns the handle.
    VlManipulatorHandleHostStruct(const std::string& pluginName,
                                  VlManipulatorHostStruct* manipulator);
    ~VlManipulatorHandleHostStruct() override;

    /// Null stands for the identity.
    void setLocalXform(const VlAttribute::DoubleAttribute& value);
    /// Null until it is set.
    [[nodiscard]] VlAttribute::DoubleAttribute getLocalXform() const { return localXform; }
    /// The local transform in the manipulator's: a DoubleAttribute of 16 values.
    [[nodiscard]] VlAttribute::DoubleAttribute getCombinedXform() const;

    /// Whether the plug-in handled the event. The handle is lent for the call.
    bool event(VlAttributeStruct* eventData);
    /// [gl-current]
    void draw();
    void pickerDraw(std::uint64_t pickerId);
    void notifyPlugin();

    /// False also while the manipulator is being made.
    [[nodiscard]] bool isEngaged() const;

    VlManipulatorHostStruct* manipulator; ///< borrowed
    const ManipulatorHandlePluginSuite* pluginSuite = nullptr;
    void* pluginInstance = nullptr;
    bool engaged = false;
    bool marked = false;
    Imath::M44d localXformMatrix;
    VlAttribute::DoubleAttribute localXform; ///< the same
};

} // namespace ViewerAPI
