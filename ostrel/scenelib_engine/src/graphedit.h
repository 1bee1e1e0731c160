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
    enum class Kind { Args, Inputs, ClientOp, Recook };

    Kind kind = Kind::Args;
    /// The op that is edited, that the client is to view (null: nothing), or whose location
    /// is to be cooked again.
    std::shared_ptr<OpRecord> op;
    std::string typeName;
    VlAttribute::GroupAttribute args;
    std::vector<std::shared_ptr<OpRecord>> inputs;
    std::shared_ptr<ClientView> view;
    std::string path;
};

struct GraphCommit {
    std::int64_t id = 0;
    std::vector<GraphEdit> edits;
};

} // namespace VlScenelibEngine
