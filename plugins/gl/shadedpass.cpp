#include "gl/shadedpass.h"

#include "gl/capabilityguard.h"
#include "gl/drawstate.h"
#include "gl/pointsize.h"
#include "gl/shaders.h"

#include <algorithm>
#include <utility>

namespace Bundled {

namespace {

void begin(ShaderProgram& program, const Frame& frame) {
    program.use();
    program.set("worldToView", frame.worldToView);
    program.set("viewToClip", frame.viewToClip);
    program.set("perspective", frame.isPerspective() ? 1.0f : 0.0f);
    program.set("surfaceTexture", 0);
}

/// Plain: opaque, without a picture, and with colours that the vertices encode.
enum class Kind { Plain, Opaque, CutOut, Transparent };

Kind kindOf(const DrawItem& item, bool canEncode) {
    if (item.material->opacity < 1.0f) {
        return Kind::Transparent;
    }
    if (!item.picture && canEncode) {
        return Kind::Plain;
    }
    return item.hasHoles() ? Kind::CutOut : Kind::Opaque;
}

enum class Order { FrontToBack, BackToFront };

/// By the middles of their bounds.
void sort(std::vector<const DrawItem*>& items, Order order, const Frame& frame) {
    std::vector<std::pair<float, const DrawItem*>> sorted;
    for (const DrawItem* item : items) {
        const Imath::V3f center(item->batch->bounds.center());
        const float z = (center * frame.worldToView).z;
        sorted.emplace_back(order == Order::BackToFront ? z : -z, item);
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(sorted.begin(), sorted.end(), items.begin(),
                   [](const auto& entry) { return entry.second; });
}

} // namespace

std::size_t ShadedPass::draw(std::span<const DrawItem> items, const Frame& frame) {
    drawCalls = 0;
    const bool canEncode = frame.isDraft && glIsEnabled(GL_FRAMEBUFFER_SRGB) == GL_TRUE;
    std::vector<const DrawItem*> kinds[4];
    for (const DrawItem& item : items) {
        if (item.showsSurface()) {
            kinds[static_cast<std::size_t>(kindOf(item, canEncode))].push_back(&item);
        }
    }
    auto& [plain, opaque, cutOut, transparent] = kinds;
    {
        // What is hidden need not be lit.
        sort(plain, Order::FrontToBack, frame);
        sort(opaque, Order::FrontToBack, frame);
        const DrawState state({});
        if (!plain.empty()) {
            drawPlain(plain, frame);
        }
        drawItems(opaque, frame, Encoder::Driver);
    }
    if (!cutOut.empty()) {
        const DrawState state({.alphaToCoverage = true});
        drawItems(cutOut, frame, Encoder::Driver);
    }
    if (!transparent.empty()) {
        sort(transparent, Order::BackToFront, frame);
        const DrawState state({.depthWrite = false, .blend = true});
        drawItems(transparent, frame, Encoder::Driver);
    }
    return drawCalls;
}

void ShadedPass::drawPlain(const std::vector<const DrawItem*>& items, const Frame& frame) {
    // On the processor, encoding each pixel costs as much as all else about it, and vertices are
    // few.
    const CapabilityGuard guard(GL_FRAMEBUFFER_SRGB);
    glDisable(GL_FRAMEBUFFER_SRGB);
    drawItems(items, frame, Encoder::Vertices);
}

void ShadedPass::drawItems(const std::vector<const DrawItem*>& items, const Frame& frame,
                           Encoder encoder) {
    const Imath::V3d eye = frame.eye();
    glPointSize(kPointSizePx);
    glActiveTexture(GL_TEXTURE0);
    ShaderProgram* used = nullptr;
    for (const DrawItem* item : items) {
        const GpuTexture* picture = item->picture;
        ShaderProgram& program = programFor(frame, picture != nullptr);
        if (&program != used) {
            used = &program;
            begin(program, frame);
            program.set("isEncoded", encoder == Encoder::Vertices ? 1 : 0);
        }
        const auto& color = item->material->baseColor;
        program.set("baseColor", Imath::V3f(color[0], color[1], color[2]));
        program.set("opacity", item->material->opacity);
        glBindTexture(GL_TEXTURE_2D, picture ? picture->get() : 0);
        switchCapability(GL_CULL_FACE, item->hidesBackSides(frame, eye));
        if (item->wires) {
            // Behind its own edges, so that the two don't fight.
            glEnable(GL_POLYGON_OFFSET_FILL);
            glPolygonOffset(1.0f, 2.0f);
        }
        for (const auto part :
             {GpuMesh::Part::Triangles, GpuMesh::Part::Lines, GpuMesh::Part::Points}) {
            if (item->mesh->getRange(part).count != 0) {
                program.set("hasSurface", part == GpuMesh::Part::Triangles ? 1 : 0);
                item->gpu->draw(part, item->runs);
                drawCalls += item->runs.size();
            }
        }
        if (item->wires) {
            glPolygonOffset(0.0f, 0.0f);
            glDisable(GL_POLYGON_OFFSET_FILL);
        }
    }
    glBindTexture(GL_TEXTURE_2D, 0);
}

ShaderProgram& ShadedPass::programFor(const Frame& frame, bool hasTexture) {
    ShaderProgram& program = programs[frame.isDraft ? 1 : 0][hasTexture ? 1 : 0];
    if (!program) {
        program =
            frame.isDraft
                ? ShaderProgram("draft", kDraftVertexShader,
                                hasTexture ? kTexturedDraftFragmentShader : kDraftFragmentShader)
                : ShaderProgram("mesh", kMeshVertexShader,
                                hasTexture ? kTexturedMeshFragmentShader : kMeshFragmentShader);
    }
    return program;
}

} // namespace Bundled
