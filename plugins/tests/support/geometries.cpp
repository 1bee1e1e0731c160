#include "support/geometries.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <span>
#include <string>

using namespace VlAttribute;

GroupAttribute meshLocation(const std::vector<float>& points,
                            const std::vector<std::vector<std::int32_t>>& polygons,
                            const GroupAttribute& material) {
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> starts{0};
    for (const auto& polygon : polygons) {
        vertices.insert(vertices.end(), polygon.begin(), polygon.end());
        starts.push_back(static_cast<std::int32_t>(vertices.size()));
    }
    GroupBuilder builder;
    builder.set("type", StringAttribute("polymesh"));
    builder.set("geometry.point.P", FloatAttribute(std::span<const float>(points), 3));
    builder.set("geometry.poly.vertexList", IntAttribute(std::span<const std::int32_t>(vertices)));
    builder.set("geometry.poly.startIndex", IntAttribute(std::span<const std::int32_t>(starts)));
    builder.set("material", material);
    return builder.build();
}

GroupAttribute paint(float r, float g, float b) {
    return {{"baseColor", FloatAttribute({r, g, b}, 3)}};
}

GroupAttribute squareLocation(float edge, const GroupAttribute& material) {
    const float half = edge / 2.0f;
    return GroupBuilder()
        .update(meshLocation({-half, -half, 0, half, -half, 0, half, half, 0, -half, half, 0},
                             {{0, 1, 2, 3}}, material))
        .set("geometry.point.st", FloatAttribute({0, 0, 1, 0, 1, 1, 0, 1}, 2))
        .build();
}

GroupAttribute cubeLocation(float edge, const GroupAttribute& material) {
    std::vector<float> points;
    for (int corner = 0; corner < 8; ++corner) {
        for (int axis = 0; axis < 3; ++axis) {
            points.push_back((corner >> axis & 1) != 0 ? edge / 2.0f : -edge / 2.0f);
        }
    }
    return meshLocation(
        points,
        {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}},
        material);
}

GroupAttribute cubeWithHoleLocation() {
    // A TGA file, four by four pixels of blue, green, red and alpha.
    constexpr char kHeader[18] = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 4, 0, 32, 8};
    std::string file(kHeader, sizeof(kHeader));
    for (int pixel = 0; pixel < 16; ++pixel) {
        const bool isInside = (pixel % 4) % 3 != 0 && (pixel / 4) % 3 != 0;
        file += {0, 0, '\xff', isInside ? '\0' : '\xff'};
    }
    // All other sides show nothing but the rim of the picture.
    std::vector<float> st;
    for (int corner = 0; corner < 8; ++corner) {
        const bool isInFront = (corner & 4) != 0;
        st.push_back(isInFront && (corner & 1) != 0 ? 1.0f : 0.0f);
        st.push_back(isInFront && (corner & 2) != 0 ? 1.0f : 0.0f);
    }
    GroupBuilder builder;
    builder.update(cubeLocation(2.0f, {{"textureData", StringAttribute(file)}}));
    builder.set("geometry.point.st", FloatAttribute(std::span<const float>(st), 2));
    return builder.build();
}

DoubleAttribute matrixAttribute(const Imath::M44d& matrix) {
    return DoubleAttribute(std::span<const double>(matrix.getValue(), 16), 4);
}

Imath::M44d translation(double x, double y, double z) {
    Imath::M44d matrix;
    matrix.setTranslation(Imath::V3d(x, y, z));
    return matrix;
}
