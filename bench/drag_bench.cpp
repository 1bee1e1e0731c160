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

#include "manipulatorbridge.h"
#include "optionidgenerator.h"
#include "suites/hostsuites.h"
#include "suites/optionidgeneratorhostsuite.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/ScenelibEngine.h"
#include "VlWindowSystem/Offscreen.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <GL/glew.h>
#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <algorithm>
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
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kEvents = 201;
/// On the gizmo's x axis when the object stands in the middle of the picture, and how far the
/// mouse goes from there.
constexpr int kPressX = kWidth / 2 + 50;
constexpr int kReach = 200;
const std::string kObject = "/root/set_0/group_0/leaf_0";

/// Stands for an application that lets everything be edited, and takes nothing up.
class PermissiveBridge final : public ManipulatorBridge {
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
    void cleanupLiveAttributes(const std::string&) override {}
};

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
    event.set("y", IntAttribute(kHeight / 2));
    event.set("button", StringAttribute("left"));
    return event.build();
}

class Scene {
public:
    explicit Scene(long leaves)
        : delegate_(std::make_unique<VlViewerDelegateHostStruct>("SceneDelegate", nullptr)) {
        delegate_->setup();
        delegate_->setBoundingBoxesEnabled(false);
        delegate_->addComponent("LocationExpander", "expander");
        Transaction transaction;
        const int generated = transaction.createOp(
            "Scene.Generate", {{"leafCount", IntAttribute(static_cast<std::int32_t>(leaves))},
                               {"withGeometry", IntAttribute(1)}});
        const int object = transaction.createOp("Scene.Literal", objectArgs());
        const int merge = transaction.createOp("Scene.Merge", {}, {generated, object});
        transaction.commit();
        delegate_->setViewOp(merge);
        do {
            pump();
            std::this_thread::yield();
        } while (delegate_->isProcessing());

        viewport_ = new VlViewportHostStruct("SceneViewport", "main", delegate_.get());
        delegate_->addViewport(viewport_, "main");
        viewport_->setup(createOffscreen(kWidth, kHeight));
        for (const char* layer : {"GridLayer", "MeshLayer", "ManipulatorLayer"}) {
            viewport_->addLayer(layer, layer);
        }
        camera_ = viewport_->addCamera("PerspectiveCamera", "main");
        viewport_->setActiveCamera(camera_);
        viewport_->resize(kWidth, kHeight);
        camera_->setFOV(45.0);
        const OptionIdGeneratorHostSuite* ids = getOptionIdGeneratorHostSuite();
        viewport_->pluginSuite->setOption(
            viewport_->pluginHandle,
            ids->generateOptionIdByName(ids->getOptionIdGenerator(), "draft"),
            IntAttribute(1).getRetainedHandle());
        viewport_->activateManipulator("TranslateManipulator", StringAttribute(kObject), false);
    }

    /// Looks at the object down -z.
    void lookFrom(double distance) {
        const DoubleAttribute world = delegate_->getWorldXform(kObject, kVlViewerDelegatePrimary);
        const auto values = world.getNearestSample(0.0F);
        const Imath::M44d view = Imath::M44d().setTranslation(
            -Imath::V3d(values[12], values[13], values[14] + distance));
        camera_->setViewMatrix(view.getValue());
    }

    bool send(const GroupAttribute& event) { return viewport_->event(event.getHandle()); }
    void pump() { delegate_->processLocationEvents(); }
    void draw() {
        viewport_->draw();
        viewport_->makeGLContextCurrent();
        glFinish();
    }
    double objectX() const {
        return DoubleAttribute(delegate_->getAttributes(kObject, kVlViewerDelegatePrimary)
                                   .getChildByName("xform.placed.translate"))
            .getValue();
    }

private:
    std::unique_ptr<VlViewerDelegateHostStruct> delegate_;
    VlViewportHostStruct* viewport_ = nullptr;     // the delegate's
    VlViewportCameraHostStruct* camera_ = nullptr; // the viewport's
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
    std::vector<long> sizes;
    for (int i = 1; i < argc; ++i) {
        sizes.push_back(std::atol(argv[i]));
        if (sizes.back() <= 0) {
            std::fprintf(stderr, "usage: drag_bench [leaves...]\n");
            return 2;
        }
    }
    if (sizes.empty()) {
        sizes = {1000, 10000, 100000};
    }
    try {
        registerHostSuites();
        VlScenelibEngine::registerScenelibEngine();
        if (VlPluginSystem::loadDirectory(BUNDLED_PLUGINS) == 0) {
            throw std::runtime_error("no plug-ins in " BUNDLED_PLUGINS);
        }
        setManipulatorBridgeFactory([] { return std::make_unique<PermissiveBridge>(); });
        for (const long leaves : sizes) {
            run(leaves);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "drag_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
