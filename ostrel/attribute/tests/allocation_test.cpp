#include "VlAttribute/VlAttribute.h"
#include "allocationcounter.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using namespace VlAttribute;

TEST(Attribute, dataOfOneSmallSampleIsOneAllocation) {
    const std::vector<double> matrix(16);
    const std::vector<float> times{0, 1};
    const struct {
        const char* name;
        std::function<Attribute()> make;
    } rows[] = {
        {"one int", [] { return IntAttribute(1); }},
        {"bounds", [&] { return DoubleAttribute(std::span(matrix).first(6)); }},
        {"matrix", [&] { return DoubleAttribute(matrix, 4); }},
        {"string", [] { return StringAttribute("a text that fills no small buffer at all"); }},
    };
    for (const auto& row : rows) {
        const int before = allocationCount();
        const Attribute attribute = row.make();
        EXPECT_EQ(allocationCount() - before, 1) << row.name;
        attribute.getHash();
        EXPECT_EQ(allocationCount() - before, 1) << row.name << ", hashed";
    }
}

TEST(GroupBuilder, buildIsOneAllocationAGroup) {
    GroupBuilder builder;
    for (int i = 0; i < 100; ++i) {
        builder.set("allocated" + std::to_string(i), IntAttribute(i));
    }
    const int before = allocationCount();
    const GroupAttribute group = builder.build(BuildMode::KeepBuilder);
    EXPECT_EQ(allocationCount() - before, 1);
}

TEST(GroupAttribute, readingAllocatesNothing) {
    const GroupAttribute group{{"a.b.c", IntAttribute(1)}, {"s", StringAttribute("text")}};
    const int before = allocationCount();
    EXPECT_TRUE(group.getChildByName("a.b.c"));
    EXPECT_TRUE(group.getChildByIndex(0));
    EXPECT_STREQ(StringAttribute(group.getChildByName("s")).getValueCstr(), "text");
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
