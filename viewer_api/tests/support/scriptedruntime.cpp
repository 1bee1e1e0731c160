#include "support/scriptedruntime.h"

#include "support/attributetext.h"

#include "VlAttribute/StringAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"

#include <algorithm>

namespace ViewerAPI::test {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

/// Outlives the ScriptedRuntime as long as there are handles.
struct ScriptedRuntime::State {
    std::vector<std::string> calls;
    std::vector<std::shared_ptr<ScriptedClient>> clients;
    std::set<int> ops;
    int lastOp = 0;
    std::int64_t lastCommit = 0;
    bool isProcessing = false;
    Refusal refusal = Refusal::None;

    void call(std::string line) { calls.push_back(std::move(line)); }
};

namespace {

std::vector<std::string> pathsOf(VlAttributeStruct* borrowed) {
    const StringAttribute paths(Attribute::CreateAndRetain(borrowed));
    std::vector<std::string> result;
    for (const auto& path : paths.getNearestSample(0.0F)) {
        result.emplace_back(path);
    }
    return result;
}

std::string listText(const std::vector<std::string>& items) {
    std::string text = "[";
    for (const std::string& item : items) {
        text += (text.size() == 1 ? "" : " ") + item;
    }
    return text + "]";
}

std::string opText(int id) {
    return id == 0 ? "null" : "op" + std::to_string(id);
}

} // namespace

/// The entries of the table. A handle is a small object that knows the state.
class ScriptedRuntimeTable {
    using State = ScriptedRuntime::State;
    using StatePointer = std::shared_ptr<State>;

    struct Runtime {
        StatePointer state;
    };
    struct Transaction {
        StatePointer state;
    };
    struct Op {
        StatePointer state;
        int id;
    };
    struct ClientHandle {
        StatePointer state;
        std::shared_ptr<ScriptedClient> client;
    };

    static Runtime& from(ScenelibRuntimeHandle handle) {
        return *reinterpret_cast<Runtime*>(handle);
    }
    static Transaction& from(ScenelibTransactionHandle handle) {
        return *reinterpret_cast<Transaction*>(handle);
    }
    static Op& from(ScenelibOpHandle handle) { return *reinterpret_cast<Op*>(handle); }
    static ClientHandle& from(ScenelibClientHandle handle) {
        return *reinterpret_cast<ClientHandle*>(handle);
    }
    static int idOf(ScenelibOpHandle handle) { return handle ? from(handle).id : 0; }
    static ScenelibOpHandle makeOp(const StatePointer& state, int id) {
        return reinterpret_cast<ScenelibOpHandle>(new Op{state, id});
    }

    /// Records `entry clientN rest` and answers the client.
    static ScriptedClient& called(const char* entry, ScenelibClientHandle handle,
                                  const std::string& rest = "") {
        ClientHandle& client = from(handle);
        client.state->call(std::string(entry) + " client" + std::to_string(client.client->number) +
                           (rest.empty() ? "" : " " + rest));
        return *client.client;
    }

    static void releaseRuntime(ScenelibRuntimeHandle handle) {
        from(handle).state->call("releaseRuntime");
        delete &from(handle);
    }
    static ScenelibTransactionHandle createTransaction(ScenelibRuntimeHandle handle) {
        const StatePointer& state = from(handle).state;
        state->call("createTransaction");
        return reinterpret_cast<ScenelibTransactionHandle>(new Transaction{state});
    }
    static std::int64_t commit(ScenelibRuntimeHandle handle, ScenelibTransactionHandle) {
        State& state = *from(handle).state;
        state.call("commit " + std::to_string(++state.lastCommit));
        return state.lastCommit;
    }
    static const char* getRootLocationPath(ScenelibRuntimeHandle handle) {
        from(handle).state->call("getRootLocationPath");
        return "/root";
    }
    static ScenelibOpHandle getOpFromOpId(ScenelibRuntimeHandle handle, int id) {
        const StatePointer& state = from(handle).state;
        state->call("getOpFromOpId " + std::to_string(id));
        return state->ops.count(id) != 0 ? makeOp(state, id) : nullptr;
    }
    static int isProcessing(ScenelibRuntimeHandle handle) {
        from(handle).state->call("isProcessing");
        return from(handle).state->isProcessing ? 1 : 0;
    }
    static void flushCaches(ScenelibRuntimeHandle handle) {
        from(handle).state->call("flushCaches");
    }

