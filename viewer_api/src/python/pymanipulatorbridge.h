#pragma once

#include "pyreference.h"

#include "manipulatorbridge.h"

#include <cstdint>
#include <string>

namespace ViewerAPI {

/// Carries a delegate's edits to an object of the application's class `ManipulatorBridge` in the
/// Python module `ViewerAPI`. Each delegate makes one object and binds its methods once.
///
/// A binding that fails is printed, and the delegate goes on: what could not be bound fails at each
/// call as if it had raised. An error in setValue, isNodeEditable, updateOp, getValue or
/// getManipulationCommitId is printed and goes no further. One in openManipulationGroup,
/// closeManipulationGroup or cleanupLiveAttributes stays pending, so that it surfaces where the
/// application called the viewer. [ui-thread]
class PyManipulatorBridge final : public ManipulatorBridge {
public:
    PyManipulatorBridge();
    ~PyManipulatorBridge() override;
    PyManipulatorBridge(const PyManipulatorBridge&) = delete;
    PyManipulatorBridge& operator=(const PyManipulatorBridge&) = delete;

    bool setValue(const std::string& location, const std::string& attributeName,
                  const VlAttribute::Attribute& value, bool isFinal) override;
    bool isNodeEditable(const char* nodeName) override;
    void updateOp(int opId) override;
    void updateOp(int opId, const std::string& text) override;
    VlAttribute::Attribute getValue(const std::string& location,
                                    const std::string& attributeName) override;
    std::int32_t getManipulationCommitId() override;
    void openManipulationGroup(const std::string& location) override;
    void closeManipulationGroup(const std::string& location) override;
    void cleanupLiveAttributes(const std::string& location) override;

private:
    void bind();

    PyReference bridge;
    // Bound methods of `bridge`; null from the first that could not be bound.
    PyReference getValueMethod;
    PyReference setValueMethod;
    PyReference isNodeEditableMethod;
    PyReference updateOpMethod;
    PyReference getManipulationCommitIdMethod;
    PyReference openManipulationGroupMethod;
    PyReference closeManipulationGroupMethod;
    PyReference cleanupLiveAttributesMethod;
};

} // namespace ViewerAPI
