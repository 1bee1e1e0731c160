#include "manipulatorbridge.h"

#include <utility>

namespace ViewerAPI {
namespace {

class NullManipulatorBridge final : public ManipulatorBridge {
public:
    bool setValue(const std::string& /*location*/, const std::string& /*attributeName*/,
                  const VlAttribute::Attribute& /*value*/, bool /*isFinal*/) override {
        return false;
    }
    bool isNodeEditable(const char* /*nodeName*/) override { return false; }
    void updateOp(int /*opId*/) override {}
    void updateOp(int /*opId*/, const std::string& /*text*/) override {}
    VlAttribute::Attribute getValue(const std::string& /*location*/,
                                    const std::string& /*attributeName*/) override {
        return {};
    }
    std::int32_t getManipulationCommitId() override { return -2; }
    void openManipulationGroup(const std::string& /*location*/) override {}
    void closeManipulationGroup(const std::string& /*location*/) override {}
    void cleanupLiveAttributes(const std::string& /*location*/) override {}
};

ManipulatorBridgeFactory& bridgeFactory() {
    static ManipulatorBridgeFactory factory;
    return factory;
}

} // namespace

void setManipulatorBridgeFactory(ManipulatorBridgeFactory factory) {
    bridgeFactory() = std::move(factory);
}

std::unique_ptr<ManipulatorBridge> createManipulatorBridge() {
    if (const ManipulatorBridgeFactory& factory = bridgeFactory()) {
        return factory();
    }
    return std::make_unique<NullManipulatorBridge>();
}

} // namespace ViewerAPI
