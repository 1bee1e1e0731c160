// One object among many is dragged by a gizmo, through the bundled plug-ins, without an
// interpreter: drag_bench [leaves...]
//
// near  the camera stands before the object, and sees some hundreds of leaves
// all   it sees the whole scene
//
// For each mouse event: Viewport.event and a pump ("event_to_pump"), and these with the draft
// picture that follows, until the renderer has finished it ("event_to_frame"). "worst" is the
// longest of all. "press" finds the handle under the pointer and begins the drag.

#include "measure.h"
#include "offscreenview.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace ViewerAPI;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr int kEvents = 201;
/// On the gizmo's x axis when the object stands in the middle of the picture, and how far the
/// mouse goes from there.
constexpr int kPressX = bench::OffscreenView::kWidth / 2 + 50;
constexpr int kReach = 200;
const std::string kObject = "/root/set_0/group_0/leaf_0";

/// What makes the generated leaf one that a gizmo edits.
GroupAttribute objectArgs() {
    return {{"staticScene", GroupBuilder()
                                .set("c.set_0.c.group_0.c.leaf_0.a.attributeEditor.exclusiveTo",
                                     StringAttribute("application"))
                                .set("c.set_0.c.group_0.c.leaf_0.a.xform.placed.translate",
                                     DoubleAttribute({0, 0, 0}, 3))
                                .build()}};
}

GroupAttribute mouse(const char* type, int x) {
    GroupBuilder event;
    event.set("type", StringAttribute(type));
    event.set("x", IntAttribute(x));
    event.set("y", IntAttribute(bench::OffscreenView::kHeight / 2));
    event.set("button", StringAttribute("left"));
    return event.build();
}

class Scene {
public:
    explicit Scene(long leaves)
        : view_(createScene(leaves), {"GridLayer", "MeshLayer", "ManipulatorLayer"}) {
        view_.setDraft(true);
        view_.getViewport().activateManipulator("TranslateManipulator", StringAttribute(kObject),
                                                false);
    }

    /// Looks at the object down -z.
    void lookFrom(double distance) {
        const DoubleAttribute world =
            view_.getDelegate().getWorldXform(kObject, kVlViewerDelegatePrimary);
        const auto values = world.getNearestSample(0.0F);
        const Imath::M44d view = Imath::M44d().setTranslation(
            -Imath::V3d(values[12], values[13], values[14] + distance));
        view_.getCamera().setViewMatrix(view.getValue());
    }

    bool send(const GroupAttribute& event) { return view_.getViewport().event(event.getHandle()); }
    void pump() { view_.getDelegate().processLocationEvents(); }
    void draw() { view_.draw(); }
    double objectX() const {
        return DoubleAttribute(view_.getDelegate()
                                   .getAttributes(kObject, kVlViewerDelegatePrimary)
                                   .getChildByName("xform.placed.translate"))
            .getValue();
    }

private:
    static int createScene(long leaves) {
        Transaction transaction;
        const int generated = transaction.createOp(
            "Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))},
                               {"withGeometry", IntAttribute(1)}});
        const int object = transaction.createOp("Scene.Literal", objectArgs());
        const int merge = transaction.createOp("Scene.Merge", {}, {generated, object});
        transaction.commit();
        return merge;
    }

    bench::OffscreenView view_;
};

void print(const char* workload, long leaves, const std::string& metric,
           const std::vector<double>& times) {
    bench::print(workload, leaves, metric + "_ms", bench::median(times));
    bench::print(workload, leaves, metric + "_worst_ms", *std::ranges::max_element(times));
}

void measure(const char* workload, long leaves, Scene& scene, double distance) {
    scene.lookFrom(distance);
    for (int i = 0; i < 3; ++i) {
        scene.draw();
    }
    const double before = scene.objectX();
    bool isTaken = false;
    const double pressMs =
        bench::timeMs([&] { isTaken = scene.send(mouse("mousePress", kPressX)); });
    if (!isTaken) {
        throw std::runtime_error("the press found no handle");
    }
    bench::print(workload, leaves, "press_ms", pressMs);
    int x = kPressX;
    const auto nextMove = [&] {
        x = kPressX + (x - kPressX + 1) % kReach;
        return mouse("mouseMove", x);
    };
    std::vector<double> pumped;
    std::vector<double> drawn;
    for (int i = 0; i < kEvents; ++i) {
        const GroupAttribute event = nextMove();
        const double start = bench::nowMs();
        scene.send(event);
        scene.pump();
        pumped.push_back(bench::nowMs() - start);
        scene.draw();
        drawn.push_back(bench::nowMs() - start);
    }
    print(workload, leaves, "event_to_pump", pumped);
    print(workload, leaves, "event_to_frame", drawn);
    if (scene.objectX() == before) {
        throw std::runtime_error("the object did not move");
    }
    scene.send(mouse("mouseRelease", x));
    scene.pump();
}

void run(long leaves) {
    Scene scene(leaves);
    measure("near", leaves, scene, 12.0);
    measure("all", leaves, scene, 8000.0);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<long> sizes = bench::parseSizes(argc, argv, {1000, 10000, 100000});
    try {
        bench::registerViewer();
        for (const long leaves : sizes) {
            run(leaves);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "drag_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
