#include "graphop.h"

#include <utility>

namespace VlScenelibEngine {

bool GraphOp::readsOp(std::uint8_t inputsRead, const GraphOp& input) const noexcept {
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (inputs[i] == &input && (inputsRead & CookNode::inputBit(i)) != 0) {
            return true;
        }
    }
    return false;
}

void GraphOp::setFarReads(CookNode& node, std::vector<FarRead> reads) {
    for (const FarRead& read : reads) {
        read.input->readers.add(read.path, node, read.withAllBelow);
    }
    node.set(CookNode::kReads);
    const std::lock_guard lock(farReadMutex);
    farReads[&node] = std::move(reads);
}

void GraphOp::dropFarReads(CookNode& node) {
    if (!node.has(CookNode::kReads)) {
        return;
    }
    node.clear(CookNode::kReads);
    std::vector<FarRead> reads;
    {
        const std::lock_guard lock(farReadMutex);
        const auto found = farReads.find(&node);
        if (found == farReads.end()) {
            return;
        }
        reads = std::move(found->second);
        farReads.erase(found);
    }
    for (const FarRead& read : reads) {
        read.input->readers.remove({read.path}, node);
    }
}

void GraphOp::forgetFarReadsOf(GraphOp& input) {
    const std::lock_guard lock(farReadMutex);
    for (auto& [node, reads] : farReads) {
        for (const FarRead& read : reads) {
            if (read.input == &input) {
                input.readers.remove({read.path}, *node);
            }
        }
        std::erase_if(reads, [&](const FarRead& read) { return read.input == &input; });
    }
}

} // namespace VlScenelibEngine
