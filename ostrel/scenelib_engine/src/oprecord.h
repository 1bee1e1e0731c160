#pragma once

#include "inbox.h"

#include <memory>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

/// An op as those who edit the graph know it. It lives while somebody holds it or has it as an
/// input or views it; the coordinator hears of its end.
class OpRecord {
public:
    OpRecord(int opId, std::shared_ptr<Inbox> coordinatorInbox)
        : id(opId), inbox(std::move(coordinatorInbox)) {}
    ~OpRecord() { inbox->postReleasedOp(id); }
    OpRecord(const OpRecord&) = delete;
    OpRecord& operator=(const OpRecord&) = delete;

    const int id;
    /// As of the newest commit. Guarded by the engine's edit lock.
    std::vector<std::shared_ptr<OpRecord>> inputs;

private:
    std::shared_ptr<Inbox> inbox;
};

} // namespace VlScenelibEngine
