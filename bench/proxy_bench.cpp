// Generated geometry, without an interpreter: proxy_bench [leaves...]
//
// boxes       all leaves have a bound: their boxes are switched on, off and on again, a pump each.
//             factory_bytes_per_leaf is what the factories keep of a leaf meanwhile,
//             box_bytes_per_leaf what the box itself takes
// scrub       n locations show 200 different proxies over 48 frames, from the first to the last and
//             back: "first" are frames that are waited for until their proxies are shown, "again"
//             those that were seen before

#include "measure.h"
#include "viewer.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <malloc.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace ViewerAPI;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr long kLeavesInSet = 1000;
constexpr long kProxied = 2000;
constexpr int kDistinctProxies = 200;
constexpr int kFrames = 48;

/// What the program has allocated and not freed, in bytes.
double allocatedBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// A viewer of one op.
class Session {
public:
    Session() {
        bench::registerViewer();
        delegate = bench::makeDelegate(BENCH_PLUGINS, "CountingDelegate");
    }

    void view(const char* opType, const GroupAttribute& args) {
        Transaction transaction;
        const int op = transaction.createOp(opType, args);
        transaction.commit();
        delegate->setViewOp(op);
    }

    void open(const std::vector<std::string>& paths) {
        std::vector<const char*> pointers;
        for (const std::string& path : paths) {
            pointers.push_back(path.c_str());
        }
        delegate->openLocations(pointers.data(), static_cast<std::uint32_t>(pointers.size()));
    }

    void pump() {
        pumps.push_back(bench::timeMs([this] { delegate->processLocationEvents(); }));
    }

    /// Pumps until all is shown.
    void settle() {
        bench::pumpUntil([this] { return !delegate->isProcessing(); }, [this] { pump(); });
    }

    [[nodiscard]] std::size_t getNumberOfLocations() const {
        return delegate->locationTree.getNumberOfLocations();
    }

    std::unique_ptr<bench::Delegate> delegate;
    std::vector<double> pumps; ///< milliseconds of each
};

void expect(bool condition, const char* text) {
    if (!condition) {
        throw std::runtime_error(text);
    }
}

void measureBoxes(long leaves, bench::Sample& sample) {
    Session session;
    session.view("Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))},
                                    {"withGeometry", IntAttribute(0)}});
    std::vector<std::string> paths = {"/root"};
    for (long set = 0; set * kLeavesInSet < leaves; ++set) {
        paths.push_back("/root/set_" + std::to_string(set));
        for (int group = 0; group < 10; ++group) {
            paths.push_back("/root/set_" + std::to_string(set) + "/group_" + std::to_string(group));
        }
    }
    session.open(paths);
    session.settle();
    const std::size_t locations = session.getNumberOfLocations();
    expect(locations == paths.size() + static_cast<std::size_t>(leaves), "leaves are missing");

    const auto switchBoxes = [&](bool isOn, const char* metric) {
        sample.set("boxes", metric, bench::timeMs([&] {
                       session.delegate->setBoundingBoxesEnabled(isOn);
                       session.delegate->processLocationEvents();
                   }));
        expect(session.getNumberOfLocations() ==
                   locations + (isOn ? static_cast<std::size_t>(leaves) : 0),
               "boxes are missing");
    };
    const double without = allocatedBytes();
    switchBoxes(true, "on_ms");
    switchBoxes(false, "off_ms");
    switchBoxes(true, "on_again_ms");
    const double shown = allocatedBytes();
    session.delegate->factories.clear();
    const double forgotten = allocatedBytes();
    const auto count = static_cast<double>(leaves);
    sample.set("boxes", "factory_bytes_per_leaf", (shown - forgotten) / count);
    sample.set("boxes", "box_bytes_per_leaf", (forgotten - without) / count);
}

/// A location that shows the proxy of a number: a group of a few locations that moves with time.
GroupAttribute proxiedBy(int number) {
    const GroupAttribute part{
        {"a", GroupAttribute{{"type", StringAttribute("locator")},
                             {"number", IntAttribute(number)},
                             {"bound", DoubleAttribute({0, 1, 0, 1, 0, 1})}}}};
    return GroupBuilder()
        .set("a.proxies.viewer.load.opType", StringAttribute("Scene.Literal"))
        .set("a.proxies.viewer.load.opArgs.staticScene.c",
             GroupAttribute{{"left", part}, {"middle", part}, {"right", part}})
        .build();
}

void measureScrubbing(bench::Sample& sample) {
    Session session;
    GroupBuilder children;
    for (int i = 0; i < kProxied; ++i) {
        children.set("p" + std::to_string(i), proxiedBy(i % kDistinctProxies));
    }
    const auto scrubTo = [&session](int frame) {
        return bench::timeMs([&] {
            session.delegate->setSystemArgs(
                GroupBuilder()
                    .set("timeSlice.currentTime", FloatAttribute(static_cast<float>(frame)))
                    .build());
            session.settle();
        });
    };
    const auto report = [&](const std::string& prefix, const std::vector<double>& frames) {
        sample.set("scrub", prefix + "_frame_median_ms", bench::median(frames));
        sample.set("scrub", prefix + "_frame_longest_ms",
                   *std::max_element(frames.begin(), frames.end()));
        sample.set("scrub", prefix + "_pump_median_ms", bench::median(session.pumps));
        sample.set("scrub", prefix + "_pump_longest_ms",
                   *std::max_element(session.pumps.begin(), session.pumps.end()));
        sample.set("scrub", prefix + "_pumps_per_frame",
                   static_cast<double>(session.pumps.size()) / static_cast<double>(frames.size()));
    };
    session.view("Scene.Literal", GroupBuilder().set("staticScene.c", children.build()).build());
    session.open({"/root"});
    // The scene itself, and its proxies at a frame of no account.
    scrubTo(0);
    expect(session.getNumberOfLocations() == 1 + kProxied * 5, "proxies are missing");

    session.pumps.clear();
    std::vector<double> frames;
    for (int frame = 1; frame <= kFrames; ++frame) {
        frames.push_back(scrubTo(frame));
    }
    report("first", frames);
    session.pumps.clear();
    frames.clear();
    for (int frame = kFrames - 1; frame >= 1; --frame) {
        frames.push_back(scrubTo(frame));
    }
    report("again", frames);
}

} // namespace

int main(int argc, char** argv) {
    bool isGood = true;
    for (const long leaves : bench::parseSizes(argc, argv, {100000}, kLeavesInSet)) {
        isGood = bench::repeat(leaves, 3,
                               [leaves](bench::Sample& sample) { measureBoxes(leaves, sample); }) &&
                 isGood;
    }
    isGood = bench::repeat(kProxied, 3, measureScrubbing) && isGood;
    return isGood ? 0 : 1;
}
