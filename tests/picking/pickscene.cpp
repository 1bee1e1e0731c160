#include "pickscene.h"

#include "suites/hostsuites.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/ScenelibEngine.h"
#include "VlWindowSystem/Offscreen.h"

#include <GL/glew.h>
#include <Imath/ImathMatrixAlgo.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <stdexcept>

using namespace ViewerAPI;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

namespace {

void loadEverythingOnce() {
    static const bool done = [] {
        registerHostSuites();
        VlScenelibEngine::registerScenelibEngine();
        return VlPluginSystem::loadDirectory(BUNDLED_PLUGINS) > 0;
    }();
    if (!done) {
        throw std::runtime_error("no plug-ins in " BUNDLED_PLUGINS);
    }
}

GroupAttribute cube() {
    std::vector<float> points;
    for (int corner = 0; corner < 8; ++corner) {
        for (int axis = 0; axis < 3; ++axis) {
            points.push_back((corner >> axis & 1) != 0 ? 0.5f : -0.5f);
        }
    }
    return GroupBuilder()
        .set("type", StringAttribute("polymesh"))
        .set("geometry.point.P", FloatAttribute(std::move(points), 3))
        .set("geometry.poly.vertexList",
             IntAttribute({0, 4, 6, 2, 1, 3, 7, 5, 0, 1, 5, 4, 2, 6, 7, 3, 0, 2, 3, 1, 4, 5, 7, 6}))
        .set("geometry.poly.startIndex", IntAttribute({0, 4, 8, 12, 16, 20, 24}))
        .build();
}

GroupAttribute literalOf(const std::vector<Box>& boxes) {
    const GroupAttribute geometry = cube();
    GroupBuilder children;
    for (const Box& box : boxes) {
        const DoubleAttribute matrix(std::span<const double>(box.world.getValue(), 16), 16);
        const GroupAttribute group{{"matrix", matrix}};
        const GroupAttribute attributes =
            GroupBuilder().update(geometry).set("xform", GroupAttribute{{"group", group}}).build();
        children.set(box.path.substr(box.path.rfind('/') + 1), GroupAttribute{{"a", attributes}});
    }
    return {{"staticScene", GroupAttribute{{"c", children.build()}}}};
}

Imath::M44d viewMatrix(const PickCamera& camera) {
    Imath::M44d turn;
    Imath::alignZAxisWithTargetDir(turn, camera.eye - camera.target, {0, 1, 0});
    return Imath::M44d().setTranslation(-camera.eye) * turn.transposed();
}

PickScene::Paths pathsOf(const GroupAttribute& picked) {
    PickScene::Paths paths;
    for (std::int64_t i = 0; i < picked.getNumberOfChildren(); ++i) {
        paths.insert(StringAttribute(picked.getChildByIndex(i)).getValue());
    }
    return paths;
}

} // namespace

PickScene::PickScene(const std::vector<Box>& boxes, const PickCamera& camera) {
    loadEverythingOnce();
    delegate_ = std::make_unique<VlViewerDelegateHostStruct>("SceneDelegate", nullptr);
    delegate_->setBoundingBoxesEnabled(false);
    delegate_->addComponent("LocationExpander", "expander");
    VlScenelibEngine::ApplicationGraph::Transaction transaction;
    const int literal = transaction.createOp("Scene.Literal", literalOf(boxes));
    transaction.commit();
    delegate_->setViewOp(literal);
    do {
        if (!VlScenelibEngine::ApplicationGraph::waitUntilIdle(std::chrono::minutes(1))) {
            throw std::runtime_error("the scene is never cooked");
        }
        delegate_->processLocationEvents();
    } while (delegate_->isProcessing());

    viewport_ = new VlViewportHostStruct("SceneViewport", "main", delegate_.get());
    delegate_->addViewport(viewport_, "main");
    viewport_->setup(createOffscreen(kWidth, kHeight));
    viewport_->resize(kWidth, kHeight);
    viewport_->addLayer("MeshLayer", "meshes");
    cache_ = viewport_->addLayer("PickingLayer", "picks");
    VlViewportCameraHostStruct* view = viewport_->addCamera("PerspectiveCamera", "main");
    viewport_->setActiveCamera(view);
    viewport_->resize(kWidth, kHeight);
    view->setNearFar(camera.near, camera.far);
    view->setViewMatrix(viewMatrix(camera).getValue());
}

PickScene::~PickScene() {
    // A viewport's end leaves its cameras to whoever holds them.
    viewport_->setActiveCamera(nullptr);
    viewport_->removeCameraByName("main");
}

bool PickScene::canDraw() const {
    return viewport_->makeGLContextCurrent();
}

PickScene::Paths PickScene::pickViewport(int x, int y, int width, int height, bool isDeep) {
    return pathsOf(viewport_->getPickedObjects({x, y, width, height}, isDeep, nullptr));
}

PickScene::Paths PickScene::pickCache(int x, int y, int width, int height) {
    return pathsOf(cache_->getPickedObjects({x, y, width, height}, false, nullptr));
}

void PickScene::draw() {
    viewport_->draw();
}

int PickScene::countShownPixels() const {
    viewport_->makeGLContextCurrent();
    std::vector<std::uint32_t> pixels(std::size_t{kWidth} * kHeight);
    glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return static_cast<int>(pixels.size() - std::count(pixels.begin(), pixels.end(), 0xFFFFFFFFu));
}

bool PickScene::isConfined() const {
    viewport_->makeGLContextCurrent();
    return glIsEnabled(GL_SCISSOR_TEST) == GL_TRUE;
}

Imath::M44d PickScene::worldToClip() const {
    Imath::M44d view;
    Imath::M44d projection;
    std::copy_n(viewport_->getViewMatrix(), 16, view.getValue());
    std::copy_n(viewport_->getProjectionMatrix(), 16, projection.getValue());
    return view * projection;
}