    static void releaseTransaction(ScenelibTransactionHandle handle) {
        from(handle).state->call("releaseTransaction");
        delete &from(handle);
    }
    static ScenelibClientHandle createClient(ScenelibTransactionHandle handle) {
        const StatePointer& state = from(handle).state;
        auto client = std::make_shared<ScriptedClient>();
        client->number = static_cast<int>(state->clients.size()) + 1;
        state->clients.push_back(client);
        state->call("createClient client" + std::to_string(client->number));
        return reinterpret_cast<ScenelibClientHandle>(new ClientHandle{state, client});
    }
    static ScenelibOpHandle createOp(ScenelibTransactionHandle handle) {
        const StatePointer& state = from(handle).state;
        state->ops.insert(++state->lastOp);
        state->call("createOp " + opText(state->lastOp));
        return makeOp(state, state->lastOp);
    }
    static void setClientOp(ScenelibTransactionHandle, ScenelibClientHandle client,
                            ScenelibOpHandle op) {
        called("setClientOp", client, opText(idOf(op))).viewedOp = idOf(op);
    }
    static void setOpArgs(ScenelibTransactionHandle handle, ScenelibOpHandle op, const char* opType,
                          VlAttributeStruct* args) {
        from(handle).state->call("setOpArgs " + opText(idOf(op)) + " " + opType + " " +
                                 textOf(args));
    }
    static void setOpInputs(ScenelibTransactionHandle handle, ScenelibOpHandle op,
                            const ScenelibOpHandle* inputs, std::uint32_t count) {
        std::vector<std::string> names;
        for (std::uint32_t i = 0; i < count; ++i) {
            names.push_back(opText(idOf(inputs[i])));
        }
        from(handle).state->call("setOpInputs " + opText(idOf(op)) + " " + listText(names));
    }

    static void releaseOp(ScenelibOpHandle handle) {
        from(handle).state->call("releaseOp " + opText(idOf(handle)));
        delete &from(handle);
    }
    static int getOpId(ScenelibOpHandle handle) {
        from(handle).state->call("getOpId " + opText(idOf(handle)));
        return idOf(handle);
    }

    static void releaseClient(ScenelibClientHandle handle) {
        called("releaseClient", handle).isReleased = true;
        delete &from(handle);
    }
    static void setEventCachingEnabled(ScenelibClientHandle handle, int isEnabled) {
        called("setEventCachingEnabled", handle, std::to_string(isEnabled)).isCaching =
            isEnabled != 0;
    }
    static void setAllOpen(ScenelibClientHandle handle, int isAllOpen) {
        called("setAllOpen", handle, std::to_string(isAllOpen)).isAllOpen = isAllOpen != 0;
    }
    static void setLocationsActive(ScenelibClientHandle handle, VlAttributeStruct* paths) {
        add(called("setLocationsActive", handle, listText(pathsOf(paths))).active, paths);
    }
    static void setLocationsInactive(ScenelibClientHandle handle, VlAttributeStruct* paths) {
        drop(called("setLocationsInactive", handle, listText(pathsOf(paths))).active, paths);
    }
    static void setLocationsOpen(ScenelibClientHandle handle, VlAttributeStruct* paths) {
        add(called("setLocationsOpen", handle, listText(pathsOf(paths))).open, paths);
    }
    static void setLocationsClosed(ScenelibClientHandle handle, VlAttributeStruct* paths) {
        drop(called("setLocationsClosed", handle, listText(pathsOf(paths))).open, paths);
    }
    static void add(std::set<std::string>& set, VlAttributeStruct* paths) {
        for (std::string& path : pathsOf(paths)) {
            set.insert(std::move(path));
        }
    }
    static void drop(std::set<std::string>& set, VlAttributeStruct* paths) {
        for (const std::string& path : pathsOf(paths)) {
            set.erase(path);
        }
    }

