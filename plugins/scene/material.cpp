#include "scene/material.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <vector>

namespace Bundled {

namespace {

/// The numbers of an attribute in single precision, whichever of the two it has.
std::vector<float> numbers(const VlAttribute::Attribute& attribute) {
    if (const VlAttribute::FloatAttribute floats{attribute}; floats.isValid()) {
        const auto sample = floats.getNearestSample(0.0f);
        return {sample.begin(), sample.end()};
    }
    std::vector<float> result;
    for (const double value : VlAttribute::DoubleAttribute(attribute).getNearestSample(0.0f)) {
        result.push_back(static_cast<float>(value));
    }
    return result;
}

} // namespace

Material Material::fromAttributes(const VlAttribute::GroupAttribute& material) {
    Material result;
    result.texture = VlAttribute::StringAttribute(material.getChildByName("texture")).getValue();
    if (result.texture.empty()) {
        result.textureData = VlAttribute::StringAttribute(material.getChildByName("textureData"));
        if (result.textureData) {
            result.texture = "embedded " + result.textureData.getHash().str();
        }
    }
    if (!result.texture.empty()) {
        result.baseColor = {1.0f, 1.0f, 1.0f};
    }
    const std::vector<float> color = numbers(material.getChildByName("baseColor"));
    if (color.size() >= 3) {
        std::copy_n(color.begin(), 3, result.baseColor.begin());
    }
    if (color.size() >= 4) {
        result.opacity = color[3];
    }
    const std::vector<float> opacity = numbers(material.getChildByName("opacity"));
    if (!opacity.empty()) {
        result.opacity = opacity.front();
    }
    result.opacity = std::clamp(result.opacity, 0.0f, 1.0f);
    const VlAttribute::IntAttribute doubleSided(material.getChildByName("doubleSided"));
    result.isDoubleSided = doubleSided.getValue(1) != 0;
    return result;
}

} // namespace Bundled
