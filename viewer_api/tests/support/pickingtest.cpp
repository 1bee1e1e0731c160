#include "support/pickingtest.h"

#include "VlAttribute/IntAttribute.h"

namespace ViewerAPI::test {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

std::string pickedText(const GroupAttribute& picked) {
    if (!picked.isValid()) {
        return "null";
    }
    std::string text;
    for (int64_t i = 0; i < picked.getNumberOfChildren(); ++i) {
        text += (i ? " " : "") + std::string(picked.getChildName(i)) + "=" +
                std::to_string(IntAttribute(picked.getChildByIndex(i)).getValue());
    }
    return text;
}

void PickingTest::SetUp() {
    viewport = makeViewport();
    viewport->resize(8, 4);
    gl.reachesFramebuffers = true;
    viewport->setup(7);
    ASSERT_EQ(viewport->picker->framebuffer, 1u);
    windows.isQuiet = true;
    journal.take();
}

VlViewportLayerHostStruct* PickingTest::addCachedLayer() {
    const std::string next = "layer" + std::to_string(viewport->getNumberOfLayers() + 1);
    plugins.answers[next + ".usesPickingCache"] = 1;
    auto* layer = viewport->addLayer("Recording", next);
    journal.take();
    return layer;
}

Lines PickingTest::calls() {
    Lines lines = journal.take();
    std::erase(lines, "glViewport 0 0 8 4");
    return lines;
}

void CachedPickingTest::SetUp() {
    PickingTest::SetUp();
    layer = addCachedLayer();
    onEntry("layer1.pickerDraw", [&] {
        ++images;
        gl.ids = {static_cast<uint32_t>(layer->addPickableObject(IntAttribute(20 + images)))};
    });
}

} // namespace ViewerAPI::test
