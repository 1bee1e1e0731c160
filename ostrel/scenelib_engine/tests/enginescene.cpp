#include "enginescene.h"

#include "runtimesuite.h"

#include "VlScenelibEngine/ScenelibEngine.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gtest/gtest.h>

#include <utility>

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::LocationEvent;

EngineScene::EngineScene(int workers)
    : EngineScene(std::make_shared<VlScenelibEngine::Engine>(workers)) {}

EngineScene::EngineScene(std::shared_ptr<VlScenelibEngine::Engine> theEngine)
    : engine(std::move(theEngine)) {
    VlScenelibEngine::registerScenelibEngine();
    runtime = VlScenelib::ScenelibRuntime::CreateAndSteal(VlScenelibEngine::createRuntime(engine),
                                                          VlScenelibEngine::getRuntimeSuite());
}

EngineScene::OpPtr EngineScene::createOp(const std::string& type, const GroupAttribute& args,
                                         const std::vector<OpPtr>& inputs) {
    const auto transaction = runtime->createTransaction();
    OpPtr op = transaction->createOp();
    transaction->setOpArgs(op, type, args);
    transaction->setOpInputs(op, inputs);
    runtime->commit(transaction);
    return op;
}

std::int64_t EngineScene::setArgs(const OpPtr& op, const std::string& type,
                                  const GroupAttribute& args) {
    const auto transaction = runtime->createTransaction();
    transaction->setOpArgs(op, type, args);
    return runtime->commit(transaction);
}

std::int64_t EngineScene::setInputs(const OpPtr& op, const std::vector<OpPtr>& inputs) {
    const auto transaction = runtime->createTransaction();
    transaction->setOpInputs(op, inputs);
    return runtime->commit(transaction);
}

EngineScene::ClientPtr EngineScene::createClient(const OpPtr& op) {
    const auto transaction = runtime->createTransaction();
    ClientPtr client = transaction->createClient();
    transaction->setClientOp(client, op);
    runtime->commit(transaction);
    return client;
}

void EngineScene::setOp(const ClientPtr& client, const OpPtr& op) {
    const auto transaction = runtime->createTransaction();
    transaction->setClientOp(client, op);
    runtime->commit(transaction);
}

void EngineScene::settle() {
    ASSERT_TRUE(engine->waitUntilIdle(std::chrono::minutes(1))) << "the engine does not settle";
}

std::vector<std::string> EngineScene::fetch(const ClientPtr& client) {
    settle();
    client->getLocationEvents(events, -1);
    std::vector<std::string> lines;
    for (const LocationEvent& event : events) {
        lines.push_back((event.getLocationData().doesLocationExist() ? "+" : "-") +
                        std::string(event.getLocationPath()));
    }
    return lines;
}

std::vector<std::string> EngineScene::fetchNow(const ClientPtr& client) {
    std::vector<LocationEvent> now;
    client->getLocationEvents(now, -1);
    std::vector<std::string> lines;
    for (const LocationEvent& event : now) {
        lines.push_back((event.getLocationData().doesLocationExist() ? "+" : "-") +
                        std::string(event.getLocationPath()));
    }
    return lines;
}

GroupAttribute EngineScene::getFetched(const std::string& path) const {
    GroupAttribute attrs;
    for (const LocationEvent& event : events) {
        if (event.getLocationPath() == path) {
            attrs = event.getLocationData().getAttrs();
        }
    }
    return attrs;
}

std::uint64_t EngineScene::countCooks() {
    const std::uint64_t now = engine->getNumberOfCooks();
    return now - std::exchange(cooksBefore, now);
}

StringAttribute paths(std::initializer_list<std::string_view> list) {
    return StringAttribute(list);
}

GroupAttribute literalArgs(const std::vector<LiteralRow>& rows) {
    GroupBuilder scene;
    scene.set("a", GroupAttribute::Empty());
    for (const LiteralRow& row : rows) {
        std::string level;
        // The first name is the root's, which is the top level.
        std::size_t slash = row.path.find('/', 1);
        while (slash != std::string::npos) {
            const std::size_t next = row.path.find('/', slash + 1);
            level += "c." + row.path.substr(slash + 1, next - slash - 1) + ".";
            slash = next;
        }
        scene.set(level + "a.value", IntAttribute(row.value));
    }
    return GroupAttribute{{"staticScene", scene.build()}};
}
