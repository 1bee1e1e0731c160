#include "manipulator/handlepainter.h"

#include "camera/tomatrix.h"
#include "gl/drawstate.h"
#include "manipulator/picturespace.h"

#include <cstddef>

namespace Bundled {

namespace {

const char* const kVertexShader = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
uniform mat4 shapeToView;
uniform mat4 viewToClip;
uniform vec3 toCamera;
out vec3 viewNormal;
out float nearness;
void main() {
    viewNormal = mat3(shapeToView) * normal;
    vec4 seen = shapeToView * vec4(position, 1.0);
    nearness = dot(seen.xyz - shapeToView[3].xyz, toCamera);
    gl_Position = viewToClip * seen;
}
)";

const char* const kFragmentShader = R"(
in vec3 viewNormal;
in float nearness;
uniform vec4 tint;
uniform float opacityBehind;
uniform int isLit;
out vec4 color;
void main() {
    // What faces the camera lies neither before nor behind, and is strong as a whole.
    float front = smoothstep(-0.12, -0.04, nearness);
    float opacity = mix(opacityBehind, 1.0, front);
    if (isLit == 0 && opacity < 0.5) {
        discard;
    }
    // Light from above the camera's shoulder: enough to see a cone's roundness, and the colour, by
    // which handles are known, stays itself.
    float light = isLit == 1
        ? mix(0.55, 1.1, 0.5 + 0.5 * dot(normalize(viewNormal), normalize(vec3(-0.3, 0.6, 0.75))))
        : 1.0;
    color = vec4(tint.rgb * light, tint.a * (isLit == 1 ? opacity : 1.0));
}
)";

} // namespace

std::shared_ptr<HandlePainter> HandlePainter::share() {
    static std::weak_ptr<HandlePainter> shared;
    std::shared_ptr<HandlePainter> painter = shared.lock();
    if (!painter) {
        painter = std::make_shared<HandlePainter>();
        shared = painter;
    }
    return painter;
}

void HandlePainter::draw(const Shape& shape, const Imath::M44d& shapeToWorld,
                         const ViewerPlugin::ViewportHost& viewport,
                         const std::array<float, 4>& color, float opacityBehind) {
    const DrawState state({.blend = true});
    drawTriangles(shape, shapeToWorld, viewport, {color, opacityBehind, true});
}

void HandlePainter::drawOver(const Shape& shape, const Imath::M44d& shapeToWorld,
                             const ViewerPlugin::ViewportHost& viewport,
                             const std::array<float, 4>& color) {
    const DrawState state({.depthTest = false, .depthWrite = false, .blend = true});
    drawTriangles(shape, shapeToWorld, viewport, {color, 1.0f, false});
}

void HandlePainter::drawId(const Shape& shape, const Imath::M44d& shapeToWorld,
                           const ViewerPlugin::ViewportHost& viewport, std::uint64_t id,
                           bool isWhole) {
    const DrawState state({.dither = false, .multisample = false});
    const auto byte = [id](int shift) { return static_cast<float>(id >> shift & 0xFFU) / 255.0f; };
    drawTriangles(shape, shapeToWorld, viewport,
                  {{byte(24), byte(16), byte(8), byte(0)}, isWhole ? 1.0f : 0.0f, false});
}

void HandlePainter::drawTriangles(const Shape& shape, const Imath::M44d& shapeToWorld,
                                  const ViewerPlugin::ViewportHost& viewport, const Look& look) {
    if (!program) {
        program = ShaderProgram("handle", kVertexShader, kFragmentShader);
    }
    program.use();
    // Multiplied in double precision: far from the origin a gizmo would tremble otherwise.
    const Imath::M44d shapeToView = shapeToWorld * toMatrix(viewport.getViewMatrix());
    const Imath::M44d viewToClip = toMatrix(viewport.getProjectionMatrix());
    const Imath::V3d toCamera = PictureSpace::isPerspective(viewToClip)
                                    ? -shapeToView.translation().normalized()
                                    : Imath::V3d(0.0, 0.0, 1.0);
    program.set("shapeToView", Imath::M44f(shapeToView));
    program.set("viewToClip", Imath::M44f(viewToClip));
    // In the shape's own unit of length.
    const Imath::V3d x(shapeToView[0][0], shapeToView[0][1], shapeToView[0][2]);
    program.set("toCamera", Imath::V3f(toCamera / x.length()));
    program.set("tint", look.color);
    program.set("opacityBehind", look.opacityBehind);
    program.set("isLit", look.isLit ? 1 : 0);
    glBindVertexArray(vertexArray.create());
    glBindBuffer(GL_ARRAY_BUFFER, buffer.create());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(shape.size() * sizeof(ShapeVertex)),
                 shape.data(), GL_STREAM_DRAW);
    for (const GLuint attribute : {0U, 1U}) {
        glEnableVertexAttribArray(attribute);
        glVertexAttribPointer(attribute, 3, GL_FLOAT, GL_FALSE, sizeof(ShapeVertex),
                              reinterpret_cast<const void*>(attribute * sizeof(Imath::V3f)));
    }
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(shape.size()));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace Bundled
