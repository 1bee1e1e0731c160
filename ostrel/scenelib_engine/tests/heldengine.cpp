#include "heldengine.h"

#include "VlScenelibEngine/OpType.h"

#include <atomic>

/// Its root shows nothing, which one learns when the gate is opened.
class HeldEngine::Gate final : public VlScenelibEngine::OpType {
public:
    [[nodiscard]] VlScenelibEngine::CookResult cook(VlScenelibEngine::CookContext&) const override {
        isReached = true;
        isReached.notify_all();
        isOpen.wait(false);
        return VlScenelibEngine::CookResult::nothing();
    }

    mutable std::atomic<bool> isReached{false};
    mutable std::atomic<bool> isOpen{false};
};

HeldEngine::HeldEngine(EngineScene& scene) : gate(std::make_shared<Gate>()) {
    VlScenelibEngine::registerOpType("Test.Gate", gate);
    client = scene.createClient(scene.createOp("Test.Gate"));
    client->setLocationsActive(paths({"/root"}));
    gate->isReached.wait(false);
}

void HeldEngine::release() {
    gate->isOpen = true;
    gate->isOpen.notify_all();
}
