#pragma once

#include "VlScenelibEngine/CookContext.h"
#include "VlScenelibEngine/CookResult.h"

#include <memory>
#include <string>
#include <vector>

namespace VlScenelibEngine {

/// A kind of op: a function from arguments and inputs to locations, computed one location at a
/// time.
///
/// The root is cooked first; below it, a location is cooked when somebody wants it and its parent's
/// result lists it. Results are memoised.
class OpType {
public:
    OpType() = default;
    virtual ~OpType() = default;
    OpType(const OpType&) = delete;
    OpType& operator=(const OpType&) = delete;

    /// Cooks one location. Called from several threads at once, for different locations and
    /// different ops, and must be a pure function of what it reads from the context. Whatever it
    /// throws makes the location one of type "error", whose `errorMessage` is the exception's text.
    [[nodiscard]] virtual CookResult cook(CookContext& context) const = 0;
};

/// Makes an op type known under a name, for the life of the process. Ops that bear the name
/// already are not cooked again, so register before use. A name that is taken is replaced.
/// [any-thread]
void registerOpType(const std::string& name, std::shared_ptr<const OpType> type);

/// The registered names, sorted. [any-thread]
[[nodiscard]] std::vector<std::string> getOpTypeNames();

} // namespace VlScenelibEngine
