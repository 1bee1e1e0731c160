#include "proxycooks.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlPluginSystem/PluginManager.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/OpType.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <algorithm>
#include <memory>

namespace ViewerAPI::test {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ChildList;
using VlScenelibEngine::CookContext;
using VlScenelibEngine::CookResult;

namespace {

ProxyClients* counting = nullptr;
/// The engine's table, and the same with two entries that count.
const ScenelibRuntimeSuite* realSuite = nullptr;
ScenelibRuntimeSuite countingSuite;
ScenelibServicesHostSuite countingServices;

} // namespace

class ProxyCooks::Op final : public VlScenelibEngine::OpType {
public:
    explicit Op(ProxyCooks& cooks) : owner(cooks) {}

    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (!context.isRoot()) {
            return {GroupAttribute::Empty()};
        }
        const Job job(IntAttribute(context.getArg("what")).getValue(), context.getCurrentTime());
        owner.cook(job);
        return {GroupAttribute{{"what", IntAttribute(job.first)},
                               {"frame", FloatAttribute(job.second)}},
                ChildList::create(StringAttribute("part"))};
    }

private:
    ProxyCooks& owner;
};

ProxyCooks::ProxyCooks() {
    VlScenelibEngine::registerOpType("Test.Proxy", std::make_shared<Op>(*this));
}

ProxyCooks::~ProxyCooks() {
    release();
}

void ProxyCooks::hold() {
    const std::lock_guard lock(mutex);
    isHeld = true;
}

void ProxyCooks::release() {
    const std::lock_guard lock(mutex);
    isHeld = false;
    released.notify_all();
}

std::map<ProxyCooks::Job, int> ProxyCooks::take() {
    const std::lock_guard lock(mutex);
    return std::exchange(counts, {});
}

void ProxyCooks::cook(const Job& job) {
    std::unique_lock lock(mutex);
    ++counts[job];
    released.wait(lock, [this] { return !isHeld; });
}

ProxyClients::ProxyClients() {
    VlScenelibEngine::registerScenelibEngine();
    services = static_cast<const ScenelibServicesHostSuite*>(PluginManager::getHostSuite(
        SCENELIB_SERVICES_HOST_SUITE_NAME, SCENELIB_SERVICES_HOST_SUITE_VERSION));
    counting = this;
    countingServices = {createRuntime};
    VlPluginSystem::addHostSuite(&countingServices, SCENELIB_SERVICES_HOST_SUITE_NAME,
                                 SCENELIB_SERVICES_HOST_SUITE_VERSION);
}

ProxyClients::~ProxyClients() {
    VlPluginSystem::addHostSuite(services, SCENELIB_SERVICES_HOST_SUITE_NAME,
                                 SCENELIB_SERVICES_HOST_SUITE_VERSION);
    counting = nullptr;
}

void ProxyClients::createRuntime(ScenelibRuntimeHandle* runtime,
                                 const ScenelibRuntimeSuite** suite) {
    counting->services->createRuntime(runtime, &realSuite);
    countingSuite = *realSuite;
    countingSuite.createClient = createClient;
    countingSuite.releaseClient = releaseClient;
    *suite = &countingSuite;
}

ScenelibClientHandle ProxyClients::createClient(ScenelibTransactionHandle transaction) {
    ++counting->made;
    counting->mostAlive = std::max(counting->mostAlive, ++counting->alive);
    return realSuite->createClient(transaction);
}

void ProxyClients::releaseClient(ScenelibClientHandle client) {
    --counting->alive;
    realSuite->releaseClient(client);
}

} // namespace ViewerAPI::test
