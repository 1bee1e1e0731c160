#pragma once

#include "VlScenelib/ScenelibRuntimeSuite.h"

namespace VlScenelib {

/// A node of the op graph. Made by `Transaction::createOp`, found by
/// `ScenelibRuntime::getOpFromOpId`. The op outlives this object while it is an input of another,
/// is viewed by a client, or belongs to the application.
class Op {
public:
    /// Takes over the handle, which must not be null.
    Op(ScenelibOpHandle stolen, const ScenelibRuntimeSuite* runtimeSuite) noexcept;
    ~Op();
    Op(const Op&) = delete;
    Op& operator=(const Op&) = delete;

    /// Positive and unique in the process.
    [[nodiscard]] int getId() const;
    /// Borrowed.
    [[nodiscard]] ScenelibOpHandle getHandle() const noexcept { return handle; }

private:
    ScenelibOpHandle handle;
    const ScenelibRuntimeSuite* suite;
};

} // namespace VlScenelib
