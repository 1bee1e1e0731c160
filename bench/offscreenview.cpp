#include "offscreenview.h"

#include "optionidgenerator.h"

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
    camera->setFOV(kFieldOfViewDegrees);
}

void OffscreenView::setDraft(bool isDraft) {
    viewport->pluginSuite->setOption(
        viewport->pluginHandle, VlOptionIdGeneratorHostStruct::instance().generate("draft"),
        VlAttribute::IntAttribute(isDraft ? 1 : 0).getRetainedHandle());
}

void OffscreenView::draw() {
    viewport->draw();
    viewport->makeGLContextCurrent();
    glFinish();
}

std::vector<std::uint8_t> OffscreenView::readRgb() {
    std::vector<std::uint8_t> rgb(3UL * kWidth * kHeight);
    viewport->makeGLContextCurrent();
    glReadPixels(0, 0, kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    return rgb;
}

} // namespace bench
