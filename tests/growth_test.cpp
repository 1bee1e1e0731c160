// How the cost of a viewer grows with the scene, over the real engine: counted in cooks, in events
// to the plug-in and in allocations of the thread that pumps, and not in seconds.

#include "allocationcounter.h"
#include "optionidgenerator.h"
#include "suites/hostsuites.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace ViewerAPI::test {
namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlScenelibEngine::ApplicationGraph::getNumberOfCooks;
using VlScenelibEngine::ApplicationGraph::Transaction;
using VlScenelibEngine::ApplicationGraph::waitUntilIdle;

struct Cost {
    std::uint64_t cooks = 0;
    double events = 0.0;
    int allocations = 0;

    friend bool operator==(const Cost&, const Cost&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Cost& cost) {
        return out << cost.cooks << " cooks, " << cost.events << " events, " << cost.allocations
                   << " allocations";
    }
};

/// Sets of 10 groups of 100 leaves, wholly open, with an op for edits on top, shown by a plug-in
/// that reads every world matrix.
class GrownScene {
public:
    explicit GrownScene(int leafCount) : leaves(leafCount) {
        registerHostSuites();
        VlScenelibEngine::registerScenelibEngine();
        VlPluginSystem::loadLibrary(BENCH_PLUGINS);
        delegate = std::make_unique<VlViewerDelegateHostStruct>("CountingDelegate", nullptr);
        delegate->setBoundingBoxesEnabled(false);
        Transaction transaction;
        const int scene =
            transaction.createOp("Scene.Generate", {{"leafCount", IntAttribute(leaves)}});
        edits = transaction.createOp("Scene.Edit", {}, {scene});
        transaction.commit();
        for (int set = 0; set * 1000 < leaves; ++set) {
            const std::string path = "/root/set_" + std::to_string(set);
            call(&VlViewerDelegateHostStruct::openLocations, path);
            for (int group = 0; group < 10; ++group) {
                call(&VlViewerDelegateHostStruct::openLocations,
                     path + "/group_" + std::to_string(group));
            }
        }
        call(&VlViewerDelegateHostStruct::openLocations, "/root");
    }

    [[nodiscard]] int getNumberOfLocations() const {
        return 1 + leaves + leaves / 100 + leaves / 1000;
    }

    Cost populate() {
        return costOf([this] { delegate->setViewOp(edits); });
    }
    /// Moves one leaf in the op graph.
    Cost edit(double x) {
        return costOf([&] {
            Transaction transaction;
            transaction.setOpArgs(edits, "Scene.Edit",
                                  GroupBuilder()
                                      .set("edits.c.set_3.c.group_4.c.leaf_5.a.xform.translate",
                                           DoubleAttribute({x, 0.0, 0.0}, 3))
                                      .build());
            transaction.commit();
        });
    }
    Cost hide(const std::string& path) {
        return costOf([&] { call(&VlViewerDelegateHostStruct::hideLocations, path); });
    }
    Cost show(const std::string& path) {
        return costOf([&] { call(&VlViewerDelegateHostStruct::unhideLocations, path); });
    }
    Cost pump() {
        return costOf([] {});
    }

private:
    using ListMethod = void (VlViewerDelegateHostStruct::*)(const char* const*, std::uint32_t);
    void call(ListMethod method, const std::string& path) {
        const char* const paths[] = {path.c_str()};
        (delegate.get()->*method)(paths, 1);
    }

    /// Of the change, and of one pump once it is cooked.
    template <class Change>
    Cost costOf(Change&& change) {
        const double events = readEvents();
        const std::uint64_t cooks = getNumberOfCooks();
        change();
        EXPECT_TRUE(waitUntilIdle(std::chrono::minutes(2)));
        const int allocations = allocationCount();
        delegate->processLocationEvents();
        Cost cost;
        cost.allocations = allocationCount() - allocations;
        EXPECT_FALSE(delegate->isProcessing());
        cost.cooks = getNumberOfCooks() - cooks;
        cost.events = readEvents() - events;
        return cost;
    }
    double readEvents() {
        const std::uint64_t id = VlOptionIdGeneratorHostStruct::instance().generate("events");
        return DoubleAttribute(delegate->getOption(id)).getValue();
    }

    const int leaves;
    std::unique_ptr<VlViewerDelegateHostStruct> delegate;
    int edits = 0;
};

/// A million where that takes seconds and not minutes.
std::vector<int> sizes() {
#ifdef NDEBUG
    return {10000, 100000, 1000000};
#else
    return {10000, 50000};
#endif
}

class Growth : public testing::Test {
protected:
    /// The same of scenes of all sizes, each of them shown before.
    template <class Measure>
    void expectSameCost(Measure&& measure) {
        Cost first;
        for (const int leaves : sizes()) {
            GrownScene scene(leaves);
            scene.populate();
            const Cost cost = measure(scene);
            if (leaves == sizes().front()) {
                first = cost;
            }
            EXPECT_EQ(cost, first) << "with " << leaves << " leaves";
        }
    }
};

TEST_F(Growth, populatingCostsTheSameForEachLocation) {
    double firstCooks = 0.0;
    double firstAllocations = 0.0;
    for (const int leaves : sizes()) {
        GrownScene scene(leaves);
        const Cost cost = scene.populate();
        const double locations = scene.getNumberOfLocations();
        EXPECT_EQ(cost.events, locations);
        const double cooks = static_cast<double>(cost.cooks) / locations;
        const double allocations = cost.allocations / locations;
        if (leaves == sizes().front()) {
            firstCooks = cooks;
            firstAllocations = allocations;
        }
        EXPECT_NEAR(cooks, firstCooks, 0.01 * firstCooks) << "with " << leaves << " leaves";
        EXPECT_NEAR(allocations, firstAllocations, 0.2 * firstAllocations)
            << "with " << leaves << " leaves";
    }
}

TEST_F(Growth, anEditCostsWhatItChanges) {
    expectSameCost([](GrownScene& scene) {
        scene.edit(1.0); // the first makes its way through the op
        const Cost cost = scene.edit(2.0);
        EXPECT_EQ(cost.events, 1.0);
        return cost;
    });
}

TEST_F(Growth, hidingAndShowingCostWhatIsBelow) {
    expectSameCost([](GrownScene& scene) {
        EXPECT_EQ(scene.hide("/root/set_1/group_2/leaf_3").events, 1.0);
        EXPECT_EQ(scene.hide("/root/set_2/group_2").events, 101.0);
        const Cost hiding = scene.hide("/root/set_4");
        EXPECT_EQ(hiding.events, 1011.0);
        EXPECT_EQ(hiding.cooks, 0U);
        const Cost showing = scene.show("/root/set_4");
        EXPECT_EQ(showing.events, 1011.0);
        EXPECT_EQ(showing.cooks, 0U);
        return hiding;
    });
}

TEST_F(Growth, aPumpWithoutNewsCostsNothingOfTheScene) {
    expectSameCost([](GrownScene& scene) {
        const Cost cost = scene.pump();
        EXPECT_EQ(cost.cooks, 0U);
        EXPECT_EQ(cost.events, 0.0);
        EXPECT_EQ(cost.allocations, 0);
        return cost;
    });
}

} // namespace
} // namespace ViewerAPI::test
