// Work that ends before its time: what nobody wants any more, and engines that stop.

#include "enginescene.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// A root with ten thousand children, of which the first keeps its cook busy until it is told.
class Wide final : public VlScenelibEngine::OpType {
public:
    [[nodiscard]] VlScenelibEngine::CookResult
    cook(VlScenelibEngine::CookContext& context) const override {
        if (context.isRoot()) {
            std::vector<std::string> names;
            for (int i = 0; i < 10000; ++i) {
                names.push_back("child_" + std::to_string(i));
            }
            return {GroupAttribute(), VlScenelibEngine::ChildList::create(StringAttribute(names))};
        }
        if (context.getName() == "child_0") {
            isReached = true;
            isReached.notify_all();
            mayEnd.wait(false);
        }
        return {GroupAttribute()};
    }

    mutable std::atomic<bool> isReached{false};
    mutable std::atomic<bool> mayEnd{false};
};

TEST(Cancels, whatNobodyWantsAnyMoreIsNotCooked) {
    const auto end = [](VlScenelib::Client& client, bool isDeactivation) {
        isDeactivation ? client.setLocationsInactive(paths({"/root"}))
                       : client.setLocationsClosed(paths({"/root"}));
    };
    for (const bool isDeactivation : {true, false}) {
        const auto wide = std::make_shared<Wide>();
        VlScenelibEngine::registerOpType("Test.Wide", wide);
        EngineScene scene(1);
        const auto client = scene.createClient(scene.createOp("Test.Wide"));
        client->setLocationsOpen(paths({"/root"}));
        client->setLocationsActive(paths({"/root"}));
        wide->isReached.wait(false);
        end(*client, isDeactivation);
        wide->mayEnd = true;
        wide->mayEnd.notify_all();
        scene.settle();
        // The root, the one under way, and one for each other piece of the batch under way.
        EXPECT_LE(scene.countCooks(), 6U) << isDeactivation;
        client->setLocationsActive(paths({"/root"}));
        client->setLocationsOpen(paths({"/root"}));
        EXPECT_EQ(scene.fetch(client).size(), 10001U);
    }
}

TEST(Cancels, stopsCleanlyAtAnyMoment) {
    for (int round = 0; round < 40; ++round) {
        EngineScene scene;
        const auto op = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(100000)}});
        auto client = scene.createClient(op);
        client->setAllOpen(true);
        client->setLocationsActive(paths({"/root"}));
        for (int fetches = 0; fetches < round; ++fetches) {
            EngineScene::fetchNow(client);
        }
        if (round % 2 == 0) {
            scene.setArgs(op, "Scene.Generate", {{"leafCount", IntAttribute(50000 + round)}});
        }
        if (round % 3 == 0) {
            client.reset();
        }
    }
}

TEST(Cancels, requestsFromSeveralThreadsAreSafe) {
    EngineScene scene;
    const auto op = scene.createOp("Scene.Generate", {{"leafCount", IntAttribute(5000)}});
    const auto client = scene.createClient(op);
    client->setLocationsActive(paths({"/root"}));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 50; ++i) {
                if (thread == 0) {
                    client->setAllOpen(i % 2 == 0);
                } else if (thread == 1) {
                    EngineScene::fetchNow(client);
                } else {
                    scene.setArgs(op, "Scene.Generate",
                                  {{"leafCount", IntAttribute(1000 * (i % 5))}});
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    client->setAllOpen(true);
    scene.setArgs(op, "Scene.Generate", {{"leafCount", IntAttribute(100)}});
    scene.fetch(client);
    EXPECT_TRUE(client->isLocationDataCurrent("/root/set_0/group_0/leaf_99", -1));
}

} // namespace
