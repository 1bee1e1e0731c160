#include "support/geometries.h"
#include "support/gltest.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

// What the display modes show. Needs an OpenGL context; skipped where none can be made.
namespace {

using VlAttribute::Attribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

GroupAttribute with(const GroupAttribute& location, const char* name, const Attribute& value) {
    VlAttribute::GroupBuilder builder;
    builder.update(location);
    builder.set(name, value);
    return builder.build();
}

/// A red square of edge 2 that faces +z; on its diagonals is the middle of the picture.
GroupAttribute square(const char* fill = nullptr) {
    const GroupAttribute location = squareLocation(2.0f, paint(0.9f, 0.1f, 0.1f));
    return fill ? with(location, "viewer.default.drawOptions.fill", StringAttribute(fill))
                : location;
}

class DisplayModesGL : public SceneGLTest {
protected:
    void SetUp() override {
        SceneGLTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        viewport = &scene.addViewport(kSize, kSize);
        scene.addCamera(*viewport, {0, 0, 5});
        layer = &scene.addLayer(*viewport, "MeshLayer");
        empty = draw();
    }

    void setMode(const char* name) { setOption(*layer, "displayMode", StringAttribute(name)); }
    Pixels draw() { return SceneGLTest::draw(*viewport); }
    static bool isRed(const Pixels& pixels, int x, int y) {
        const auto color = pixels.at(x, y);
        return color[0] > color[2] + 40;
    }
    static int countRed(const Pixels& pixels) {
        int count = 0;
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) {
                count += isRed(pixels, x, y) ? 1 : 0;
            }
        }
        return count;
    }
    /// What a mode shows of the square: its inside, its edge in the middle of a side, its corner.
    std::string shown() {
        const Pixels pixels = draw();
        const auto isNear = [&](int x, int y) {
            bool found = false;
            for (int dx = -2; dx <= 2; ++dx) {
                for (int dy = -2; dy <= 2; ++dy) {
                    // More than the background of a draft differs.
                    found = found || std::abs(pixels.brightness(x + dx, y + dy) -
                                              empty.brightness(x + dx, y + dy)) > 24;
                }
            }
            return found;
        };
        // At a distance of 5 and 45 degrees, a unit is this many pixels.
        constexpr int kUnit = 31;
        return std::string(isNear(kMiddle, kMiddle + 7) ? "inside " : "") +
               (isNear(kMiddle + kUnit, kMiddle + 7) ? "edge " : "") +
               (isNear(kMiddle + kUnit, kMiddle + kUnit) ? "corner" : "");
    }

    FakeViewport* viewport = nullptr;
    FakeLayer* layer = nullptr;
    Pixels empty;
};

TEST_F(DisplayModesGL, eachModeShowsItsPartsOfAMesh) {
    const struct {
        const char* mode;
        const char* parts;
    } kRows[] = {{"shaded", "inside edge corner"},
                 {"wireframe", "edge corner"},
                 {"wireframeOnShaded", "inside edge corner"},
                 {"points", "corner"}};
    scene.tell("/root/a", square());
    for (const bool isDraft : {false, true}) {
        setDraft(*viewport, isDraft);
        for (const auto& row : kRows) {
            setMode(row.mode);
            EXPECT_EQ(shown(), row.parts) << row.mode << (isDraft ? ", draft" : "");
        }
    }
}

TEST_F(DisplayModesGL, locationAsksForItsOwnModeWhateverTheLayers) {
    const struct {
        const char* fill;
        const char* parts;
    } kRows[] = {{"shaded", "inside edge corner"},
                 {"wireframe", "edge corner"},
                 {"points", "corner"},
                 {"shaded", "inside edge corner"}};
    for (const auto& row : kRows) {
        scene.tell("/root/a", square(row.fill));
        for (const char* mode : {"shaded", "wireframe", "points"}) {
            setMode(mode);
            EXPECT_EQ(shown(), row.parts) << row.fill << " in " << mode;
        }
    }
}

TEST_F(DisplayModesGL, equalMeshesInDifferentModesAreDrawnEachInItsOwn) {
    scene.tell("/root/a", square("wireframe"));
    scene.tell("/root/b", square(), translation(0, 0, -7));
    EXPECT_EQ(shown(), "inside edge corner");
    scene.remove("/root/b");
    EXPECT_EQ(shown(), "edge corner");
}

TEST_F(DisplayModesGL, edgesOnASurfaceDifferFromItDarkOrBright) {
    for (const float shade : {0.0f, 0.3f, 0.9f}) {
        const GroupAttribute grey{{"baseColor", FloatAttribute({shade, shade, shade}, 3)}};
        // Two quads side by side: their common edge runs through the middle.
        scene.tell("/root/a",
                   meshLocation({-1, -1, 0, 0, -1, 0, 1, -1, 0, -1, 1, 0, 0, 1, 0, 1, 1, 0},
                                {{0, 1, 4, 3}, {1, 2, 5, 4}}, grey));
        setMode("wireframeOnShaded");
        const Pixels pixels = draw();
        int strongest = 0;
        for (int x = kMiddle - 2; x <= kMiddle + 2; ++x) {
            strongest = std::max(strongest, std::abs(pixels.brightness(x, kMiddle) -
                                                     pixels.brightness(kMiddle + 9, kMiddle)));
        }
        EXPECT_GT(strongest, 60) << shade;
    }
}

TEST_F(DisplayModesGL, pointsLocationsAreDotsInEveryMode) {
    scene.tell("/root/a",
               {{"type", StringAttribute("points")},
                {"geometry",
                 GroupAttribute{{"point", GroupAttribute{{"P", FloatAttribute({0, 0, 0}, 3)}}}}}});
    const Pixels shaded = draw();
    EXPECT_NE(shaded, empty);
    for (const char* mode : {"wireframe", "wireframeOnShaded", "points"}) {
        setMode(mode);
        EXPECT_EQ(draw(), shaded) << mode;
    }
}

TEST_F(DisplayModesGL, hiddenByItsDrawOptionsIsNotDrawnAndBelowItIs) {
    scene.tell("/root/a", with(square(), "viewer.default.drawOptions.hide", IntAttribute(1)));
    EXPECT_EQ(draw(), empty);
    scene.tell("/root/a/b", square());
    EXPECT_GT(countRed(draw()), 1000);
}

TEST_F(DisplayModesGL, smoothingOffGivesLinesWithoutInBetweens) {
    Imath::M44d turned;
    turned.rotate(Imath::V3d(0, 0, 0.2));
    const auto shades = [&] {
        const Pixels pixels = draw();
        std::set<Pixels::Color> colors;
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) {
                if (isRed(pixels, x, y)) {
                    colors.insert(pixels.at(x, y));
                }
            }
        }
        return colors.size();
    };
    scene.tell("/root/a", square("wireframe"), turned);
    EXPECT_GT(shades(), 8u);
    scene.tell(
        "/root/a",
        with(square("wireframe"), "viewer.default.drawOptions.smoothing", StringAttribute("off")),
        turned);
    EXPECT_LE(shades(), 3u);
}

} // namespace
