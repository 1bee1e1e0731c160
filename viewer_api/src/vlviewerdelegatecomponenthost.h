#pragma once

#include "hostobject.h"

#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"

#include <cstdint>
#include <string>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// The host object of one ViewerDelegateComponent plug-in: a part of a delegate that is told the
/// same location events, before the delegate is. Exceptions of the plug-in pass through.
/// [ui-thread]
struct VlViewerDelegateComponentHostStruct : public HostObject {
    /// Loads the plug-in; throws std::runtime_error when that fails. Its setup is not called.
    VlViewerDelegateComponentHostStruct(const std::string& pluginName,
                                        VlViewerDelegateHostStruct* delegate);
    /// Calls the plug-in's destroy, never its cleanup.
    ~VlViewerDelegateComponentHostStruct() override;

    void setup();
    void cleanup();

    /// Passes a change on; `handled` says whether a component asked before took care of it. True
    /// when this one does.
    bool locationEvent(const ViewerLocationEvent& event, bool handled);
    void locationsSelected(const char* const* paths, std::uint32_t count);

    /// The plug-in gets a reference of its own to `value`, which may be null.
    void setOption(std::uint64_t optionId, const VlAttribute::Attribute& value);
    [[nodiscard]] VlAttribute::Attribute getOption(std::uint64_t optionId);

    [[nodiscard]] bool isProcessing();
    /// What the plug-in answers; null also when it is no DoubleAttribute.
    [[nodiscard]] VlAttribute::DoubleAttribute getBounds(const char* locationPath);
    [[nodiscard]] VlAttribute::DoubleAttribute computeExtent(const char* locationPath);

    VlViewerDelegateHostStruct* delegate; ///< borrowed; never null
    const ViewerDelegateComponentPluginSuite* suite = nullptr;
    void* instance = nullptr;
};

} // namespace ViewerAPI
