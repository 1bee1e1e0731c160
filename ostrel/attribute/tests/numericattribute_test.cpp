#include "VlAttribute/VlAttribute.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace VlAttribute;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

template <typename Make>
std::string errorOf(Make make) {
    try {
        make();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Attribute, isOnePointerWide) {
    EXPECT_EQ(sizeof(Attribute), sizeof(void*));
    EXPECT_EQ(sizeof(GroupAttribute), sizeof(void*));
}

TEST(Attribute, isNullByDefaultAndAnswersEveryQuery) {
    const Attribute attribute;
    EXPECT_FALSE(attribute.isValid());
    EXPECT_FALSE(attribute);
    EXPECT_EQ(attribute.getType(), AttributeType::None);
    EXPECT_EQ(attribute.getHash(), Hash());
    EXPECT_EQ(attribute.getHandle(), nullptr);
    EXPECT_EQ(attribute.getRetainedHandle(), nullptr);
    EXPECT_EQ(attribute, Attribute::CreateAndSteal(nullptr));
    EXPECT_EQ(IntAttribute().getValue(7), 7);
    EXPECT_EQ(DoubleAttribute().getNumberOfValues(), 0);
    EXPECT_EQ(DoubleAttribute().getNumberOfTimeSamples(), 0);
    EXPECT_EQ(DoubleAttribute().getTupleSize(), 0);
    EXPECT_EQ(DoubleAttribute().getSampleTime(0), 0.0F);
    EXPECT_TRUE(FloatAttribute().getNearestSample(1).empty());
    EXPECT_TRUE(FloatAttribute().getSample(0).empty());
}

TEST(Attribute, isNullWhenMadeFromAnotherKind) {
    const Attribute number = IntAttribute(1);
    const Attribute group = GroupAttribute::Empty();
    EXPECT_TRUE(IntAttribute(number));
    EXPECT_TRUE(DataAttribute(number));
    EXPECT_FALSE(FloatAttribute(number));
    EXPECT_FALSE(DoubleAttribute(number));
    EXPECT_FALSE(StringAttribute(number));
    EXPECT_FALSE(GroupAttribute(number));
    EXPECT_FALSE(DataAttribute(group));
    EXPECT_TRUE(GroupAttribute(group));
}

TEST(Attribute, handlesCarryTheReferencesThatTheirNamesSay) {
    Attribute attribute = IntAttribute(5);
    VlAttributeStruct* handle = attribute.getHandle();
    EXPECT_EQ(handle->refCount, 1U);
    const Attribute second = Attribute::CreateAndRetain(handle);
    EXPECT_EQ(handle->refCount, 2U);
    VlAttributeStruct* retained = attribute.getRetainedHandle();
    EXPECT_EQ(retained, handle);
    EXPECT_EQ(handle->refCount, 3U);
    EXPECT_EQ(Attribute::CreateAndSteal(retained), attribute);
    EXPECT_EQ(handle->refCount, 2U);
    VlAttributeStruct* detached = attribute.detach();
    EXPECT_FALSE(attribute);
    EXPECT_EQ(handle->refCount, 2U);
    Attribute::CreateAndSteal(detached);
    EXPECT_EQ(handle->refCount, 1U);
}

TEST(Attribute, assignmentToItselfKeepsTheValue) {
    Attribute attribute = IntAttribute(5);
    Attribute& alias = attribute;
    attribute = alias;
    EXPECT_EQ(IntAttribute(attribute).getValue(), 5);
    attribute = std::move(alias);
    EXPECT_EQ(IntAttribute(attribute).getValue(), 5);
}

TEST(NumericAttribute, keepsWhatItWasGiven) {
    const IntAttribute one(-3);
    EXPECT_EQ(one.getType(), AttributeType::Int);
    EXPECT_EQ(one.getValue(), -3);
    EXPECT_EQ(one.getNumberOfValues(), 1);
    EXPECT_EQ(one.getTupleSize(), 1);
    EXPECT_EQ(one.getNumberOfTimeSamples(), 1);
    EXPECT_EQ(one.getSampleTime(0), 0.0F);

    const std::vector<double> matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
    const DoubleAttribute many(matrix, 4);
    EXPECT_EQ(many.getTupleSize(), 4);
    const auto values = many.getNearestSample(100);
    EXPECT_EQ(std::vector<double>(values.begin(), values.end()), matrix);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(values.data()) % alignof(double), 0U);
}

