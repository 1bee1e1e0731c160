#include "gl/wirepass.h"

#include "gl/drawstate.h"
#include "gl/pointsize.h"
#include "gl/shaders.h"

#include <algorithm>

namespace Bundled {

std::size_t WirePass::draw(std::span<const DrawItem> items, const Frame& frame) {
    drawCalls = 0;
    if (std::none_of(items.begin(), items.end(),
                     [](const DrawItem& item) { return item.wires != nullptr; })) {
        return drawCalls;
    }
    if (!program) {
        program = ShaderProgram("wire", kMeshVertexShader, kWireFragmentShader);
    }
    for (const bool smooth : {true, false}) {
        // Without blending: where edges meet or share a pixel, they don't add up.
        const DrawState state({.multisample = smooth});
        program.use();
        program.set("worldToView", frame.worldToView);
        program.set("viewToClip", frame.viewToClip);
        glPointSize(kPointSizePx);
        for (const DrawItem& item : items) {
            if (item.wires && item.batch->options.smooth == smooth) {
                drawItem(item);
            }
        }
    }
    return drawCalls;
}

void WirePass::drawItem(const DrawItem& item) {
    const auto& color = item.material->baseColor;
    program.set("baseColor", Imath::V3f(color[0], color[1], color[2]));
    program.set("onSurface", item.showsSurface() ? 1 : 0);
    if (item.mode == DisplayMode::Points) {
        item.gpu->drawWires(*item.wires, GpuMesh::Part::Points, item.runs);
    } else {
        item.gpu->drawWires(*item.wires, GpuMesh::Part::Lines, item.runs);
        // Points that are no edge's: polygons of one point.
        if (!item.showsSurface()) {
            item.gpu->draw(GpuMesh::Part::Points, item.runs);
        }
    }
    drawCalls += item.runs.size();
}

} // namespace Bundled
