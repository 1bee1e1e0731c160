#pragma once

#include "VlScenelibEngine/OpType.h"

#include "argsets.h"
#include "cooknode.h"
#include "readregistry.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace VlScenelibEngine {

class ClientView;

/// A read of an input from another place than the cook's own path, or from more places.
struct FarRead {
    GraphOp* input = nullptr;
    std::string path;
    bool withAllBelow = false;
};

/// An op as the coordinator knows it: its place in the graph, and the tree of what it has cooked.
/// Changed by the coordinator while no cook runs; cooks read it.
class GraphOp {
public:
    explicit GraphOp(int opId) : id(opId) {}
    GraphOp(const GraphOp&) = delete;
    GraphOp& operator=(const GraphOp&) = delete;

    const int id;
    std::string typeName = "no-op";
    /// Null when nobody has registered the type.
    std::shared_ptr<const OpType> type;
    VlAttribute::GroupAttribute args = VlAttribute::GroupAttribute::Empty();
    /// Null where an input is not connected.
    std::vector<GraphOp*> inputs;
    /// The ops that have this one as an input, each once.
    std::vector<GraphOp*> outputs;
    std::vector<ClientView*> views;
    /// Greater than that of every input.
    std::size_t depth = 0;

    std::unique_ptr<TopNode> top = std::make_unique<TopNode>(*this);
    ArgSets argSets;
    /// Who reads this op's locations from elsewhere.
    ReadRegistry readers;

    /// The nodes to be cooked again by their depth; among them some that are clean or gone by now.
    std::map<std::size_t, std::vector<CookNode*>> dirtyByDepth;

    [[nodiscard]] GraphOp* getInput(std::size_t i) const noexcept {
        return i < inputs.size() ? inputs[i] : nullptr;
    }
    /// Whether a node that read these inputs (CookNode::inputsRead) read that op.
    [[nodiscard]] bool readsOp(std::uint8_t inputsRead, const GraphOp& input) const noexcept;

    /// Records the far reads of a node, also with the ops that it read. [any-thread]
    void setFarReads(CookNode& node, std::vector<FarRead> reads);
    void dropFarReads(CookNode& node);
    /// Forgets all far reads of an op that is no input any more, on both sides.
    void forgetFarReadsOf(GraphOp& input);

private:
    std::mutex farReadMutex;
    std::unordered_map<const CookNode*, std::vector<FarRead>> farReads;
};

} // namespace VlScenelibEngine
