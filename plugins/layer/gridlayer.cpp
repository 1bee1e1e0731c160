#include "layer/gridlayer.h"

#include "delegate/scenedelegate.h"
#include "gl/drawstate.h"
#include "gl/shaders.h"

namespace Bundled {

void GridLayer::cleanup() {
    program = ShaderProgram();
    corners.reset();
}

void GridLayer::draw() {
    if (!isGLReady()) {
        return;
    }
    if (!program) {
        program = ShaderProgram("grid", kGridVertexShader, kGridFragmentShader);
    }
    const ViewerPlugin::ViewportHost view = viewport();
    if (auto* delegate = ViewerPlugin::pluginCast<SceneDelegate>(view.getViewerDelegate())) {
        delegate->getMirror().update();
        layout = GridLayout::around(delegate->getMirror().getBounds());
    }
    Frame frame;
    frame.worldToView = Frame::matrix(view.getViewMatrix().data());
    frame.viewToClip = Frame::matrix(view.getProjectionMatrix().data());

    const DrawState state({.depthWrite = false, .blend = true});
    program.use();
    program.set("worldToView", frame.worldToView);
    program.set("viewToClip", frame.viewToClip);
    program.set("perspective", frame.isPerspective() ? 1.0f : 0.0f);
    program.set("eye", Imath::V3f(0.0f) * frame.worldToView.inverse());
    program.set("centre", layout.centre);
    program.set("radius", layout.radius);
    program.set("spacing", layout.spacing);
    // Behind surfaces that lie in the ground, so that the two don't fight.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0f, 4.0f);
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glPolygonOffset(0.0f, 0.0f);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::GridLayer, "GridLayer");
