#include "proxyruntime.h"

#include "vlviewerdelegatehost.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/LocationEvent.h"
#include "VlScenelib/Op.h"
#include "VlScenelib/Scenelib.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelib/Transaction.h"

#include <algorithm>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::StringAttribute;
using VlScenelib::LocationEvent;
using VlScenelib::Op;
using VlScenelib::Transaction;

namespace {

constexpr const char* kLoaderChannel = "getViewerProxyLoaderOp";
constexpr const char* kCollapseOpType = "HierarchyCollapse";

GroupAttribute groupOf(const GroupAttribute& parent, std::string_view dotted) {
    return GroupAttribute(parent.borrowChildByName(dotted));
}

/// Attributes that the args of one op of a proxy consist of.
GroupAttribute makeOpArgs(const GroupAttribute& op, const GroupAttribute& systemArgs) {
    GroupBuilder args;
    args.set("system", systemArgs);
    // On top: an op of the proxy may set what it takes from the system otherwise.
    args.deepUpdate(groupOf(op, "opArgs"));
    return args.build();
}

} // namespace

ProxyRuntime::ProxyRuntime() = default;

ProxyRuntime::~ProxyRuntime() = default;

void ProxyRuntime::setOwner(VlViewerDelegateHostStruct* delegate) {
    owner_ = delegate;
}

void ProxyRuntime::initialise() {
    runtime_ = VlScenelib::Scenelib().createRuntime();
}

SubmitStatus ProxyRuntime::submit(const ProxyJob& job) {
    if (inFlight_.size() >= kMaxInFlightCooks) {
        return SubmitStatus::Full;
    }
    if (inFlight_.contains(job.key)) {
        return SubmitStatus::Cooking;
    }
    const std::shared_ptr<Op> op = buildChain(getOps(job), job.systemArgs);
    if (!op) {
        return SubmitStatus::NoOp;
    }
    const std::shared_ptr<Transaction> transaction = runtime_->createTransaction();
    InFlightCook& cook = inFlight_[job.key];
    cook = {job.proxyAttrs, job.systemArgs, transaction->createClient()};
    transaction->setClientOp(cook.client, op);
    cook.client->setLocationsActive(StringAttribute(runtime_->getRootLocationPath()));
    runtime_->commit(transaction);
    return SubmitStatus::Cooking;
}

GroupAttribute ProxyRuntime::getOps(const ProxyJob& job) const {
    const Attribute& viewer = job.proxyAttrs.borrowChildByName("viewer");
    const StringAttribute filePath(viewer);
    if (!filePath.isValid()) {
        return GroupAttribute(viewer);
    }
    const FloatAttribute time(job.systemArgs.borrowChildByName("timeSlice.currentTime"));
    const GroupAttribute question{{"filePath", filePath}, {"frameTime", time}};
    const GroupAttribute answer(owner_->callPythonCallback(kLoaderChannel, question));
    return {{"__proxyOpLegacy", answer}};
}

std::shared_ptr<Op> ProxyRuntime::buildChain(const GroupAttribute& ops,
                                             const GroupAttribute& systemArgs) {
    const std::shared_ptr<Transaction> transaction = runtime_->createTransaction();
    std::shared_ptr<Op> last;
    const auto append = [&](const std::string& opType, const GroupAttribute& args) {
        const std::shared_ptr<Op> op = transaction->createOp();
        transaction->setOpArgs(op, opType, args);
        if (last) {
            transaction->setOpInputs(op, {last});
        }
        last = op;
    };
    for (std::int64_t index = 0; index < ops.getNumberOfChildren(); ++index) {
        const GroupAttribute op(ops.borrowChildByIndex(index));
        const StringAttribute opType(op.borrowChildByName("opType"));
        if (opType.isValid()) {
            append(opType.getValue(), makeOpArgs(op, systemArgs));
        }
    }
    if (last) {
        append(kCollapseOpType, GroupAttribute::Empty());
    }
    runtime_->commit(transaction);
    return last;
}

std::vector<ProxyRuntime::FinishedCook> ProxyRuntime::pollFinished() {
    std::vector<FinishedCook> finished;
    std::vector<LocationEvent> events;
    for (auto place = inFlight_.begin(); place != inFlight_.end();) {
        InFlightCook& cook = place->second;
        cook.client->getLocationEvents(events, 0);
        if (events.empty()) {
            ++place;
            continue;
        }
        finished.push_back({place->first, std::move(cook.proxyAttrs), std::move(cook.systemArgs),
                            groupOf(events.front().getLocationData().getAttrs(), "staticScene")});
        place = inFlight_.erase(place);
    }
    return finished;
}

void ProxyRuntime::clear() {
    inFlight_.clear();
    runtime_->flushCaches();
}

void ProxyRuntime::storeStaticScene(std::uint64_t key, const GroupAttribute& staticScene,
                                    std::map<std::uint64_t, ProxyResult>& results) {
    ProxyResult result{{"", groupOf(staticScene, "a")}};
    // Children that wait for their turn, and the location that they are children of.
    std::deque<std::pair<GroupAttribute, std::string>> pending{{groupOf(staticScene, "c"), ""}};
    while (!pending.empty()) {
        const auto [children, parent] = std::move(pending.front());
        pending.pop_front();
        std::vector<std::pair<std::string_view, std::int64_t>> order;
        for (std::int64_t index = 0; index < children.getNumberOfChildren(); ++index) {
            order.emplace_back(children.getChildName(index), index);
        }
        std::sort(order.begin(), order.end());
        for (const auto& [childName, index] : order) {
            const GroupAttribute child(children.borrowChildByIndex(index));
            std::string location = parent + "/" + std::string(childName);
            pending.emplace_back(groupOf(child, "c"), location);
            result.push_back({std::move(location), groupOf(child, "a")});
        }
    }
    results[key] = std::move(result);
}

} // namespace ViewerAPI
