#include "VlAttribute/VlAttribute.h"
#include "hashstream.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace VlAttribute;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// One attribute of each shape, no two of them equal.
std::vector<Attribute> distinctAttributes() {
    const std::vector<float> zero{0};
    const std::vector<float> one{1};
    const std::vector<float> two{0, 1};
    return {
        Attribute(),
        IntAttribute(0),
        IntAttribute(1),
        IntAttribute({1, 0}),
        IntAttribute({1, 0}, 2),
        IntAttribute({0, 1}),
        IntAttribute(std::vector<std::int32_t>()),
        IntAttribute(std::vector<std::int32_t>(), 2),
        IntAttribute(one, {{1}}),
        IntAttribute(two, {{1}, {0}}),
        IntAttribute(two, {{1, 0}, {1, 0}}),
        FloatAttribute(0.0F),
        FloatAttribute(1.0F),
        FloatAttribute(std::vector<float>()),
        DoubleAttribute(0.0),
        DoubleAttribute(1.0),
        DoubleAttribute(kNaN),
        StringAttribute(""),
        StringAttribute("a"),
        StringAttribute("ab"),
        StringAttribute({"a", "b"}),
        StringAttribute({"ab", ""}),
        StringAttribute({"", "ab"}),
        StringAttribute({"a", "b"}, 2),
        StringAttribute(std::vector<std::string>()),
        GroupAttribute::Empty(),
        GroupAttribute{{"a", IntAttribute(0)}},
        GroupAttribute{{"a", IntAttribute(1)}},
        GroupAttribute{{"b", IntAttribute(1)}},
        GroupAttribute{{"a", FloatAttribute(1)}},
        GroupAttribute{{"a", IntAttribute(1)}, {"b", IntAttribute(1)}},
        GroupAttribute{{"b", IntAttribute(1)}, {"a", IntAttribute(1)}},
        GroupAttribute{{"a.b", IntAttribute(1)}},
        GroupAttribute{{"a", GroupAttribute::Empty()}},
        GroupBuilder().set("a", IntAttribute(1), false).build(),
    };
}

TEST(Equality, holdsForEqualContentAndForNothingElse) {
    const std::vector<Attribute> left = distinctAttributes();
    const std::vector<Attribute> right = distinctAttributes();
    // First without hashes, then with them on one side, then on both.
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < left.size(); ++i) {
            for (std::size_t j = 0; j < right.size(); ++j) {
                EXPECT_EQ(left[i] == right[j], i == j) << i << " and " << j << ", round " << round;
            }
        }
        for (const Attribute& attribute : round == 0 ? left : right) {
            attribute.getHash();
        }
    }
}

TEST(Equality, agreesWithTheHash) {
    const std::vector<Attribute> left = distinctAttributes();
    const std::vector<Attribute> right = distinctAttributes();
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < right.size(); ++j) {
            EXPECT_EQ(left[i].getHash() == right[j].getHash(), i == j) << i << " and " << j;
        }
    }
}

TEST(Equality, treatsTheOneSampleAtTimeZeroAlikeHoweverItWasGiven) {
    const std::vector<float> zero{0};
    const std::vector<float> minusZero{-0.0F};
    const IntAttribute plain({1, 2});
    EXPECT_EQ(plain, IntAttribute(zero, {{1, 2}}));
    EXPECT_EQ(plain.getHash(), IntAttribute(minusZero, {{1, 2}}).getHash());
}

TEST(Equality, treatsMinusZeroAsZero) {
    const DoubleAttribute plus({0.0, 1.0});
    const DoubleAttribute minus({-0.0, 1.0});
    EXPECT_EQ(plus, minus);
    EXPECT_EQ(plus.getHash(), minus.getHash());
    EXPECT_TRUE(std::signbit(minus.getValue())) << "the value itself is kept";
    EXPECT_EQ(FloatAttribute(0.0F).getHash(), FloatAttribute(-0.0F).getHash());
}

TEST(Equality, treatsEveryNotANumberAlikeSoThatCopiesAreEqual) {
    const double other = std::bit_cast<double>(0xfff8'0000'0000'1234U);
    const DoubleAttribute first({kNaN, 1.0});
    const DoubleAttribute second({other, 1.0});
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.getHash(), second.getHash());
    EXPECT_FALSE(first == DoubleAttribute({1.0, kNaN}));
}

