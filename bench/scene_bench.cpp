// From the scene engine to a delegate plug-in, without an interpreter:
// scene_bench [workload...] [--leaves N] [--repetitions N]
//
// W1      populate: the scene of sceneworkloads.h is viewed and wholly opened, until the plug-in
//         has read every leaf's world matrix
// W2      one leaf's transform is changed in the op graph, until the plug-in has read its new world
//         matrix; "edit_pump_us" is the part of it that the pump took which brought it
// W3      a set of 1,000 leaves is hidden, until the plug-in knows of every one
// W4      the box around the whole scene is computed, and again after a leaf has moved
// W5, W6  picks and pictures: draw_bench, which this runs
// memory  what engine, then trees, then the bundled plug-in's mirror of the scene occupy
// select  10,000 leaves are selected
// drag    one of 1,000 manipulated values is set on a leaf, until the plug-in has read the leaf's
//         new world matrix; the last of them is final
//
// W7 and W8 are whole processes: compare.py measures them.

#include "sceneworkloads.h"
#include "viewer.h"

#include "optionidgenerator.h"
#include "sceneclients.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace ViewerAPI;
using bench::Consumer;
using bench::Placement;
using bench::Sample;
using bench::SceneLayout;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

std::string setPath(long set) {
    return "/root/set_" + std::to_string(set);
}

std::string leafPath(long leaf) {
    return setPath(leaf / SceneLayout::kLeavesInSet) + "/group_" +
           std::to_string(leaf % SceneLayout::kLeavesInSet / SceneLayout::kLeavesInGroup) +
           "/leaf_" + std::to_string(leaf % SceneLayout::kLeavesInGroup);
}

std::vector<const char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<const char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(text.c_str());
    }
    return pointers;
}

/// The locations that have children.
std::vector<std::string> parentPaths(long leaves) {
    std::vector<std::string> paths = {"/root"};
    for (long set = 0; set < leaves / SceneLayout::kLeavesInSet; ++set) {
        paths.push_back(setPath(set));
        for (long group = 0; group < SceneLayout::kGroupsInSet; ++group) {
            paths.push_back(setPath(set) + "/group_" + std::to_string(group));
        }
    }
    return paths;
}

GroupAttribute xformOf(const Placement& at) {
    const double degrees = at.radians * 180.0 / std::numbers::pi;
    return {{"translate", DoubleAttribute({at.x, at.y, at.z}, 3)},
            {"rotateZ", DoubleAttribute({degrees, 0.0, 0.0, 1.0}, 4)}};
}

/// The generated scene, with edits on top as a session has them.
class EditedScene {
public:
    explicit EditedScene(long leaves) {
        Transaction transaction;
        const int scene = transaction.createOp(
            "Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))},
                               {"withGeometry", IntAttribute(0)}});
        op_ = transaction.createOp("Scene.Edit", {}, {scene});
        transaction.commit();
    }

    [[nodiscard]] int getOp() const noexcept { return op_; }

    void place(long leaf, const Placement& at) {
        std::string name = "edits";
        const std::string path = leafPath(leaf);
        for (std::size_t begin = path.find('/', 1); begin != std::string::npos;) {
            const std::size_t end = path.find('/', begin + 1);
            name += ".c." + path.substr(begin + 1, end - begin - 1);
            begin = end;
        }
        edits_ = GroupBuilder().update(edits_).set(name + ".a.xform", xformOf(at)).build();
        Transaction transaction;
        transaction.setOpArgs(op_, "Scene.Edit", edits_);
        transaction.commit();
    }

private:
    int op_ = 0;
    GroupAttribute edits_;
};

void openAll(bench::Delegate& delegate, long leaves) {
    const std::vector<std::string> paths = parentPaths(leaves);
    const std::vector<const char*> pointers = pointersTo(paths);
    delegate.openLocations(pointers.data(), static_cast<std::uint32_t>(pointers.size()));
}

/// The whole road as a subject of SceneWorkloads. The consumer is the plug-in "CountingDelegate".
class ViewedScene {
public:
    static constexpr long kIndexBytes = 0;

    explicit ViewedScene(long leaves) : leaves_(leaves) {
        bench::registerViewer();
        delegate_ = bench::makeDelegate(BENCH_PLUGINS, "CountingDelegate");
    }

    void build() {
        scene_ = std::make_unique<EditedScene>(leaves_);
        openAll(*delegate_, leaves_);
        delegate_->setViewOp(scene_->getOp());
        toldLeaves_ = static_cast<double>(leaves_);
    }

