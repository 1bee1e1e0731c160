#include "offscreenview.h"

#include "optionidgenerator.h"
#include "suites/optionidgeneratorhostsuite.h"

#include "VlAttribute/IntAttribute.h"
#include "VlWindowSystem/Offscreen.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <GL/glew.h>

namespace bench {

using namespace ViewerAPI;

OffscreenView::OffscreenView(int op, std::initializer_list<const char*> layers)
    : delegate(makeDelegate(BUNDLED_PLUGINS, "SceneDelegate")) {
    delegate->setup();
    delegate->addComponent("LocationExpander", "expander");
    delegate->setViewOp(op);
    settle(*delegate);

    viewport = new VlViewportHostStruct("SceneViewport", "main", delegate.get());
    delegate->addViewport(viewport, "main");
    viewport->setup(createOffscreen(kWidth, kHeight));
    for (const char* layer : layers) {
        viewport->addLayer(layer, layer);
    }
    camera = viewport->addCamera("PerspectiveCamera", "main");
    viewport->setActiveCamera(camera);
    viewport->resize(kWidth, kHeight);
    camera->setFOV(45.0);
}

void OffscreenView::setDraft(bool isDraft) {
    const OptionIdGeneratorHostSuite* ids = getOptionIdGeneratorHostSuite();
    viewport->pluginSuite->setOption(
        viewport->pluginHandle, ids->generateOptionIdByName(ids->getOptionIdGenerator(), "draft"),
        VlAttribute::IntAttribute(isDraft ? 1 : 0).getRetainedHandle());
}

void OffscreenView::draw() {
    viewport->draw();
    viewport->makeGLContextCurrent();
    glFinish();
}

} // namespace bench