TEST(NumericAttribute, withoutValuesIsValidAndGivesTheDefault) {
    const FloatAttribute empty(std::vector<float>(), 3);
    EXPECT_TRUE(empty);
    EXPECT_EQ(empty.getNumberOfValues(), 0);
    EXPECT_EQ(empty.getNumberOfTimeSamples(), 1);
    EXPECT_EQ(empty.getTupleSize(), 3);
    EXPECT_EQ(empty.getValue(2.5F), 2.5F);
}

TEST(NumericAttribute, outOfRangeQueriesAnswerNothing) {
    const IntAttribute attribute({1, 2});
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{1}}) {
        EXPECT_TRUE(attribute.getSample(index).empty()) << index;
        EXPECT_EQ(attribute.getSampleTime(index), 0.0F) << index;
    }
}

struct NearestRow {
    const char* name;
    float time;
    int expected; // the value of the sample at times -2, 0, 1, 4 is 10, 20, 30, 40
};

class NearestSample : public testing::TestWithParam<NearestRow> {};

TEST_P(NearestSample, isTheClosestAndTheEarlierOnATie) {
    const std::vector<float> times{-2, 0, 1, 4};
    const IntAttribute attribute(times, {{10}, {20}, {30}, {40}});
    EXPECT_EQ(attribute.getNearestSample(GetParam().time)[0], GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Times, NearestSample,
    testing::Values(NearestRow{"farBefore", -100, 10}, NearestRow{"onTheFirst", -2, 10},
                    NearestRow{"tieGoesToTheEarlier", -1, 10},
                    NearestRow{"justPastATie", -0.99F, 20}, NearestRow{"onZero", 0, 20},
                    NearestRow{"halfBetween", 0.5F, 20}, NearestRow{"nearerTheLater", 3, 40},
                    NearestRow{"longTie", 2.5F, 30}, NearestRow{"farBehind", 1e30F, 40},
                    NearestRow{"infinity", kInfinity, 40},
                    NearestRow{"notANumberIsZero", kNaN, 20}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(NumericAttribute, getValueReadsTheSampleNearestToZero) {
    const std::vector<float> times{-5, 1};
    EXPECT_EQ(IntAttribute(times, {{1}, {2}}).getValue(), 2);
}

TEST(NumericAttribute, sortsSamplesByTime) {
    const std::vector<float> times{3, -1, 2};
    const FloatAttribute attribute(times, {{30, 31}, {-10, -11}, {20, 21}}, 2);
    const float expectedTimes[] = {-1, 2, 3};
    const float expectedFirst[] = {-10, 20, 30};
    ASSERT_EQ(attribute.getNumberOfTimeSamples(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(attribute.getSampleTime(i), expectedTimes[i]);
        EXPECT_EQ(attribute.getSample(i)[0], expectedFirst[i]);
        EXPECT_EQ(attribute.getSample(i).size(), 2U);
    }
}

TEST(NumericAttribute, refusesWhatCantBeAnAttribute) {
    const std::vector<float> none;
    const std::vector<float> one{0};
    const std::vector<float> two{0, 1};
    const struct {
        std::string error;
        std::function<void()> make;
    } rows[] = {
        {"int attribute: the tuple size must be a positive 32-bit number, not 0",
         [] { IntAttribute({1}, 0); }},
        {"int attribute: the tuple size must be a positive 32-bit number, not -1",
         [] { IntAttribute({1}, -1); }},
        {"int attribute: the tuple size must be a positive 32-bit number, not 4294967296",
         [] { IntAttribute({1}, std::int64_t{1} << 32); }},
        {"double attribute: the tuple size 3 does not divide 4 values",
         [] {
             DoubleAttribute({1, 2, 3, 4}, 3);
         }},
        {"float attribute: the sample time nan is not a finite number",
         [] { FloatAttribute(std::vector<float>{kNaN}, {{1}}); }},
        {"float attribute: the sample time inf is not a finite number",
         [] {
             FloatAttribute(std::vector<float>{0, kInfinity}, {{1}, {2}});
         }},
        {"float attribute: the sample time 1.5 stands twice",
         [] {
             FloatAttribute(std::vector<float>{1.5F, 0, 1.5F}, {{1}, {2}, {3}});
         }},
        {"float attribute: the sample time 0 stands twice",
         [] {
             FloatAttribute(std::vector<float>{0.0F, -0.0F}, {{1}, {2}});
         }},
        {"int attribute: 2 sample times for 1 samples", [&] { IntAttribute(two, {{1}}); }},
        {"int attribute: at least one time sample is needed",
         [&] { IntAttribute(none, std::vector<std::vector<std::int32_t>>()); }},
        {"int attribute: samples differ in length: 1 values and 2",
         [&] {
             IntAttribute(two, {{1}, {1, 2}});
         }},
        {"string attribute: the tuple size 2 does not divide 3 values",
         [] {
             StringAttribute({"a", "b", "c"}, 2);
         }},
        {"string attribute: samples differ in length: 0 values and 1",
         [&] {
             StringAttribute(two, {{}, {"a"}});
         }},
        {"string attribute: 1 sample times for 2 samples",
         [&] {
             StringAttribute(one, {{"a"}, {"b"}});
         }},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(errorOf(row.make), row.error);
    }
}

TEST(StringAttribute, initialiserListIsAListAndNotAnIteratorPair) {
    const StringAttribute attribute({"ab", "c"});
    ASSERT_EQ(attribute.getNumberOfValues(), 2);
    EXPECT_EQ(attribute.getNearestSample(0)[0], "ab");
    EXPECT_EQ(attribute.getNearestSample(0)[1], "c");
}

TEST(StringAttribute, keepsTextsOfEveryKind) {
    const std::string zero("a\0b", 3);
    const std::vector<std::string> texts{"", "x", zero, "\xc3\xa4", std::string(5000, 'y'), ""};
    const StringAttribute attribute(texts);
    ASSERT_EQ(attribute.getNumberOfValues(), 6);
    const StringSample sample = attribute.getNearestSample(0);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(sample[i], texts[i]) << i;
        EXPECT_EQ(sample[i].c_str()[texts[i].size()], 0) << i;
    }
    EXPECT_EQ(std::vector<std::string>(sample.begin(), sample.end()), texts);
}

TEST(StringAttribute, singleValueReadsBack) {
    EXPECT_EQ(StringAttribute("polymesh").getValue(), "polymesh");
    EXPECT_STREQ(StringAttribute("polymesh").getValueCstr(), "polymesh");
    EXPECT_EQ(StringAttribute(std::string()).getNumberOfValues(), 1);
    EXPECT_EQ(StringAttribute(static_cast<const char*>(nullptr)).getValue("default"), "");
}

TEST(StringAttribute, emptyListIsValidAndGivesTheDefault) {
    const StringAttribute empty{std::vector<std::string>()};
    EXPECT_TRUE(empty);
    EXPECT_EQ(empty.getNumberOfValues(), 0);
    EXPECT_EQ(empty.getValue("default"), "default");
    EXPECT_STREQ(empty.getValueCstr(), "");
    EXPECT_STREQ(StringAttribute().getValueCstr(), "");
    EXPECT_TRUE(StringAttribute().getNearestSample(0).empty());
}

TEST(StringAttribute, nullPointersInAListAreEmpty) {
    const std::array<const char*, 2> texts{nullptr, "a"};
    const StringAttribute attribute{std::span<const char* const>(texts)};
    EXPECT_EQ(attribute, StringAttribute({"", "a"}));
}

TEST(StringAttribute, timeSamplesReadBack) {
    const std::vector<float> times{1, 0};
    const StringAttribute attribute(times, {{"late", "x"}, {"early", ""}});
    EXPECT_EQ(attribute.getNearestSample(0.5F)[0], "early");
    EXPECT_EQ(attribute.getNearestSample(0.6F)[0], "late");
    EXPECT_EQ(attribute.getSample(0)[1], "");
    EXPECT_EQ(attribute.getSample(1)[1], "x");
    EXPECT_TRUE(attribute.getSample(2).empty());
}

} // namespace
