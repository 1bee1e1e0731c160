#pragma once

#include "cooker.h"
#include "graphop.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

/// Carries a change from where it happens to everything that depends on it, and cooks again what
/// is affected: the upstream ops first, in an op the parents before their children, each at most
/// once per pass. A cook that gives an equal result stops the chain.
///
/// What depends on an op's location is found through the graph: a downstream op's node at the same
/// path, the clients' nodes at the same path, and the op's read registry for reads from elsewhere.
/// An alias passes a change on to whatever depends on its own op at that path.
///
/// Belongs to the coordinator, which calls while no cook runs, except for cookEntry().
class Recooking {
public:
    explicit Recooking(Cooker& opCooker) : cooker(opCooker) {}
    ~Recooking();

    // ---- edits of the graph

    void setType(GraphOp& op, const std::string& typeName);
    void setArgs(GraphOp& op, const VlAttribute::GroupAttribute& args);
    void setInputs(GraphOp& op, std::vector<GraphOp*> inputs);
    /// Has what the op shows at a path cooked again, and so reported whatever comes of it; where
    /// it has not cooked that yet, what its inputs show there.
    void recookLocation(GraphOp& op, const LocationNames& names);
    /// Drops everything that the op has cooked; what clients view is cooked anew.
    void dropMemo(GraphOp& op);
    /// Takes an op that nobody refers to out of the graph. It is freed with all that is removed.
    void remove(std::unique_ptr<GraphOp> op);

    // ---- cooking again

    [[nodiscard]] bool isClean() const noexcept { return dirtyOps.empty(); }
    /// Whether something has changed, since the last call, that a cook which waits had read.
    [[nodiscard]] bool takeWaitsAffected() noexcept {
        return std::exchange(areWaitsAffected, false);
    }

    /// A batch of nodes of one op, none above another, and what their cooks give.
    struct Slice {
        GraphOp* op = nullptr;
        std::vector<CookNode*> nodes;
        /// None where the cook waits.
        std::vector<std::optional<CookOutcome>> outcomes;
        std::vector<std::shared_ptr<Awaited>> awaited;
    };
    /// The next batch. Nodes that nobody uses any more are forgotten instead of cooked.
    [[nodiscard]] Slice takeSlice(std::size_t limit);
    /// Cooks entry i of the slice. [any-thread]
    void cookEntry(Slice& slice, std::size_t i);
    /// What waits is forgotten: those who want it have it cooked anew, and wait.
    void storeSlice(Slice& slice);
    /// To be called when those who want what waits have it cooked: what it waits for is kept until
    /// then.
    void letGo() noexcept { awaited.clear(); }
    /// Frees what was removed, once nothing is dirty.
    void buryRemoved();

private:
    enum class Touch {
        Rerun,   ///< cooked again with an equal result: only for those who view it
        Forced,  ///< the same, also for those who view what other ops make of it
        Changed, ///< its attributes or children
        Subtree, ///< it and everything below it is another
        Added,   ///< it is newly in its parent's list
    };

    void touch(GraphOp& op, const LocationNames& names, Touch kind);
    void touchOutput(GraphOp& output, const GraphOp& changed, const LocationNames& names,
                     Touch kind);
    void markReadersBelow(GraphOp& op, CookNode& node, const GraphOp& read);
    /// Something that the node's cook has read has changed.
    void markDirty(GraphOp& op, CookNode& node);
    void markWhere(GraphOp& op, CookNode& node, bool argReadersOnly,
                   const std::function<bool(const CookNode&)>& isAffected);
    [[nodiscard]] bool isUsed(const GraphOp& op, const LocationNames& names) const;
    void uncook(GraphOp& op, CookNode& node, const LocationNames& names);
    void store(GraphOp& op, CookNode& node, CookOutcome& outcome);
    void storeLocation(GraphOp& op, CookNode& node, const LocationNames& names, CookResult& result);
    void touchAdded(GraphOp& op, const LocationNames& names, const ChildList* before,
                    const ChildList& after);
    void compareContexts(GraphOp& op, CookNode& node, const ChildList& before);
    void rearrangeChildren(GraphOp& op, CookNode& node, const LocationNames& names,
                           const ChildList* before);
    void retire(std::unique_ptr<CookBlock> block);
    void dropReadsBelow(GraphOp& op, CookNode& node);
    void updateDepth(GraphOp& op);

    Cooker& cooker;
    std::vector<GraphOp*> dirtyOps;
    bool areWaitsAffected = false;
    std::vector<std::shared_ptr<Awaited>> awaited;
    /// Removed nodes, and blocks whose nodes somebody may still point to, in order of removal.
    std::vector<CookNode*> removedNodes;
    std::vector<std::unique_ptr<CookBlock>> removedBlocks;
    std::vector<std::unique_ptr<TopNode>> removedTops;
    std::vector<std::unique_ptr<GraphOp>> removedOps;
};

} // namespace VlScenelibEngine
