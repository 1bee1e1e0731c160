// From the scene engine to a delegate plug-in, without an interpreter: scene_bench [leaves...]
//
// populate    a scene of sets, groups and leaves, each with a transform, is viewed and wholly
//             opened; until the plug-in has read every leaf's world matrix
// memory      what the process then occupies, per location
// edit-one    one leaf's transform is changed in the op graph, until the plug-in has read its new
//             world matrix
// hide-group  a set of 1,000 leaves is hidden, and shown again
// extent      the box around the whole scene is computed, and again after a leaf has moved
// select      10,000 leaves are selected
// drag        one of 1,000 manipulated values is set on a leaf, until the plug-in has read the
// leaf's
//             new world matrix; the last of them is final

#include "measure.h"

#include "manipulatorbridge.h"
#include "optionidgenerator.h"
#include "suites/hostsuites.h"
#include "suites/optionidgeneratorhostsuite.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace ViewerAPI;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr long kLeavesInSet = 1000;
constexpr long kLeavesInGroup = 100;
const std::string kEditedLeaf = "/root/set_0/group_0/leaf_0";

/// Stands for the application: takes every call and does nothing.
class CountingBridge final : public ManipulatorBridge {
public:
    bool setValue(const std::string&, const std::string&, const VlAttribute::Attribute&,
                  bool) override {
        return true;
    }
    bool isNodeEditable(const char*) override { return true; }
    void updateOp(int) override {}
    void updateOp(int, const std::string&) override {}
    VlAttribute::Attribute getValue(const std::string&, const std::string&) override { return {}; }
    std::int32_t getManipulationCommitId() override { return -2; }
    void openManipulationGroup(const std::string&) override {}
    void closeManipulationGroup(const std::string&) override {}
    void cleanupLiveAttributes(const std::string&) override { ++events; }

    long events = 0;
};

GroupAttribute translated(double x) {
    return GroupBuilder().set("translate", DoubleAttribute({x, 0.0, 0.0}, 3)).build();
}

/// A literal scene that consists of one leaf's transform.
GroupAttribute editArgs(double x) {
    return GroupBuilder()
        .set("staticScene.c.set_0.c.group_0.c.leaf_0.a.xform", translated(x))
        .build();
}

class Session {
public:
    explicit Session(long leaves) : leaves_(leaves) {
        registerHostSuites();
        VlScenelibEngine::registerScenelibEngine();
        if (VlPluginSystem::loadLibrary(BENCH_PLUGINS) != 1) {
            throw std::runtime_error("no plug-in in " BENCH_PLUGINS);
        }
        setManipulatorBridgeFactory([] { return std::make_unique<CountingBridge>(); });
        delegate_ = std::make_unique<VlViewerDelegateHostStruct>("CountingDelegate", nullptr);
        delegate_->setBoundingBoxesEnabled(false);

        Transaction transaction;
        const int scene = transaction.createOp(
            "Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))},
                               {"withGeometry", IntAttribute(0)}});
        edit_ = transaction.createOp("Scene.Literal", editArgs(0.0));
        viewed_ = transaction.createOp("Scene.Merge", {}, {scene, edit_});
        transaction.commit();
    }

    void openAll() {
        std::vector<std::string> paths = {"/root"};
        for (long set = 0; set * kLeavesInSet < leaves_; ++set) {
            const std::string setPath = "/root/set_" + std::to_string(set);
            paths.push_back(setPath);
            for (long group = 0; group < 10; ++group) {
                if (set * kLeavesInSet + group * kLeavesInGroup < leaves_) {
                    paths.push_back(setPath + "/group_" + std::to_string(group));
                }
            }
        }
        std::vector<const char*> pointers;
        for (const std::string& path : paths) {
            pointers.push_back(path.c_str());
        }
        delegate_->openLocations(pointers.data(), static_cast<std::uint32_t>(pointers.size()));
        numberOfLocations_ = static_cast<long>(paths.size()) + leaves_;
    }

    void view() { delegate_->setViewOp(viewed_); }

    /// Pumps until the plug-in's option has that value.
    void pumpUntil(const char* option, double value) {
        const double deadline = bench::nowMs() + 300000.0;
        while (read(option) != value) {
            if (bench::nowMs() > deadline) {
                throw std::runtime_error(std::string(option) + " is " +
                                         std::to_string(read(option)) + " and not " +
                                         std::to_string(value));
            }
            pumpMs += bench::timeMs([this] { delegate_->processLocationEvents(); });
            ++pumps;
            std::this_thread::yield(); // to the engine, where cores are few
        }
    }

    double read(const char* option) {
        return DoubleAttribute(delegate_->getOption(idOf(option))).getValue();
    }
    void reset() { delegate_->setOption(idOf("reset"), {}); }

    void edit(double x) {
        Transaction transaction;
        transaction.setOpArgs(edit_, "Scene.Literal", editArgs(x));
        transaction.commit();
    }
    void setHidden(bool isHidden) {
        const char* paths[] = {"/root/set_0"};
        if (isHidden) {
            delegate_->hideLocations(paths, 1);
        } else {
            delegate_->unhideLocations(paths, 1);
        }
        delegate_->processLocationEvents();
    }

    /// Of everything; 6 numbers.
    DoubleAttribute extent() {
        const char* paths[] = {"/root"};
        return delegate_->computeMergedExtent(paths, 1, "");
    }
    void select(const std::vector<const char*>& paths) {
        delegate_->setSelectedLocations(paths.data(), static_cast<std::uint32_t>(paths.size()));
    }
    /// As a manipulator does it.
    void drag(double x, bool isFinal) {
        if (!delegate_->setManipulatedAttribute(kEditedLeaf, "xform.translate",
                                                DoubleAttribute({x, 0.0, 0.0}, 3), isFinal)) {
            throw std::runtime_error("the leaf can't be manipulated");
        }
    }

    [[nodiscard]] long getNumberOfLocations() const { return numberOfLocations_; }

    double pumpMs = 0.0; ///< spent in the pump, without waiting for the engine
    long pumps = 0;

