#pragma once

#include "VlAttribute/Attribute.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ViewerAPI {

/// The narrow door through which manipulated values reach the application's node graph. Every
/// delegate has one of its own, made in its constructor and released with it. The core knows only
/// this interface; the application's language implements it. All calls are [ui-thread] and may
/// come back into the viewer before they return.
///
/// A failure inside the application ends in the implementation, which reports it and answers with
/// what is named here as the failure's result; none of these calls is expected to throw.
class ManipulatorBridge {
public:
    virtual ~ManipulatorBridge() = default;

    /// Sets an attribute of a location in the application. True when the application says so;
    /// false on failure.
    virtual bool setValue(const std::string& location, const std::string& attributeName,
                          const VlAttribute::Attribute& value, bool isFinal) = 0;

    /// Whether the node of this name may be edited now; false on failure.
    virtual bool isNodeEditable(const char* nodeName) = 0;

    /// The viewer has been told to view this op; called also when it is the one viewed already.
    virtual void updateOp(int opId) = 0;

    /// The same with a text for the application.
    virtual void updateOp(int opId, const std::string& text) = 0;

    /// Asks the application for a value. The answer is not converted: always a null attribute.
    virtual VlAttribute::Attribute getValue(const std::string& location,
                                            const std::string& attributeName) = 0;

    /// The commit id that the last final value ended in: -1 while the application does not know it
    /// yet, which keeps the viewer frozen; -2 on failure.
    virtual std::int32_t getManipulationCommitId() = 0;

    /// Edits of the location that follow belong together.
    virtual void openManipulationGroup(const std::string& location) = 0;

    /// Ends what openManipulationGroup began.
    virtual void closeManipulationGroup(const std::string& location) = 0;

    /// The viewer drops what was set on top of the location. Called for every event of the primary
    /// and pinned clients, and where live values end without one, so an implementation must be
    /// quick.
    virtual void cleanupLiveAttributes(const std::string& location) = 0;
};

/// Makes the bridge of a new delegate; must not return null.
using ManipulatorBridgeFactory = std::function<std::unique_ptr<ManipulatorBridge>()>;

/// Sets how bridges are made from now on; an empty factory restores the null bridge. [ui-thread]
void setManipulatorBridgeFactory(ManipulatorBridgeFactory factory);

/// A bridge from the factory that is set. Without one, as in a program that has no application
/// around it, the null bridge: every call does nothing and answers with its failure's result, so
/// edits stay in the viewer, no node is editable, and a manipulation's freeze ends at once.
/// [ui-thread]
[[nodiscard]] std::unique_ptr<ManipulatorBridge> createManipulatorBridge();

} // namespace ViewerAPI