    void update() {
        const double deadline = bench::nowMs() + 300000.0;
        while (read("leaves") < toldLeaves_ || (toldHidden_ && read("hidden") < *toldHidden_)) {
            if (bench::nowMs() > deadline) {
                throw std::runtime_error("the plug-in was told of " +
                                         std::to_string(read("leaves")) + " leaves and not of " +
                                         std::to_string(toldLeaves_));
            }
            lastPumpMs_ = bench::timeMs([this] { delegate_->processLocationEvents(); });
            std::this_thread::yield(); // to the engine, where cores are few
        }
        if (toldHidden_ && read("hidden") != *toldHidden_) {
            throw std::runtime_error("hiding a set reached other locations as well");
        }
        toldHidden_.reset();
        if (height_ && std::abs(read("lastZ") - *height_) > 1e-9) {
            throw std::runtime_error("the plug-in was told of another place than that of the edit");
        }
        height_.reset();
    }
    [[nodiscard]] Consumer getConsumer() {
        return {static_cast<long>(read("leaves")), read("checksum")};
    }

    void place(long leaf, const Placement& at) {
        scene_->place(leaf, at);
        toldLeaves_ += 1.0;
        // Everything turns about z alone.
        const long inSet = leaf % SceneLayout::kLeavesInSet;
        height_ = SceneLayout::set(leaf / SceneLayout::kLeavesInSet).z +
                  SceneLayout::group(inSet / SceneLayout::kLeavesInGroup).z + at.z;
    }
    void setHidden(long set, bool isHidden) {
        const std::string path = setPath(set);
        const char* paths[] = {path.c_str()};
        toldHidden_ = read("hidden") + SceneLayout::kLeavesInSet + SceneLayout::kGroupsInSet + 1;
        if (isHidden) {
            delegate_->hideLocations(paths, 1);
        } else {
            delegate_->unhideLocations(paths, 1);
        }
    }
    std::array<double, 6> box() {
        update();
        const char* paths[] = {"/root"};
        const DoubleAttribute extent = delegate_->computeMergedExtent(paths, 1, "");
        const auto values = extent.getNearestSample(0.0F);
        if (values.size() != 6) {
            throw std::runtime_error("the scene has no extent");
        }
        return {values[0], values[2], values[4], values[1], values[3], values[5]};
    }

    /// Spent in the last pump, without waiting for the engine.
    [[nodiscard]] double getLastPumpMs() const { return lastPumpMs_; }

    void select(const std::vector<const char*>& paths) {
        delegate_->setSelectedLocations(paths.data(), static_cast<std::uint32_t>(paths.size()));
    }
    /// As a manipulator does it. The leaf's set and group are neither turned nor moved.
    void drag(double height, bool isFinal) {
        if (!delegate_->setManipulatedAttribute(leafPath(0), "xform.translate",
                                                DoubleAttribute({0.0, 0.0, height}, 3), isFinal)) {
            throw std::runtime_error("the leaf can't be manipulated");
        }
        if (read("lastZ") != height) {
            throw std::runtime_error("the plug-in does not know a value that was set");
        }
    }

private:
    double read(const char* option) {
        const std::uint64_t id = VlOptionIdGeneratorHostStruct::instance().generate(option);
        return DoubleAttribute(delegate_->getOption(id)).getValue();
    }

    const long leaves_;
    std::unique_ptr<bench::Delegate> delegate_;
    std::unique_ptr<EditedScene> scene_;
    double toldLeaves_ = 0.0;
    std::optional<double> toldHidden_;
    std::optional<double> height_;
    double lastPumpMs_ = 0.0;
};

void measurePumpOfEdit(ViewedScene& scene, Sample& sample) {
    std::vector<double> times;
    for (int i = 1; i <= 500; ++i) {
        scene.place(i % 1000, SceneLayout::leaf(5, 100.0 + i));
        scene.update();
        times.push_back(scene.getLastPumpMs());
    }
    sample.set("W2", "edit_pump_us", 1000.0 * bench::median(times));
}

void measureSelect(ViewedScene& scene, long leaves, Sample& sample) {
    std::vector<std::string> paths;
    for (long leaf = 0; leaf < std::min(10000L, leaves); ++leaf) {
        paths.push_back(leafPath(leaf));
    }
    const std::vector<const char*> pointers = pointersTo(paths);
    sample.set("select", "median_ms", bench::medianMs([&](int) {
                   return bench::timeMs([&] { scene.select(pointers); });
               }));
}

void measureDrag(ViewedScene& scene, Sample& sample) {
    constexpr int kValues = 1000;
    std::vector<double> times;
    for (int i = 1; i <= kValues; ++i) {
        times.push_back(bench::timeMs([&] { scene.drag(3000.0 + i, i == kValues); }));
    }
    sample.set("drag", "median_ms", bench::median(times));
    sample.set("drag", "worst_ms", *std::max_element(times.begin(), times.end()));
}

