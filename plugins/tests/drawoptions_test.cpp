#include "scene/drawoptions.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

namespace {

using namespace Bundled;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

DrawOptions optionsOf(const char* name, const Attribute& value) {
    VlAttribute::GroupBuilder builder;
    builder.set(std::string("viewer.default.drawOptions.") + name, value);
    return DrawOptions::fromAttributes(builder.build());
}

TEST(DrawOptions, locationThatSaysNothingLeavesItToTheLayer) {
    EXPECT_EQ(DrawOptions::fromAttributes(GroupAttribute::Empty()), DrawOptions());
    EXPECT_EQ(DrawOptions::fromAttributes(GroupAttribute()), DrawOptions());
    EXPECT_EQ(DrawOptions().fill, std::nullopt);
    EXPECT_TRUE(DrawOptions().smooth);
    EXPECT_FALSE(DrawOptions().hide);
}

TEST(DrawOptions, fillNamesADisplayMode) {
    const struct {
        const char* name;
        DisplayMode mode;
    } kRows[] = {{"shaded", DisplayMode::Shaded},
                 {"wireframe", DisplayMode::Wireframe},
                 {"wireframeOnShaded", DisplayMode::WireframeOnShaded},
                 {"points", DisplayMode::Points}};
    for (const auto& row : kRows) {
        EXPECT_EQ(optionsOf("fill", StringAttribute(row.name)).fill, row.mode) << row.name;
        EXPECT_STREQ(nameOf(row.mode), row.name);
    }
}

TEST(DrawOptions, valuesOfNoMeaningCountAsAbsent) {
    EXPECT_EQ(optionsOf("fill", StringAttribute("Wireframe")), DrawOptions());
    EXPECT_EQ(optionsOf("fill", StringAttribute("")), DrawOptions());
    EXPECT_EQ(optionsOf("fill", IntAttribute(1)), DrawOptions());
    EXPECT_EQ(optionsOf("smoothing", StringAttribute("on")), DrawOptions());
    EXPECT_EQ(optionsOf("hide", StringAttribute("1")), DrawOptions());
    EXPECT_EQ(optionsOf("hide", IntAttribute(0)), DrawOptions());
}

TEST(DrawOptions, smoothingOffAndHide) {
    EXPECT_FALSE(optionsOf("smoothing", StringAttribute("off")).smooth);
    EXPECT_TRUE(optionsOf("hide", IntAttribute(1)).hide);
    EXPECT_TRUE(optionsOf("hide", IntAttribute(-1)).hide);
}

} // namespace
