#include "gl/outlinepass.h"

#include "gl/capabilityguard.h"
#include "gl/drawstate.h"
#include "gl/pointsize.h"
#include "gl/scissorguard.h"
#include "gl/shaders.h"

#include <algorithm>
#include <string>

namespace Bundled {

namespace {

/// How far the outline reaches beyond what it surrounds, and what is drawn as dots and lines beyond
/// its bounds.
constexpr int kReachPx = 6;

/// The part of the picture that a box in world space, and an outline around it, can touch.
PixelBox pixelsOf(const Imath::Box3d& bounds, const Imath::M44d& worldToClip) {
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    Imath::Box2d place;
    for (int corner = 0; corner < 8; ++corner) {
        const Imath::V3d point((corner & 1) != 0 ? bounds.max.x : bounds.min.x,
                               (corner & 2) != 0 ? bounds.max.y : bounds.min.y,
                               (corner & 4) != 0 ? bounds.max.z : bounds.min.z);
        const Imath::M44d& m = worldToClip;
        const double w = point.x * m[0][3] + point.y * m[1][3] + point.z * m[2][3] + m[3][3];
        const Imath::V3d seen = point * m;
        if (!(w > 1e-9) || std::isnan(seen.x) || std::isnan(seen.y)) {
            // Reaches behind the camera, or is nowhere by a matrix that has no numbers: it may be
            // seen anywhere.
            place = Imath::Box2d({-1.0, -1.0}, {1.0, 1.0});
            break;
        }
        place.extendBy({std::clamp(seen.x, -1.0, 1.0), std::clamp(seen.y, -1.0, 1.0)});
    }
    const auto pixel = [](double from, double size, double position) {
        return from + size * (position + 1.0) / 2.0;
    };
    const int right = viewport[0] + viewport[2];
    const int top = viewport[1] + viewport[3];
    PixelBox box;
    box.x = std::max(viewport[0],
                     static_cast<int>(pixel(viewport[0], viewport[2], place.min.x)) - kReachPx);
    box.y = std::max(viewport[1],
                     static_cast<int>(pixel(viewport[1], viewport[3], place.min.y)) - kReachPx);
    box.width =
        std::min(right, static_cast<int>(pixel(viewport[0], viewport[2], place.max.x)) + kReachPx) -
        box.x;
    box.height =
        std::min(top, static_cast<int>(pixel(viewport[1], viewport[3], place.max.y)) + kReachPx) -
        box.y;
    return box;
}

ShaderProgram outlineProgram(const std::string& name, const char* source) {
    return {name, kFullscreenVertexShader, (std::string(kOutlineColorFunction) + source).c_str()};
}

void setBox(ShaderProgram& program, const PixelBox& box) {
    program.set("first", Imath::V2i(box.x, box.y));
    program.set("last", Imath::V2i(box.x + box.width - 1, box.y + box.height - 1));
}

} // namespace

void OutlinePass::draw(std::span<const DrawItem> selected, const Imath::Box3d& bounds,
                       const Frame& frame) {
    if (selected.empty()) {
        return;
    }
    const PixelBox box = pixelsOf(bounds, frame.worldToClip());
    const ScissorGuard guard;
    if (box.width <= 0 || box.height <= 0 || !target.begin(box)) {
        return;
    }
    // Drawing stays confined to the box until the guard ends.
    drawMask(selected, frame);
    target.finish();
    if (!frame.isDraft || !drawDraftOutline(box)) {
        drawOutline(box);
    }
}

void OutlinePass::drawMask(std::span<const DrawItem> selected, const Frame& frame) {
    glPointSize(kPointSizePx);
    // Red: all of it. Green: what nothing hides.
    for (const bool isHidden : {true, false}) {
        const DrawState state({.depthTest = !isHidden && target.hasDepth(),
                               .depthWrite = false,
                               .colorWrite = {isHidden, !isHidden, false, false},
                               .dither = false});
        mask.begin(frame);
        // The depths of a surface may differ in the last bit from one program to another.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(-1.0f, -2.0f);
        drawItems(selected, frame);
        glPolygonOffset(0.0f, 0.0f);
        glDisable(GL_POLYGON_OFFSET_FILL);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
}

void OutlinePass::drawItems(std::span<const DrawItem> selected, const Frame& frame) {
    const Imath::V3d eye = frame.eye();
    for (const DrawItem& item : selected) {
        // Wires show from behind too.
        const bool showsWiresAlone =
            item.mode != DisplayMode::Shaded && item.leavesOutBackSides(frame);
        switchCapability(GL_CULL_FACE, !showsWiresAlone && item.hidesBackSides(frame, eye));
        mask.use(item.getHoles());
        for (const auto part :
             {GpuMesh::Part::Triangles, GpuMesh::Part::Lines, GpuMesh::Part::Points}) {
            item.gpu->draw(part, item.runs);
        }
    }
}

void OutlinePass::drawOutline(const PixelBox& box) {
    if (!outline) {
        outline = outlineProgram("outline", kOutlineFragmentShader);
    }
    const DrawState state({.depthTest = false, .depthWrite = false, .blend = true});
    outline.use();
    outline.set("mask", 0);
    setBox(outline, box);
    drawPicture(target.getPicture());
}

bool OutlinePass::drawDraftOutline(const PixelBox& box) {
    if (!rowDistance) {
        rowDistance =
            ShaderProgram("row distance", kFullscreenVertexShader, kRowDistanceFragmentShader);
    }
    if (!draftOutline) {
        draftOutline = outlineProgram("draft outline", kDraftOutlineFragmentShader);
    }
    if (!distances.begin(box.x + box.width, box.y + box.height)) {
        return false;
    }
    {
        const DrawState state({.depthTest = false, .depthWrite = false, .dither = false});
        rowDistance.use();
        rowDistance.set("mask", 0);
        setBox(rowDistance, box);
        drawPicture(target.getPicture());
    }
    distances.finish();
    const DrawState state({.depthTest = false, .depthWrite = false, .blend = true});
    draftOutline.use();
    draftOutline.set("distances", 0);
    setBox(draftOutline, box);
    drawPicture(distances.getPicture());
    return true;
}

void OutlinePass::drawPicture(GLuint picture) {
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, picture);
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
}

} // namespace Bundled