void measureScene(const bench::Arguments& arguments, Sample& sample) {
    // The process ends without it: freeing is not measured.
    auto* workloads = new bench::SceneWorkloads<ViewedScene>(arguments, sample);
    workloads->run();
    ViewedScene& scene = workloads->getSubject();
    if (arguments.wants("W2")) {
        measurePumpOfEdit(scene, sample);
    }
    if (arguments.wants("select")) {
        measureSelect(scene, arguments.leaves, sample);
    }
    if (arguments.wants("drag")) {
        measureDrag(scene, sample);
    }
}

/// What `fill` leaves in memory for each location, once what it has freed is given back; and the
/// most that the process had.
void measureMemory(const char* metric, long leaves, Sample& sample,
                   const std::function<void()>& fill) {
    malloc_trim(0);
    const double before = bench::memoryBytes("VmRSS");
    fill();
    const double peak = bench::memoryBytes("VmHWM");
    malloc_trim(0);
    const auto locations =
        static_cast<double>(leaves + static_cast<long>(parentPaths(leaves).size()));
    sample.set("memory", std::string(metric) + "_bytes_per_location",
               (bench::memoryBytes("VmRSS") - before) / locations);
    sample.set("memory", std::string(metric) + "_peak_bytes_per_location",
               (peak - before) / locations);
}

/// The scene's clients as a delegate has them, but what they report is dropped.
void measureEngineMemory(long leaves, Sample& sample) {
    bench::registerViewer();
    auto* clients = new SceneClients;
    clients->create();
    measureMemory("engine", leaves, sample, [&] {
        const EditedScene scene(leaves);
        clients->primaryClient->setLocationsOpen(VlAttribute::StringAttribute(parentPaths(leaves)));
        clients->setViewOp(scene.getOp());
        long reported = 0;
        bench::pumpUntil(
            [&] { return reported >= leaves; },
            [&] { reported += static_cast<long>(clients->fetchEvents(-1).primary.size()); });
    });
}

void measureMemoryWithPlugin(const char* metric, const char* library, const char* plugin,
                             long leaves, Sample& sample) {
    bench::registerViewer();
    bench::Delegate* delegate = bench::makeDelegate(library, plugin).release();
    measureMemory(metric, leaves, sample, [&] {
        const EditedScene scene(leaves);
        openAll(*delegate, leaves);
        delegate->setViewOp(scene.getOp());
        bench::settle(*delegate);
    });
}

bool repeatMemory(const bench::Arguments& arguments) {
    const long leaves = arguments.leaves;
    const auto repeat = [&](const auto& measure) {
        return bench::repeat(leaves, arguments.repetitions, measure);
    };
    return repeat([=](Sample& sample) { measureEngineMemory(leaves, sample); }) &&
           repeat([=](Sample& sample) {
               measureMemoryWithPlugin("engine+trees", BENCH_PLUGINS, "CountingDelegate", leaves,
                                       sample);
           }) &&
           repeat([=](Sample& sample) {
               measureMemoryWithPlugin("engine+trees+mirror", SCENE_VIEW_PLUGINS, "SceneDelegate",
                                       leaves, sample);
           });
}

/// Runs the program beside this one that draws.
bool runDrawBench(const std::vector<std::string>& workloads) {
    std::string command =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "draw_bench").string();
    for (const std::string& workload : workloads) {
        command += " " + workload;
    }
    return std::system(command.c_str()) == 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = bench::Arguments::parse(
        argc, argv, {"W1", "W2", "W3", "W4", "W5", "W6", "W7", "W8", "memory", "select", "drag"});
    const auto wanted = [&](std::initializer_list<const char*> names) {
        std::vector<std::string> found;
        for (const char* name : names) {
            if (arguments.wants(name)) {
                found.emplace_back(name);
            }
        }
        return found;
    };
    bool isGood = true;
    if (!wanted({"W1", "W2", "W3", "W4", "select", "drag"}).empty()) {
        isGood = bench::repeat(arguments.leaves, arguments.repetitions,
                               [&](Sample& sample) { measureScene(arguments, sample); });
    }
    if (arguments.wants("memory")) {
        isGood = repeatMemory(arguments) && isGood;
    }
    if (const auto pictures = wanted({"W5", "W6"}); !pictures.empty()) {
        isGood = runDrawBench(pictures) && isGood;
    }
    for (const std::string& workload : wanted({"W7", "W8"})) {
        std::fprintf(stderr, "scene_bench: %s is about whole processes: run bench/compare.py %s\n",
                     workload.c_str(), workload.c_str());
    }
    return isGood ? 0 : 1;
}