TEST(Equality, isQuickForGroupsThatShareTheirPartsOverManyLevels) {
    // Without care there would be 2^200 roads through each of them.
    GroupAttribute left{{"leaf", IntAttribute(1)}};
    GroupAttribute right{{"leaf", IntAttribute(1)}};
    for (int level = 0; level < 200; ++level) {
        left = GroupAttribute{{"a", left}, {"b", left}};
        right = GroupAttribute{{"a", right}, {"b", right}};
    }
    EXPECT_EQ(left, right);
    EXPECT_EQ(left.getHash(), right.getHash());
}

TEST(Equality, followsNestingAsDeepAsItGoes) {
    const auto nest = [] {
        GroupAttribute group{{"leaf", IntAttribute(1)}};
        for (int level = 0; level < 200'000; ++level) {
            group = GroupAttribute{{"a", group}};
        }
        return group;
    };
    const GroupAttribute left = nest();
    const GroupAttribute right = nest();
    EXPECT_EQ(left, right);
}

// These constants are part of the interface: numbers derived from hashes may be stored. If one
// changes, so does everything that was stored.
TEST(Hash, isTheSameInEveryRunAndBuild) {
    const std::vector<float> times{0, 1.5F};
    const struct {
        const char* name;
        Attribute attribute;
        const char* hash;
    } rows[] = {
        {"null", Attribute(), "00000000000000000000000000000000"},
        {"int", IntAttribute(1), "359f71d92e9e0a21cd684475a8750fb6"},
        {"float", FloatAttribute(1), "40705202099bf7c7a9084aeeb69e3669"},
        {"double", DoubleAttribute({1, 2, 3}, 3), "13d7a3fdb3815171e321a6786ede8e00"},
        {"string", StringAttribute("x"), "d5399fcf6886b9a08f0f8dd8aa384fca"},
        {"empty string", StringAttribute(""), "90cc202c0348839c3e2d64d6d7364eb9"},
        {"no strings", StringAttribute(std::vector<std::string>()),
         "91ae68d510bcf558b7f3a068e048dcf4"},
        {"samples", FloatAttribute(times, {{1, 2}, {3, 4}}, 2), "6e2058263eb56ae5e4bb31ca2a715eb8"},
        {"empty group", GroupAttribute::Empty(), "bece7561abd0b38b64b5c1b28fbe6b34"},
        {"group", GroupAttribute{{"type", StringAttribute("mesh")}, {"a.b", IntAttribute(2)}},
         "e03349c856b4e7b92b459cce7077fbda"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.attribute.getHash().str(), row.hash) << row.name;
    }
}

TEST(Hash, isXxh3OverHeadTimesAndValues) {
    const std::uint32_t head[] = {3, 3, 2, 3}; // double; tuple size, samples, values
    const float times[] = {-1, 0};
    const double values[] = {1, 2, 3, 4, 5, 6};
    std::string bytes(reinterpret_cast<const char*>(head), sizeof head);
    bytes.append(reinterpret_cast<const char*>(times), sizeof times);
    bytes.append(reinterpret_cast<const char*>(values), sizeof values);
    const XXH128_hash_t expected = XXH3_128bits(bytes.data(), bytes.size());
    const DoubleAttribute attribute(times, {{1, 2, 3}, {4, 5, 6}}, 3);
    EXPECT_EQ(attribute.getHash(), (Hash{expected.high64, expected.low64}));
}

TEST(Hash, printsItsFirstWordFirst) {
    EXPECT_EQ((Hash{0x0123456789abcdef, 0xf}.str()), "0123456789abcdef000000000000000f");
}

TEST(HashStream, dependsOnTheBytesAndNotOnThePieces) {
    std::mt19937 random(20260731);
    std::vector<unsigned char> bytes(20'000);
    for (auto& byte : bytes) {
        byte = static_cast<unsigned char>(random());
    }
    for (const std::size_t size : {0U, 1U, 1023U, 1024U, 1025U, 2048U, 20'000U}) {
        HashStream whole;
        whole.append(bytes.data(), size);
        const Hash expected = whole.finish();
        for (int round = 0; round < 20; ++round) {
            HashStream pieces;
            std::size_t position = 0;
            while (position < size) {
                const std::size_t piece =
                    std::min<std::size_t>(size - position, random() % (round < 10 ? 40 : 3000));
                pieces.append(bytes.data() + position, piece);
                position += piece;
            }
            EXPECT_EQ(pieces.finish(), expected) << size << " bytes, round " << round;
        }
    }
}

} // namespace
