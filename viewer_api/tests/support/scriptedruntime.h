#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlScenelib/ScenelibRuntimeSuite.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ViewerAPI::test {

/// One client of a ScriptedRuntime: what it was asked for, and the script of what it reports.
/// Nothing is cooked: the test says what happens.
class ScriptedClient {
public:
    /// The location exists: one event that waits to be fetched.
    void report(std::string_view path,
                VlAttribute::GroupAttribute attributes = VlAttribute::GroupAttribute::Empty(),
                std::vector<std::string> children = {});
    /// The location does not exist.
    void reportGone(std::string_view path);

    /// What `getCachedLocation` answers. Fetched events go there too while event caching is on.
    void cache(std::string_view path, VlAttribute::GroupAttribute attributes,
               std::vector<std::string> children = {});
    void cacheGone(std::string_view path);

    int number = 0; ///< from 1, in the order of creation
    std::set<std::string> active;
    std::set<std::string> open;
    bool isAllOpen = false;
    bool isCaching = false;
    bool isReleased = false;
    int viewedOp = 0; ///< its id, 0 for none
    /// Answers `isLocationDataCurrent`; nothing is current while this is empty.
    std::function<bool(const std::string& path, std::int64_t commitId)> isCurrent;

    [[nodiscard]] std::size_t getNumberOfWaitingEvents() const { return events.size(); }

private:
    friend class ScriptedRuntimeTable;
    struct Location {
        std::string path;
        VlAttribute::GroupAttribute attributes;
        std::vector<std::string> children;
        bool exists = true;
    };

    static void fill(ScenelibLocationRecord& record, const Location& location);

    std::deque<Location> events;
    std::vector<Location> fetched; ///< lends its paths until the next call
    std::size_t leftOfDrain = 0;
    std::map<std::string, Location> cached;
};

/// A scene runtime whose every event a test decides. Registers itself as the host suite
/// "ScenelibRuntimeHost", version 2, and withdraws at its end; one stands at a time. Beside it
/// stands the one that "VlScenelibServicesHost", version 1, gives to whoever wants a runtime of
/// their own: `independent()`, with calls, clients and ops of its own.
///
/// Every call of the table is recorded as a line: the entry's name, then its arguments. Ops are
/// `op` and their id, clients `client` and their number, groups as `textOf` writes them, and lists
/// of paths as `[/root/a /root/b]`:
///
///     createRuntime runtime-async
///     createRuntime independent
///     createTransaction
///     createClient client1
///     setEventCachingEnabled client4 1
///     setOpArgs op1 no-op {}
///     setOpInputs op2 [op1 null]
///     setClientOp client1 op2
///     commit 1
///     setLocationsActive client1 [/root]
///     getLocationEvents client1
///     releaseClient client1
class ScriptedRuntime {
public:
    ScriptedRuntime();
    ~ScriptedRuntime();
    ScriptedRuntime(const ScriptedRuntime&) = delete;
    ScriptedRuntime& operator=(const ScriptedRuntime&) = delete;

    /// The lines since the last call of this or `takeCommands`.
    std::vector<std::string> takeCalls();
    /// The same without the entries that only ask: getOpId, getRootLocationPath, isProcessing,
    /// has- and getLocationEvents, getActiveLocations, isLocationActive, isLocationDataCurrent,
    /// getCachedLocation; and without releases.
    std::vector<std::string> takeCommands();

    /// By number, from 1. Throws std::out_of_range.
    ScriptedClient& client(int number);
    [[nodiscard]] int getNumberOfClients() const;
    /// An op of the application, for `getOpFromOpId`; its id.
    int addOp();

    /// What `Scenelib::createRuntime` gives, for as long as this object lives.
    ScriptedRuntime& independent() { return *services; }

    /// The host suite, or that of the independent runtime, is not there.
    void withdraw();
    void withdrawServices();
    /// How the next `create` fails.
    enum class Refusal { None, NoRuntime, NoSuite };
    void refuse(Refusal refusal);
    void setProcessing(bool isProcessing);

private:
    friend class ScriptedRuntimeTable;
    struct State;
    struct Unregistered {};
    explicit ScriptedRuntime(Unregistered);

    std::shared_ptr<State> state;
    std::unique_ptr<ScriptedRuntime> services; ///< null in the independent one itself
};

} // namespace ViewerAPI::test
