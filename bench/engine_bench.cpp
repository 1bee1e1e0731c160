// The scene engine alone, as one client sees it: engine_bench [leaves...]
//
// cook      a scene of sets, groups and leaves is viewed and wholly opened; until all is cooked
// fetch     until all its events have been fetched
// edit-one  one leaf is changed, until its event has been fetched; and how many
//           locations are cooked for it

#include "measure.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlPluginSystem/PluginManager.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelib/ScenelibRuntimeSuite.h"
#include "VlScenelib/Transaction.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <chrono>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
namespace Graph = VlScenelibEngine::ApplicationGraph;

std::shared_ptr<VlScenelib::ScenelibRuntime> applicationRuntime() {
    const auto* host = static_cast<const ScenelibRuntimeHostSuite*>(PluginManager::getHostSuite(
        SCENELIB_RUNTIME_HOST_SUITE_NAME, SCENELIB_RUNTIME_HOST_SUITE_VERSION));
    ScenelibRuntimeHandle handle = nullptr;
    const ScenelibRuntimeSuite* suite = nullptr;
    host->create("runtime-async", &handle, &suite);
    return VlScenelib::ScenelibRuntime::CreateAndSteal(handle, suite);
}

void settle() {
    if (!Graph::waitUntilIdle(std::chrono::minutes(5))) {
        throw std::runtime_error("the engine does not settle");
    }
}

VlAttribute::GroupAttribute editArgs(double x) {
    return GroupBuilder()
        .set("staticScene.c.set_0.c.group_0.c.leaf_0.a.xform.translate",
             DoubleAttribute({x, 0.0, 0.0}, 3))
        .build();
}

void measureEngine(long leaves, bench::Sample& sample) {
    VlScenelibEngine::registerScenelibEngine();
    Graph::Transaction graph;
    const int scene = graph.createOp(
        "Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))}});
    const int edit = graph.createOp("Scene.Literal", editArgs(0.0));
    const int merged = graph.createOp("Scene.Merge", {}, {scene, edit});
    graph.commit();

    const auto runtime = applicationRuntime();
    const auto transaction = runtime->createTransaction();
    const auto client = transaction->createClient();
    transaction->setClientOp(client, runtime->getOpFromOpId(merged));
    runtime->commit(transaction);
    settle();

    std::vector<VlScenelib::LocationEvent> events;
    sample.set("cook", "total_ms", bench::timeMs([&] {
                   client->setAllOpen(true);
                   client->setLocationsActive(StringAttribute("/root"));
                   settle();
               }));
    sample.set("fetch", "total_ms", bench::timeMs([&] { client->getLocationEvents(events, -1); }));
    sample.set("fetch", "events", static_cast<double>(events.size()));

    std::vector<double> edits;
    const std::uint64_t cooksBefore = Graph::getNumberOfCooks();
    for (int i = 1; i <= 15; ++i) {
        edits.push_back(bench::timeMs([&] {
            graph.setOpArgs(edit, "Scene.Literal", editArgs(i));
            graph.commit();
            do {
                client->getLocationEvents(events, -1);
            } while (events.empty());
        }));
    }
    sample.set("edit-one", "median_us", 1000.0 * bench::median(edits));
    settle();
    sample.set("edit-one", "cooks",
               static_cast<double>(Graph::getNumberOfCooks() - cooksBefore) / 15.0);
}

} // namespace

int main(int argc, char** argv) {
    bool isGood = true;
    for (const long leaves : bench::parseSizes(argc, argv, {10000, 100000, 1000000})) {
        isGood =
            bench::repeat(leaves, 3,
                          [leaves](bench::Sample& sample) { measureEngine(leaves, sample); }) &&
            isGood;
    }
    return isGood ? 0 : 1;
}
