#pragma once

#include "gl/coverprograms.h"
#include "gl/distancetarget.h"
#include "gl/drawitem.h"
#include "gl/frame.h"
#include "gl/masktarget.h"
#include "gl/shaderprogram.h"
#include "gl/shaders.h"

#include <Imath/ImathBox.h>

#include <span>

namespace Bundled {

/// Draws one outline around all that is selected: a bright line with dark rims, so that it is seen
/// on any background and around any colour; fainter where something stands before. What it
/// surrounds keeps its colours. Comes after everything that can hide. Writes linear light.
/// [gl-current]
class OutlinePass {
public:
    /// Of these instances, which lie within `bounds` (world space). Costs the pixels of their part
    /// of the picture. Draws nothing where the driver can't.
    void draw(std::span<const DrawItem> selected, const Imath::Box3d& bounds, const Frame& frame);

private:
    void drawMask(std::span<const DrawItem> selected, const Frame& frame);
    void drawItems(std::span<const DrawItem> selected, const Frame& frame);
    void drawOutline(const PixelBox& box);
    /// False when the driver can't; then nothing is drawn.
    bool drawDraftOutline(const PixelBox& box);
    /// Over all of the box, by the program in use.
    void drawPicture(GLuint picture);

    MaskTarget target;
    DistanceTarget distances;
    CoverPrograms mask{{"mask", kMeshVertexShader, kMaskFragmentShader, kHoleyMaskFragmentShader}};
    ShaderProgram outline;
    ShaderProgram rowDistance;
    ShaderProgram draftOutline;
    GLVertexArray corners;
};

} // namespace Bundled
