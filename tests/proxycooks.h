#pragma once

#include "VlScenelib/ScenelibRuntimeSuite.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <utility>

namespace ViewerAPI::test {

/// "Test.Proxy": a root with the attributes `what`, as the int argument of that name says, and
/// `frame`, the current time, and one child. It counts how often each such root is cooked, and can
/// be held. One at a time.
class ProxyCooks {
public:
    /// What is cooked: `what` and the frame.
    using Job = std::pair<int, float>;

    ProxyCooks();
    /// Releases what is held.
    ~ProxyCooks();
    ProxyCooks(const ProxyCooks&) = delete;
    ProxyCooks& operator=(const ProxyCooks&) = delete;

    /// Cooks that begin from now on don't end before `release`.
    void hold();
    void release();
    /// By job, the number of its cooks since the last call.
    std::map<Job, int> take();

private:
    class Op;
    void cook(const Job& job);

    std::mutex mutex;
    std::condition_variable released;
    bool isHeld = false;
    std::map<Job, int> counts;
};

/// Counts the clients of the runtimes that "VlScenelibServicesHost" gives: each is the cook of a
/// proxy. Stands between the engine and those who ask for a runtime while it lives; one at a time.
class ProxyClients {
public:
    ProxyClients();
    ~ProxyClients();
    ProxyClients(const ProxyClients&) = delete;
    ProxyClients& operator=(const ProxyClients&) = delete;

    int made = 0;
    int alive = 0;
    int mostAlive = 0;

private:
    static void createRuntime(ScenelibRuntimeHandle* runtime, const ScenelibRuntimeSuite** suite);
    static ScenelibClientHandle createClient(ScenelibTransactionHandle transaction);
    static void releaseClient(ScenelibClientHandle client);

    const ScenelibServicesHostSuite* services = nullptr;
};

} // namespace ViewerAPI::test
