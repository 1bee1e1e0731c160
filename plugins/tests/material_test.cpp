#include "scene/material.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace {

using Bundled::Material;
using namespace VlAttribute;

TEST(Material, withoutAGroupIsOpaqueGrey) {
    const Material material = Material::fromAttributes({});
    EXPECT_EQ(material, Material());
    EXPECT_EQ(material.opacity, 1.0f);
    EXPECT_TRUE(material.texture.empty());
}

TEST(Material, readsColoursOfEitherPrecision) {
    const std::array<float, 3> wanted{0.25f, 0.5f, 1.0f};
    EXPECT_EQ(
        Material::fromAttributes({{"baseColor", FloatAttribute({0.25f, 0.5f, 1.0f}, 3)}}).baseColor,
        wanted);
    EXPECT_EQ(
        Material::fromAttributes({{"baseColor", DoubleAttribute({0.25, 0.5, 1.0}, 3)}}).baseColor,
        wanted);
}

TEST(Material, anEmbeddedPictureHasANameByItsContent) {
    const std::string_view content("\x89PNG\0more", 9);
    const auto read = [](std::string_view data) {
        return Material::fromAttributes({{"textureData", StringAttribute(data)}});
    };
    const Material material = read(content);
    EXPECT_EQ(std::string_view(material.textureData.getSample(0)[0]), content);
    EXPECT_FALSE(material.texture.empty());
    EXPECT_EQ(read(content), material);
    EXPECT_NE(read("other").texture, material.texture);
    EXPECT_EQ(material.baseColor, (std::array<float, 3>{1, 1, 1}));
    // A file goes first.
    EXPECT_EQ(Material::fromAttributes({{"texture", StringAttribute("wood.png")},
                                        {"textureData", StringAttribute(content)}})
                  .texture,
              "wood.png");
}

TEST(Material, fourthComponentIsTheOpacity) {
    EXPECT_EQ(Material::fromAttributes({{"baseColor", FloatAttribute({1, 1, 1, 0.5f}, 4)}}).opacity,
              0.5f);
}

TEST(Material, hasTwoSidesUnlessToldOtherwise) {
    EXPECT_TRUE(Material::fromAttributes({}).isDoubleSided);
    EXPECT_TRUE(Material::fromAttributes({{"doubleSided", IntAttribute(1)}}).isDoubleSided);
    EXPECT_FALSE(Material::fromAttributes({{"doubleSided", IntAttribute(0)}}).isDoubleSided);
}

TEST(Material, opacityIsKeptBetweenNothingAndWhole) {
    EXPECT_EQ(Material::fromAttributes({{"opacity", FloatAttribute(7.0f)}}).opacity, 1.0f);
    EXPECT_EQ(Material::fromAttributes({{"opacity", FloatAttribute(-7.0f)}}).opacity, 0.0f);
}

TEST(Material, textureShowsAsItIsUnlessColoured) {
    const Attribute file = StringAttribute("/a.png");
    EXPECT_EQ(Material::fromAttributes({{"texture", file}}).baseColor,
              (std::array<float, 3>{1, 1, 1}));
    EXPECT_EQ(Material::fromAttributes(
                  {{"texture", file}, {"baseColor", FloatAttribute({0.5f, 1, 1}, 3)}})
                  .baseColor,
              (std::array<float, 3>{0.5f, 1, 1}));
}

TEST(Material, attributesOfAnotherKindCountAsMissing) {
    const Material material = Material::fromAttributes(
        {{"baseColor", StringAttribute("red")}, {"texture", IntAttribute(1)}});
    EXPECT_EQ(material, Material());
}

} // namespace
