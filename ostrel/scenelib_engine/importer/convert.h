#pragma once

#include "modeldata.h"

#include <assimp/matrix4x4.h>
#include <assimp/types.h>

#include <cmath>
#include <string>

/// The importer multiplies columns.
[[nodiscard]] inline ModelData::Matrix toMatrix(const aiMatrix4x4& m) {
    return {m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
            m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
}

/// A channel of a colour as it shows on a screen (sRGB), as the scene has it.
[[nodiscard]] inline float linearFromScreen(float value) {
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

[[nodiscard]] inline std::string toString(const aiString& text) {
    return {text.C_Str(), text.length};
}
