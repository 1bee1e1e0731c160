#include "support/gltest.h"

#include "VlAttribute/GroupAttribute.h"
#include "gl/glname.h"

#include <array>

// How far the bundled viewport lets the picking surface be cleared: the host asks its customPick,
// clears, and calls its pickerDraw. Needs an OpenGL context; skipped where none can be made.
namespace {

using VlAttribute::GroupAttribute;

constexpr int kWidth = 64;
constexpr int kHeight = 48;
constexpr std::array<GLint, 4> kBox = {1, 2, 30, 40};

class ScenePickGL : public GLTest {
public:
    void begin(int x, int y, int width, int height, bool isDeep = false) {
        VlAttributeStruct* picked = nullptr;
        EXPECT_EQ(viewport->suite->customPick(viewport->instance, x, y, width, height,
                                              isDeep ? 1 : 0, &picked, nullptr),
                  0);
    }

protected:
    ScenePickGL() : GLTest(kWidth, kHeight) {}

    void SetUp() override {
        GLTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        viewport = &scene.addViewport(kWidth, kHeight);
        glScissor(kBox[0], kBox[1], kBox[2], kBox[3]);
    }

    void drawIds() {
        const GroupAttribute none = GroupAttribute::Empty();
        viewport->suite->pickerDraw(viewport->instance, 3, 4, 5, 6, none.getHandle());
    }
    static bool isConfined() { return glIsEnabled(GL_SCISSOR_TEST) == GL_TRUE; }
    static std::array<GLint, 4> box() {
        std::array<GLint, 4> values{};
        glGetIntegerv(GL_SCISSOR_BOX, values.data());
        return values;
    }

    FakeScene scene;
    FakeViewport* viewport = nullptr;
};

TEST_F(ScenePickGL, clearingIsConfinedToTheRegionUntilIdsAreDrawn) {
    for (const bool isDeep : {false, true}) {
        begin(3, 4, 5, 6, isDeep);
        EXPECT_TRUE(isConfined());
        EXPECT_EQ(box(), (std::array<GLint, 4>{3, kHeight - 4 - 6, 5, 6}));
        drawIds();
        EXPECT_FALSE(isConfined());
        EXPECT_EQ(box(), kBox);
    }
}

TEST_F(ScenePickGL, layersAreNotConfined) {
    scene.addLayer(*viewport, "MeshLayer");
    static ViewportLayerPluginSuite layer;
    static bool wasConfined;
    layer = *viewport->layers.front()->suite;
    layer.pickerDraw = [](void*, int, int, int, int, VlAttributeStruct*) {
        wasConfined = isConfined();
    };
    viewport->layers.front()->suite = &layer;
    wasConfined = true;
    begin(3, 4, 5, 6);
    drawIds();
    EXPECT_FALSE(wasConfined);
}

TEST_F(ScenePickGL, anotherScissorStays) {
    glEnable(GL_SCISSOR_TEST);
    begin(3, 4, 5, 6);
    drawIds();
    EXPECT_TRUE(isConfined());
    EXPECT_EQ(box(), kBox);
    glDisable(GL_SCISSOR_TEST);
}

/// The host has cleared all else of the window after the first pick.
TEST_F(ScenePickGL, nextPickLeavesTheWindowWithoutStencils) {
    const auto stencil = [] {
        GLint value = 0;
        glReadPixels(3, 4, 1, 1, GL_STENCIL_INDEX, GL_INT, &value);
        return value;
    };
    glClearStencil(7);
    glClear(GL_STENCIL_BUFFER_BIT);
    glClearStencil(0);
    begin(3, 4, 5, 6);
    EXPECT_EQ(stencil(), 7); // a picture may need it still
    drawIds();
    begin(3, 4, 5, 6);
    EXPECT_EQ(stencil(), 0);
    drawIds();
}

/// A host that picks already answers nothing to a pick from within, and clears nothing.
TEST_F(ScenePickGL, pickWithinAnotherConfinesNothing) {
    Bundled::GLFramebuffer surface;
    glBindFramebuffer(GL_FRAMEBUFFER, surface.create());
    begin(3, 4, 5, 6);
    EXPECT_FALSE(isConfined());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);

    scene.addLayer(*viewport, "MeshLayer");
    static ViewportLayerPluginSuite layer;
    static ScenePickGL* test;
    layer = *viewport->layers.front()->suite;
    layer.pickerDraw = [](void*, int, int, int, int, VlAttributeStruct*) {
        test->begin(3, 4, 5, 6);
        EXPECT_FALSE(isConfined());
    };
    viewport->layers.front()->suite = &layer;
    test = this;
    begin(3, 4, 5, 6);
    drawIds();
    EXPECT_FALSE(isConfined());
}

/// A host may fail after it has asked.
TEST_F(ScenePickGL, pickThatGetsNoFurtherConfinesNothingElse) {
    const auto entries = {
        +[](const FakeViewport& view) { view.suite->draw(view.instance); },
        +[](const FakeViewport& view) { view.suite->resize(view.instance, kWidth, kHeight); },
        +[](const FakeViewport& view) { view.suite->cleanup(view.instance); }};
    for (const auto entry : entries) {
        begin(3, 4, 5, 6);
        EXPECT_TRUE(isConfined());
        entry(*viewport);
        EXPECT_FALSE(isConfined());
        EXPECT_EQ(box(), kBox);
    }
}

TEST_F(ScenePickGL, regionsOfNoSizeAndOutsideAreNoError) {
    for (const auto& [x, y, width, height] :
         {std::array{3, 4, 0, 0}, {3, 4, -1, -1}, {-20, -20, 10, 10}, {1000, 1000, 10, 10}}) {
        begin(x, y, width, height);
        drawIds();
        EXPECT_FALSE(isConfined());
        EXPECT_EQ(box(), kBox);
    }
}

} // namespace
