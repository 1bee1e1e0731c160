#include "manipulator/text.h"

#include <Imath/ImathBox.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

// What a drag writes beside the pointer.
namespace {

using Bundled::kDegreeSign;
using Bundled::kTimesSign;
using Bundled::readoutText;
using Bundled::Shape;
using Bundled::ShapeVertex;
using Bundled::textShape;
using Bundled::textWidth;

TEST(ReadoutText, hasFourDigitsAndAtMostThreeDecimals) {
    const struct {
        std::vector<double> numbers;
        const char* unit;
        const char* text;
    } rows[] = {
        {{0.0}, "", "0.000"},
        {{1.23456}, "", "1.235"},
        {{-12.3456}, "", "-12.35"},
        {{359.96}, "", "360.0"},
        {{-1080.04}, "", "-1080"},
        {{1234567.8}, "", "1234568"},
        {{0.00012}, "", "0.000"},
        {{-0.00012}, "", "0.000"},
        {{1.5, 0.0, -20.25}, "", "1.50 0.00 -20.25"},
        {{45.0}, "\xB0", "45.00\xB0"},
        {{1.0, 2.0}, "\xD7", "1.000\xD7 2.000\xD7"},
        {{}, "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(readoutText(row.numbers, row.unit), row.text);
    }
}

TEST(ReadoutText, infinityIsLargerThanAnyNumber) {
    EXPECT_EQ(readoutText(std::vector<double>{HUGE_VAL, 1.75}, ""), "inf 2");
}

TEST(ReadoutText, ofNumbersWithoutMeasureCanBeWritten) {
    for (const double number : {1e300, -1e300}) {
        EXPECT_FALSE(textShape(readoutText(std::vector<double>{number}, "")).empty());
    }
}

Imath::Box3f boxOf(const Shape& shape) {
    Imath::Box3f box;
    for (const ShapeVertex& vertex : shape) {
        box.extendBy(vertex.position);
    }
    return box;
}

TEST(TextShape, digitsStandOnTheLineAndAreOfHeightOneAndItsStroke) {
    for (const char digit : std::string("0123456789")) {
        const Imath::Box3f box = boxOf(textShape(std::string(1, digit)));
        EXPECT_NEAR(box.min.y, 0.0f, 0.1f) << digit;
        EXPECT_NEAR(box.max.y, 1.0f, 0.1f) << digit;
        EXPECT_NEAR(box.min.x, 0.0f, 0.1f) << digit;
        EXPECT_NEAR(box.max.x, textWidth(std::string(1, digit)), 0.1f) << digit;
    }
}

TEST(TextShape, glyphsStandBesideEachOther) {
    const std::string signs = {kDegreeSign, kTimesSign};
    for (const std::string& text : {std::string("08"), std::string("-1.5"), "3 " + signs}) {
        EXPECT_NEAR(boxOf(textShape(text)).max.x, textWidth(text), 0.1f) << text;
        EXPECT_GT(textWidth(text), textWidth(text.substr(1)) + 0.2f) << text;
    }
}

TEST(TextShape, isThickerWithAnEdge) {
    const Imath::Box3f thin = boxOf(textShape("8"));
    const Imath::Box3f thick = boxOf(textShape("8", 0.1f));
    EXPECT_NEAR(thick.max.y - thin.max.y, 0.1f, 0.05f);
    EXPECT_LT(thick.min.x, thin.min.x);
}

TEST(TextShape, leavesBlankWhatHasNoGlyph) {
    EXPECT_EQ(textShape("nan").size(), 0u);
    EXPECT_GT(textWidth("1e5"), textWidth("15"));
}

} // namespace
