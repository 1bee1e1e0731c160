#include "sceneclients.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlPluginSystem/PluginManager.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/Op.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelib/ScenelibRuntimeSuite.h"
#include "VlScenelib/Transaction.h"
#include "workingsetextraction.h"

#include <stdexcept>

namespace ViewerAPI {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::ScenelibRuntime;
using VlScenelib::Transaction;

constexpr const char* kRuntimeTypeName = "runtime-async";
constexpr const char* kResolveOpType = "WorkingSet.MultipleOnePassResolve";
constexpr const char* kPruneOpType = "WorkingSet.Prune";

StringAttribute toAttribute(const boost::unordered_set<std::string>& paths) {
    return StringAttribute(std::vector<std::string>(paths.begin(), paths.end()));
}

} // namespace

SceneEvents::SceneEvents() = default;
SceneEvents::~SceneEvents() = default;
SceneEvents::SceneEvents(SceneEvents&&) noexcept = default;
SceneEvents& SceneEvents::operator=(SceneEvents&&) noexcept = default;

SceneClients::SceneClients() = default;
SceneClients::~SceneClients() = default;

void SceneClients::createRuntime() {
    const auto* const host = static_cast<const ScenelibRuntimeHostSuite*>(
        PluginManager::getHostSuite("ScenelibRuntimeHost", 2));
    if (!host) {
        throw std::runtime_error("Error getting Scenelib Runtime Host suite.");
    }
    if (runtime) {
        return;
    }
    ScenelibRuntimeHandle handle = nullptr;
    const ScenelibRuntimeSuite* suite = nullptr;
    host->create(kRuntimeTypeName, &handle, &suite);
    if (!handle) {
        throw std::runtime_error("Error instantiating a Runtime object.");
    }
    if (!suite) {
        throw std::runtime_error("Error getting runtimeSuite for 'runtime-async'.");
    }
    runtime = ScenelibRuntime::CreateAndSteal(handle, suite);
}

void SceneClients::create() {
    createRuntime();
    const std::shared_ptr<Transaction> transaction = runtime->createTransaction();
    primaryClient = transaction->createClient();
    pinnedClient = transaction->createClient();
    sourcesClient = transaction->createClient();
    lookThroughClient = transaction->createClient();
    lookThroughClient->setEventCachingEnabled(true);
    if (!noOp) {
        noOp = transaction->createOp();
        transaction->setOpArgs(noOp, "no-op", GroupAttribute());
    }
    viewOp = noOp;
    createWorkingSetOps(*transaction);
    runtime->commit(transaction);
    primaryClient->setLocationsActive(StringAttribute(runtime->getRootLocationPath()));
    sourcesClient->setAllOpen(true);
}

void SceneClients::createWorkingSetOps(Transaction& transaction) {
    workingSetOps.push_back(transaction.createOp());
    workingSetOps.push_back(transaction.createOp());
    const auto& resolve = workingSetOps.front();
    const auto& prune = workingSetOps.back();
    transaction.setOpInputs(prune, {resolve});
    transaction.setOpArgs(prune, kPruneOpType,
                          GroupAttribute{{"groupName", StringAttribute(kWorkingSetsGroupName)}});
    setResolveArgs(transaction);
}

void SceneClients::setResolveArgs(Transaction& transaction) {
    GroupBuilder args;
    if (visibilityWorkingSet.isValid()) {
        args.set("workingSetsInfo.viewerVisibility", visibilityWorkingSet);
        args.set("workingSetsInfo.viewerVisibility.polish", IntAttribute(1));
        args.set("outputGroupName", StringAttribute(kWorkingSetsGroupName));
    }
    transaction.setOpArgs(workingSetOps.front(), kResolveOpType, args.build());
}

std::int64_t SceneClients::setViewOp(int opId) {
    if (viewOp && viewOp->getId() == opId) {
        return -1;
    }
    viewOp = runtime->getOpFromOpId(opId);
    return applyViewOp();
}

std::int64_t SceneClients::applyViewOp() {
    if (!workingSetVisibilityEnabled) {
        primaryClient->setAllOpen(false);
    }
    const std::shared_ptr<Transaction> transaction = runtime->createTransaction();
    if (workingSetVisibilityEnabled) {
        setResolveArgs(*transaction);
        transaction->setOpInputs(workingSetOps.front(), {viewOp});
        transaction->setClientOp(primaryClient, workingSetOps.back());
    } else {
        transaction->setClientOp(primaryClient, viewOp);
    }
    transaction->setClientOp(pinnedClient, viewOp);
    transaction->setClientOp(sourcesClient, viewOp);
    transaction->setClientOp(lookThroughClient, viewOp);
    const std::int64_t commitId = runtime->commit(transaction);
    if (workingSetVisibilityEnabled) {
        primaryClient->setAllOpen(true);
    }
    return commitId;
}

void SceneClients::setVisibilityWorkingSet(const GroupAttribute& workingSet) {
    if (workingSet == visibilityWorkingSet) {
        return;
    }
    visibilityWorkingSet = workingSet;
    const std::shared_ptr<Transaction> transaction = runtime->createTransaction();
    setResolveArgs(*transaction);
    runtime->commit(transaction);
}

void SceneClients::setWorkingSetVisibilityEnabled(bool isEnabled) {
    workingSetVisibilityEnabled = isEnabled;
    if (isEnabled) {
        StringAttribute active;
        pinnedClient->getActiveLocations(active, "");
        if (active.getNumberOfValues() > 0) {
            for (const auto& path : active.getNearestSample(0.0F)) {
                savedPinnedLocations.insert(path.str());
            }
            pinnedClient->setLocationsInactive(active);
        }
    }
    applyViewOp();
    if (!isEnabled) {
        pinnedClient->setLocationsActive(toAttribute(savedPinnedLocations));
        savedPinnedLocations.clear();
    }
}

void SceneClients::pinLocations(const StringAttribute& paths) {
    if (!workingSetVisibilityEnabled) {
        pinnedClient->setLocationsActive(paths);
        return;
    }
    for (const auto& path : paths.getNearestSample(0.0F)) {
        savedPinnedLocations.insert(path.str());
    }
}

void SceneClients::unpinLocations(const StringAttribute& paths) {
    if (!workingSetVisibilityEnabled) {
        pinnedClient->setLocationsInactive(paths);
        return;
    }
    for (const auto& path : paths.getNearestSample(0.0F)) {
        savedPinnedLocations.erase(path.str());
    }
}

SceneEvents SceneClients::fetchEvents(int eventLimit) {
    SceneEvents events;
    primaryClient->getLocationEvents(events.primary, eventLimit);
    if (!workingSetVisibilityEnabled) {
        pinnedClient->getLocationEvents(events.pinned, eventLimit);
    }
    sourcesClient->getLocationEvents(events.sources, eventLimit);
    lookThroughClient->getLocationEvents(events.lookThrough, eventLimit);
    return events;
}

bool SceneClients::hasEvents() const {
    return primaryClient->hasLocationEvents() ||
           (!workingSetVisibilityEnabled && pinnedClient->hasLocationEvents()) ||
           sourcesClient->hasLocationEvents() || lookThroughClient->hasLocationEvents();
}

} // namespace ViewerAPI