    static VlAttributeStruct* getActiveLocations(ScenelibClientHandle handle, const char* root) {
        const std::string below = root ? root : "";
        std::vector<std::string> paths;
        for (const std::string& path : called("getActiveLocations", handle, below).active) {
            if (below.empty() || path == below || path.rfind(below + "/", 0) == 0) {
                paths.push_back(path);
            }
        }
        return StringAttribute(paths).detach();
    }
    static int isLocationActive(ScenelibClientHandle handle, const char* path) {
        return static_cast<int>(called("isLocationActive", handle, path).active.count(path));
    }
    static int isLocationDataCurrent(ScenelibClientHandle handle, const char* path,
                                     std::int64_t commitId) {
        const ScriptedClient& client =
            called("isLocationDataCurrent", handle, path + (" " + std::to_string(commitId)));
        return client.isCurrent && client.isCurrent(path, commitId) ? 1 : 0;
    }
    static int getCachedLocation(ScenelibClientHandle handle, const char* path,
                                 ScenelibLocationRecord* record) {
        const ScriptedClient& client = called("getCachedLocation", handle, path);
        const auto found = client.cached.find(path);
        if (found == client.cached.end()) {
            return 0;
        }
        ScriptedClient::fill(*record, found->second);
        record->path = nullptr;
        record->pathLength = 0;
        return 1;
    }
    static std::uint32_t getLocationEvents(ScenelibClientHandle handle,
                                           ScenelibLocationRecord* records, std::uint32_t capacity,
                                           int isContinuation, std::size_t* left) {
        ScriptedClient& client = *from(handle).client;
        if (!isContinuation) {
            called("getLocationEvents", handle);
            client.leftOfDrain = client.events.size();
        }
        const std::size_t count = std::min<std::size_t>(capacity, client.leftOfDrain);
        const auto end = client.events.begin() + static_cast<std::ptrdiff_t>(count);
        client.fetched.assign(std::make_move_iterator(client.events.begin()),
                              std::make_move_iterator(end));
        client.events.erase(client.events.begin(), end);
        client.leftOfDrain -= count;
        *left = client.leftOfDrain;
        for (std::size_t i = 0; i < count; ++i) {
            ScriptedClient::fill(records[i], client.fetched[i]);
            if (client.isCaching) {
                client.cached[client.fetched[i].path] = client.fetched[i];
            }
        }
        return static_cast<std::uint32_t>(count);
    }
    static int hasLocationEvents(ScenelibClientHandle handle) {
        return called("hasLocationEvents", handle).events.empty() ? 0 : 1;
    }

public:
    static const ScenelibRuntimeSuite& suite() {
        static const ScenelibRuntimeSuite kSuite = {&releaseRuntime,
                                                    &createTransaction,
                                                    &commit,
                                                    &getRootLocationPath,
                                                    &getOpFromOpId,
                                                    &isProcessing,
                                                    &flushCaches,
                                                    &releaseTransaction,
                                                    &createClient,
                                                    &createOp,
                                                    &setClientOp,
                                                    &setOpArgs,
                                                    &setOpInputs,
                                                    &releaseOp,
                                                    &getOpId,
                                                    &releaseClient,
                                                    &setEventCachingEnabled,
                                                    &setAllOpen,
                                                    &setLocationsActive,
                                                    &setLocationsInactive,
                                                    &setLocationsOpen,
                                                    &setLocationsClosed,
                                                    &getActiveLocations,
                                                    &isLocationActive,
                                                    &isLocationDataCurrent,
                                                    &getCachedLocation,
                                                    &getLocationEvents,
                                                    &hasLocationEvents};
        return kSuite;
    }

    static void create(const char* typeName, ScenelibRuntimeHandle* runtime,
                       const ScenelibRuntimeSuite** suiteOut) {
        *runtime = nullptr;
        *suiteOut = nullptr;
        if (current) {
            create(current, typeName, runtime, suiteOut);
        }
    }
    static void createIndependent(ScenelibRuntimeHandle* runtime,
                                  const ScenelibRuntimeSuite** suiteOut) {
        *runtime = nullptr;
        *suiteOut = nullptr;
        if (currentIndependent) {
            create(currentIndependent, "independent", runtime, suiteOut);
        }
    }
    static void create(const StatePointer& state, const char* typeName,
                       ScenelibRuntimeHandle* runtime, const ScenelibRuntimeSuite** suiteOut) {
        state->call(std::string("createRuntime ") + typeName);
        const ScriptedRuntime::Refusal refusal =
            std::exchange(state->refusal, ScriptedRuntime::Refusal::None);
        if (refusal != ScriptedRuntime::Refusal::NoRuntime) {
            *runtime = reinterpret_cast<ScenelibRuntimeHandle>(new Runtime{state});
            // A refusal of the suite leaves a handle that nobody can release.
            static std::vector<std::unique_ptr<Runtime>> orphans;
            if (refusal == ScriptedRuntime::Refusal::NoSuite) {
                orphans.emplace_back(&from(*runtime));
            }
        }
        if (refusal != ScriptedRuntime::Refusal::NoSuite) {
            *suiteOut = &suite();
        }
    }

