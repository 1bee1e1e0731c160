#include "applicationgraph.h"

#include "VlScenelibEngine/ScenelibEngine.h"

#include <mutex>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace VlScenelibEngine {

namespace {

struct Application {
    const pid_t owner = getpid();
    std::shared_ptr<Engine> engine = std::make_shared<Engine>();
    /// The application's ops live as long as the process.
    std::mutex mutex;
    std::vector<std::shared_ptr<OpRecord>> ops;
};

Application& application() {
    // Never destroyed: handles may outlive all static objects. But its threads end before the
    // libraries that they run in are taken down.
    static Application& theApplication = []() -> Application& {
        auto* made = new Application;
        std::atexit([] {
            // A process that was forked off has no such threads, and may have their locks locked.
            if (getpid() == application().owner) {
                application().engine->stop();
            }
        });
        return *made;
    }();
    return theApplication;
}

std::shared_ptr<OpRecord> findOp(int opId) {
    std::shared_ptr<OpRecord> op = application().engine->findOp(opId);
    if (!op) {
        throw std::runtime_error("There is no op with the id " + std::to_string(opId));
    }
    return op;
}

} // namespace

const std::shared_ptr<Engine>& getApplicationEngine() {
    return application().engine;
}

namespace ApplicationGraph {

class Transaction::Impl {
public:
    std::vector<GraphEdit> edits;
};

Transaction::Transaction() : impl(std::make_unique<Impl>()) {}
Transaction::~Transaction() = default;
Transaction::Transaction(Transaction&&) noexcept = default;
Transaction& Transaction::operator=(Transaction&&) noexcept = default;

int Transaction::createOp(const std::string& opType, const VlAttribute::GroupAttribute& args,
                          const std::vector<int>& inputs) {
    // Before anything is made, so that a mistake leaves nothing behind.
    for (const int input : inputs) {
        findOp(input);
    }
    Application& app = application();
    std::shared_ptr<OpRecord> op = app.engine->createOp();
    const int id = op->id;
    {
        const std::lock_guard lock(app.mutex);
        app.ops.push_back(std::move(op));
    }
    setOpArgs(id, opType, args);
    if (!inputs.empty()) {
        setOpInputs(id, inputs);
    }
    return id;
}

void Transaction::setOpArgs(int opId, const std::string& opType,
                            const VlAttribute::GroupAttribute& args) {
    GraphEdit edit;
    edit.kind = GraphEdit::Kind::Args;
    edit.op = findOp(opId);
    edit.typeName = opType;
    edit.args = args;
    impl->edits.push_back(std::move(edit));
}

void Transaction::setOpInputs(int opId, const std::vector<int>& inputs) {
    GraphEdit edit;
    edit.kind = GraphEdit::Kind::Inputs;
    edit.op = findOp(opId);
    for (const int input : inputs) {
        edit.inputs.push_back(findOp(input));
    }
    impl->edits.push_back(std::move(edit));
}

void Transaction::recookLocation(int opId, const std::string& path) {
    GraphEdit edit;
    edit.kind = GraphEdit::Kind::Recook;
    edit.op = findOp(opId);
    edit.path = path;
    impl->edits.push_back(std::move(edit));
}

std::int64_t Transaction::commit() {
    return application().engine->commit(std::exchange(impl->edits, {}));
}

bool waitUntilIdle(std::chrono::duration<double> timeout) {
    return application().engine->waitUntilIdle(timeout);
}

std::size_t countLocationsToCome() {
    return application().engine->countToCome();
}

bool isCommitCooked(std::int64_t commitId) {
    return application().engine->isCommitCooked(commitId);
}

std::uint64_t getNumberOfCooks() {
    return application().engine->getNumberOfCooks();
}

void flushCaches() {
    application().engine->flushCaches();
}

} // namespace ApplicationGraph

} // namespace VlScenelibEngine