private:
    static std::uint64_t idOf(const char* name) {
        const OptionIdGeneratorHostSuite* suite = getOptionIdGeneratorHostSuite();
        return suite->generateOptionIdByName(suite->getOptionIdGenerator(), name);
    }

    const long leaves_;
    long numberOfLocations_ = 0;
    int edit_ = 0;
    int viewed_ = 0;
    std::unique_ptr<VlViewerDelegateHostStruct> delegate_;
};

void measureQuestions(Session& session, long leaves, bench::Sample& sample) {
    DoubleAttribute extent;
    sample.set("extent", "first_ms", bench::timeMs([&] { extent = session.extent(); }));
    if (extent.getNearestSample(0.0F).size() != 6) {
        throw std::runtime_error("the scene has no extent");
    }
    session.edit(2000.0);
    session.pumpUntil("lastX", 2000.0);
    sample.set("extent", "after_edit_ms", bench::timeMs([&] { extent = session.extent(); }));

    std::vector<std::string> paths;
    std::vector<const char*> pointers;
    for (long leaf = 0; leaf < std::min(10000L, leaves); ++leaf) {
        paths.push_back("/root/set_" + std::to_string(leaf / kLeavesInSet) + "/group_" +
                        std::to_string(leaf % kLeavesInSet / kLeavesInGroup) + "/leaf_" +
                        std::to_string(leaf % kLeavesInGroup));
    }
    for (const std::string& path : paths) {
        pointers.push_back(path.c_str());
    }
    std::vector<double> selections;
    for (int i = 0; i < 7; ++i) {
        selections.push_back(bench::timeMs([&] { session.select(pointers); }));
    }
    sample.set("select", "median_ms", bench::median(selections));
}

void measureDrag(Session& session, bench::Sample& sample) {
    constexpr int kValues = 1000;
    std::vector<double> times;
    for (int i = 1; i <= kValues; ++i) {
        times.push_back(bench::timeMs([&] { session.drag(3000.0 + i, i == kValues); }));
        if (session.read("lastX") != 3000.0 + i) {
            throw std::runtime_error("the plug-in does not know a value that was set");
        }
    }
    sample.set("drag", "median_ms", bench::median(times));
    sample.set("drag", "worst_ms", *std::max_element(times.begin(), times.end()));
}

void measureScene(long leaves, bench::Sample& sample) {
    Session session(leaves);
    const double memoryBefore = bench::memoryBytes("VmRSS");
    const double total = bench::timeMs([&] {
        session.openAll();
        session.view();
        session.pumpUntil("leaves", static_cast<double>(leaves));
    });
    sample.set("populate", "total_ms", total);
    sample.set("populate", "pump_ms", session.pumpMs);
    sample.set("populate", "pumps", static_cast<double>(session.pumps));
    sample.set("populate", "events", session.read("events"));
    sample.set("populate", "checksum", session.read("checksum"));
    const auto locations = static_cast<double>(session.getNumberOfLocations());
    sample.set("memory", "rss_bytes_per_location",
               (bench::memoryBytes("VmRSS") - memoryBefore) / locations);
    sample.set("memory", "peak_bytes_per_location",
               (bench::memoryBytes("VmHWM") - memoryBefore) / locations);

    // The set that the leaf stands in is neither rotated nor moved, nor is its group.
    std::vector<double> edits;
    for (int i = 1; i <= 15; ++i) {
        edits.push_back(bench::timeMs([&] {
            session.edit(1000.0 + i);
            session.pumpUntil("lastX", 1000.0 + i);
        }));
    }
    sample.set("edit-one", "median_ms", bench::median(edits));
    sample.set("edit-one", "worst_ms", *std::max_element(edits.begin(), edits.end()));

    std::vector<double> hides;
    for (int i = 0; i < 7; ++i) {
        for (const bool isHidden : {true, false}) {
            session.reset();
            hides.push_back(bench::timeMs([&] { session.setHidden(isHidden); }));
            if (session.read("hidden") != 1011.0) {
                throw std::runtime_error("hiding a set reached " +
                                         std::to_string(session.read("hidden")) + " locations");
            }
        }
    }
    sample.set("hide-group", "median_ms", bench::median(hides));

    measureQuestions(session, leaves, sample);
    measureDrag(session, sample);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<long> sizes = {10000, 100000, 1000000};
    if (argc > 1) {
        sizes.clear();
        for (int i = 1; i < argc; ++i) {
            char* end = nullptr;
            const long leaves = std::strtol(argv[i], &end, 10);
            if (*end != '\0' || leaves < kLeavesInSet || leaves % kLeavesInSet != 0) {
                std::fprintf(stderr, "scene_bench: \"%s\" is not a number of leaves in thousands\n",
                             argv[i]);
                return 2;
            }
            sizes.push_back(leaves);
        }
    }
    bool isGood = true;
    for (const long leaves : sizes) {
        isGood = bench::repeat(leaves, 3,
                               [leaves](bench::Sample& sample) { measureScene(leaves, sample); }) &&
                 isGood;
    }
    return isGood ? 0 : 1;
}