    static const ScenelibRuntimeHostSuite& hostSuite() {
        static const ScenelibRuntimeHostSuite kHostSuite = {&create};
        return kHostSuite;
    }

    static const ScenelibServicesHostSuite& servicesSuite() {
        static const ScenelibServicesHostSuite kServicesSuite = {&createIndependent};
        return kServicesSuite;
    }

    static inline StatePointer current;
    static inline StatePointer currentIndependent;
};

void ScriptedClient::report(std::string_view path, GroupAttribute attributes,
                            std::vector<std::string> children) {
    events.push_back({std::string(path), std::move(attributes), std::move(children), true});
}

void ScriptedClient::reportGone(std::string_view path) {
    events.push_back({std::string(path), GroupAttribute(), {}, false});
}

void ScriptedClient::cache(std::string_view path, GroupAttribute attributes,
                           std::vector<std::string> children) {
    cached[std::string(path)] = {std::string(path), std::move(attributes), std::move(children),
                                 true};
}

void ScriptedClient::cacheGone(std::string_view path) {
    cached[std::string(path)] = {std::string(path), GroupAttribute(), {}, false};
}

void ScriptedClient::fill(ScenelibLocationRecord& record, const Location& location) {
    record.path = location.path.c_str();
    record.pathLength = location.path.size();
    record.attrs = location.attributes.getRetainedHandle();
    record.potentialChildren = StringAttribute(location.children).detach();
    record.exists = location.exists ? 1 : 0;
}

ScriptedRuntime::ScriptedRuntime(Unregistered) : state(std::make_shared<State>()) {}

ScriptedRuntime::ScriptedRuntime()
    : state(std::make_shared<State>()), services(new ScriptedRuntime(Unregistered())) {
    ScriptedRuntimeTable::current = state;
    ScriptedRuntimeTable::currentIndependent = services->state;
    VlPluginSystem::addHostSuite(&ScriptedRuntimeTable::servicesSuite(),
                                 SCENELIB_SERVICES_HOST_SUITE_NAME,
                                 SCENELIB_SERVICES_HOST_SUITE_VERSION);
    VlPluginSystem::addHostSuite(&ScriptedRuntimeTable::hostSuite(),
                                 SCENELIB_RUNTIME_HOST_SUITE_NAME,
                                 SCENELIB_RUNTIME_HOST_SUITE_VERSION);
}

ScriptedRuntime::~ScriptedRuntime() {
    if (!services) {
        return;
    }
    withdraw();
    withdrawServices();
    ScriptedRuntimeTable::current = nullptr;
    ScriptedRuntimeTable::currentIndependent = nullptr;
}

void ScriptedRuntime::withdrawServices() {
    VlPluginSystem::addHostSuite(nullptr, SCENELIB_SERVICES_HOST_SUITE_NAME,
                                 SCENELIB_SERVICES_HOST_SUITE_VERSION);
}

void ScriptedRuntime::withdraw() {
    VlPluginSystem::addHostSuite(nullptr, SCENELIB_RUNTIME_HOST_SUITE_NAME,
                                 SCENELIB_RUNTIME_HOST_SUITE_VERSION);
}

std::vector<std::string> ScriptedRuntime::takeCalls() {
    return std::exchange(state->calls, {});
}

std::vector<std::string> ScriptedRuntime::takeCommands() {
    static const std::set<std::string, std::less<>> kQueries = {
        "getOpId",           "getRootLocationPath", "isProcessing",       "hasLocationEvents",
        "getLocationEvents", "getActiveLocations",  "isLocationActive",   "isLocationDataCurrent",
        "getCachedLocation", "releaseRuntime",      "releaseTransaction", "releaseOp",
        "releaseClient"};
    std::vector<std::string> calls = takeCalls();
    std::erase_if(calls, [](const std::string& line) {
        return kQueries.count(line.substr(0, line.find(' '))) != 0;
    });
    return calls;
}

ScriptedClient& ScriptedRuntime::client(int number) {
    return *state->clients.at(static_cast<std::size_t>(number) - 1);
}

int ScriptedRuntime::getNumberOfClients() const {
    return static_cast<int>(state->clients.size());
}

int ScriptedRuntime::addOp() {
    state->ops.insert(++state->lastOp);
    return state->lastOp;
}

void ScriptedRuntime::refuse(Refusal refusal) {
    state->refusal = refusal;
}

void ScriptedRuntime::setProcessing(bool isProcessing) {
    state->isProcessing = isProcessing;
}

} // namespace ViewerAPI::test
