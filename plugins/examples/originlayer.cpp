#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <GL/gl.h>

/// Marks the origin of the world by a cross of three lines. Option "size" (double): from the origin
/// to the end of a line, in world units; 1 at first.
class OriginLayer : public ViewerPlugin::ViewportLayerPlugin {
public:
    using ViewportLayerPlugin::ViewportLayerPlugin;

    void draw() override {
        if (!glGetString(GL_VERSION)) {
            return; // the context could not be made
        }
        // The host's matrices are for row vectors, row after row: what OpenGL takes as it is.
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadMatrixd(viewport().getProjectionMatrix().data());
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadMatrixd(viewport().getViewMatrix().data());

        glPushAttrib(GL_CURRENT_BIT | GL_LINE_BIT);
        glColor3f(1.0f, 0.0f, 1.0f);
        glLineWidth(3.0f);
        glBegin(GL_LINES);
        for (int axis = 0; axis < 3; ++axis) {
            for (const double end : {-size, size}) {
                double point[3] = {0.0, 0.0, 0.0};
                point[axis] = end;
                glVertex3dv(point);
            }
        }
        glEnd();
        glPopAttrib();

        glPopMatrix();
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
    }

    void setOption(std::uint64_t optionId, const Attribute& value) override {
        if (optionId == sizeId) {
            size = VlAttribute::DoubleAttribute(value).getValue(1.0);
            viewport().setDirty(true);
        }
    }
    Attribute getOption(std::uint64_t optionId) override {
        return optionId == sizeId ? VlAttribute::DoubleAttribute(size) : Attribute();
    }

private:
    const std::uint64_t sizeId = ViewerPlugin::optionId("size");
    double size = 1.0;
};

VL_REGISTER_PLUGIN(OriginLayer, "OriginLayer");
