#include "runtimesuite.h"

#include "locationpath.h"

#include "VlAttribute/StringAttribute.h"

#include <string>
#include <utility>
#include <vector>

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ClientGroup;
using VlScenelibEngine::ClientView;
using VlScenelibEngine::Engine;
using VlScenelibEngine::GraphEdit;
using VlScenelibEngine::LocationReport;
using VlScenelibEngine::OpRecord;

struct ScenelibRuntimeStruct {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<ClientGroup> group;
};

struct ScenelibTransactionStruct {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<ClientGroup> group;
    std::vector<GraphEdit> edits;
};

struct ScenelibOpStruct {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<OpRecord> record;
};

struct ScenelibClientStruct {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<ClientView> view;
    /// What the records of the last fetch point to.
    std::string paths;
};

namespace VlScenelibEngine {

namespace {

// ---- runtime

void releaseRuntime(ScenelibRuntimeHandle runtime) {
    delete runtime;
}

ScenelibTransactionHandle createTransaction(ScenelibRuntimeHandle runtime) {
    return new ScenelibTransactionStruct{runtime->engine, runtime->group, {}};
}

std::int64_t commit(ScenelibRuntimeHandle runtime, ScenelibTransactionHandle transaction) {
    return runtime->engine->commit(std::exchange(transaction->edits, {}));
}

const char* getRootLocationPath(ScenelibRuntimeHandle /*runtime*/) {
    return "/root";
}

ScenelibOpHandle getOpFromOpId(ScenelibRuntimeHandle runtime, int opId) {
    std::shared_ptr<OpRecord> record = runtime->engine->findOp(opId);
    return record ? new ScenelibOpStruct{runtime->engine, std::move(record)} : nullptr;
}

int isProcessing(ScenelibRuntimeHandle runtime) {
    return runtime->engine->isProcessing() ? 1 : 0;
}

void flushCaches(ScenelibRuntimeHandle runtime) {
    runtime->engine->flushCaches();
}

// ---- transaction

void releaseTransaction(ScenelibTransactionHandle transaction) {
    delete transaction;
}

ScenelibClientHandle createClient(ScenelibTransactionHandle transaction) {
    return new ScenelibClientStruct{
        transaction->engine, transaction->engine->createView(transaction->group), {}};
}

ScenelibOpHandle createOp(ScenelibTransactionHandle transaction) {
    return new ScenelibOpStruct{transaction->engine, transaction->engine->createOp()};
}

std::shared_ptr<OpRecord> recordOf(ScenelibOpHandle op) {
    return op ? op->record : nullptr;
}

void setClientOp(ScenelibTransactionHandle transaction, ScenelibClientHandle client,
                 ScenelibOpHandle op) {
    GraphEdit& edit = transaction->edits.emplace_back();
    edit.kind = GraphEdit::Kind::ClientOp;
    edit.view = client->view;
    edit.op = recordOf(op);
}

void setOpArgs(ScenelibTransactionHandle transaction, ScenelibOpHandle op, const char* opType,
               VlAttributeStruct* args) {
    if (!op) {
        return;
    }
    GraphEdit& edit = transaction->edits.emplace_back();
    edit.kind = GraphEdit::Kind::Args;
    edit.op = op->record;
    edit.typeName = opType;
    edit.args = GroupAttribute(Attribute::CreateAndRetain(args));
}

void setOpInputs(ScenelibTransactionHandle transaction, ScenelibOpHandle op,
                 const ScenelibOpHandle* inputs, std::uint32_t count) {
    if (!op) {
        return;
    }
    GraphEdit& edit = transaction->edits.emplace_back();
    edit.kind = GraphEdit::Kind::Inputs;
    edit.op = op->record;
    for (std::uint32_t i = 0; i < count; ++i) {
        edit.inputs.push_back(recordOf(inputs[i]));
    }
}

// ---- op

void releaseOp(ScenelibOpHandle op) {
    delete op;
}

int getOpId(ScenelibOpHandle op) {
    return op->record->id;
}

// ---- client

void releaseClient(ScenelibClientHandle client) {
    client->engine->closeView(client->view);
    delete client;
}

void setEventCachingEnabled(ScenelibClientHandle client, int enabled) {
    client->engine->query(
        *client->view, [&](ClientView& view) { view.getEvents().setCachingEnabled(enabled != 0); });
}

void setAllOpen(ScenelibClientHandle client, int allOpen) {
    client->engine->request(*client->view,
                            [&](ClientView& view) { view.setAllOpen(allOpen != 0); });
}

template <typename Change>
void changeEach(ScenelibClientHandle client, VlAttributeStruct* paths, Change&& change) {
    const StringAttribute list(Attribute::CreateAndRetain(paths));
    client->engine->request(*client->view, [&](ClientView& view) {
        for (const std::string_view path : list.getNearestSample(0)) {
            change(view, std::string(path));
        }
    });
}

void setLocationsActive(ScenelibClientHandle client, VlAttributeStruct* paths) {
    changeEach(client, paths,
               [](ClientView& view, const std::string& path) { view.setActive(path, true); });
}

void setLocationsInactive(ScenelibClientHandle client, VlAttributeStruct* paths) {
    changeEach(client, paths,
               [](ClientView& view, const std::string& path) { view.setActive(path, false); });
}

void setLocationsOpen(ScenelibClientHandle client, VlAttributeStruct* paths) {
    changeEach(client, paths,
               [](ClientView& view, const std::string& path) { view.setOpen(path, true); });
}

void setLocationsClosed(ScenelibClientHandle client, VlAttributeStruct* paths) {
    changeEach(client, paths,
               [](ClientView& view, const std::string& path) { view.setOpen(path, false); });
}

VlAttributeStruct* getActiveLocations(ScenelibClientHandle client, const char* root) {
    const std::vector<std::string> active =
        client->engine->query(*client->view, [&](ClientView& view) {
            return view.getRequests().getActive(root ? root : "");
        });
    return StringAttribute(active).detach();
}

int isLocationActive(ScenelibClientHandle client, const char* path) {
    return client->engine->query(
        *client->view, [&](ClientView& view) { return view.getRequests().isActive(path) ? 1 : 0; });
}

int isLocationDataCurrent(ScenelibClientHandle client, const char* path, std::int64_t commitId) {
    return client->engine->isDataCurrent(*client->view, path, commitId) ? 1 : 0;
}

void fillRecord(ScenelibLocationRecord& record, LocationReport& report) {
    record.exists = report.exists ? 1 : 0;
    record.attrs = report.attrs.detach();
    record.potentialChildren = report.potentialChildren.detach();
}

int getCachedLocation(ScenelibClientHandle client, const char* path,
                      ScenelibLocationRecord* record) {
    return client->engine->query(*client->view, [&](ClientView& view) {
        const LocationReport* cached = view.getEvents().getCached(path);
        const auto names = splitPath(path);
        const bool isWanted = names ? view.isWanted(*names) : view.getRequests().isActive(path);
        if (!cached || !isWanted) {
            return 0;
        }
        LocationReport report = *cached;
        fillRecord(*record, report);
        record->path = nullptr;
        record->pathLength = 0;
        return 1;
    });
}

std::uint32_t getLocationEvents(ScenelibClientHandle client, ScenelibLocationRecord* records,
                                std::uint32_t capacity, int isContinuation, std::size_t* left) {
    std::string& paths = client->paths;
    paths.clear();
    *left = 0;
    if (!client->view->getEvents().isWorthDraining()) {
        return 0;
    }
    const std::uint32_t count = client->engine->query(*client->view, [&](ClientView& view) {
        EventQueue& events = view.getEvents();
        events.beginBatch();
        if (isContinuation == 0) {
            events.beginDrain();
        }
        std::uint32_t filled = 0;
        LocationReport report;
        std::size_t begin = 0;
        while (filled < capacity && events.next(paths, report)) {
            records[filled].pathLength = paths.size() - begin;
            begin = paths.size();
            fillRecord(records[filled], report);
            ++filled;
        }
        *left = events.countLeft();
        return filled;
    });
    const char* path = paths.data();
    for (std::uint32_t i = 0; i < count; ++i) {
        records[i].path = path;
        path += records[i].pathLength;
    }
    return count;
}

int hasLocationEvents(ScenelibClientHandle client) {
    return client->view->getEvents().isWorthDraining() &&
                   client->engine->query(
                       *client->view, [](ClientView& view) { return view.getEvents().hasNext(); })
               ? 1
               : 0;
}

} // namespace

const ScenelibRuntimeSuite* getRuntimeSuite() noexcept {
    static const ScenelibRuntimeSuite suite{releaseRuntime,
                                            createTransaction,
                                            commit,
                                            getRootLocationPath,
                                            getOpFromOpId,
                                            isProcessing,
                                            flushCaches,
                                            releaseTransaction,
                                            createClient,
                                            createOp,
                                            setClientOp,
                                            setOpArgs,
                                            setOpInputs,
                                            releaseOp,
                                            getOpId,
                                            releaseClient,
                                            setEventCachingEnabled,
                                            setAllOpen,
                                            setLocationsActive,
                                            setLocationsInactive,
                                            setLocationsOpen,
                                            setLocationsClosed,
                                            getActiveLocations,
                                            isLocationActive,
                                            isLocationDataCurrent,
                                            getCachedLocation,
                                            getLocationEvents,
                                            hasLocationEvents};
    return &suite;
}

ScenelibRuntimeHandle createRuntime(std::shared_ptr<Engine> engine) {
    return new ScenelibRuntimeStruct{std::move(engine), std::make_shared<ClientGroup>()};
}

} // namespace VlScenelibEngine
