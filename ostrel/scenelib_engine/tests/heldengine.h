#pragma once

#include "enginescene.h"

#include <memory>

/// Keeps an engine from applying commits and requests: a cook is under way that doesn't end before
/// release(). What clients ask and fetch meanwhile meets the engine in a known state.
class HeldEngine {
public:
    /// Returns when the engine is held.
    explicit HeldEngine(EngineScene& scene);
    ~HeldEngine() { release(); }
    HeldEngine(const HeldEngine&) = delete;
    HeldEngine& operator=(const HeldEngine&) = delete;

    void release();

private:
    class Gate;
    std::shared_ptr<Gate> gate;
    EngineScene::ClientPtr client;
};
