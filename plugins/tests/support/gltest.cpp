#include "support/gltest.h"

#include "VlAttribute/IntAttribute.h"

void SceneGLTest::setDraft(const FakeViewport& viewport, bool isDraft) {
    setOption(viewport, "draft", VlAttribute::IntAttribute(isDraft ? 1 : 0));
}

Pixels SceneGLTest::draw(const FakeViewport& viewport) {
    viewport.suite->draw(viewport.instance);
    return Pixels::read(kSize, kSize);
}
