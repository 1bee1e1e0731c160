#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VlScenelibEngine {

class ClientView;
class OpRecord;

/// One recorded edit of a transaction.
struct GraphEdit {
    enum class Kind { Args, Inputs, ClientOp };

    Kind kind = Kind::Args;
    /// The op that is edited, or that the client is to view (null: nothing).
    std::shared_ptr<OpRecord> op;
    std::string typeName;
    VlAttribute::GroupAttribute args;
    std::vector<std::shared_ptr<OpRecord>> inputs;
    std::shared_ptr<ClientView> view;
};

struct GraphCommit {
    std::int64_t id = 0;
    std::vector<GraphEdit> edits;
};

} // namespace VlScenelibEngine
