#include "optionidgenerator.h"

#include "optionidgeneratorclient.h"
#include "suites/optionidgeneratorhostsuite.h"

#include "VlAttribute/StringAttribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace ViewerAPI {
namespace {

using testing::ThrowsMessage;

const char* const kNames[] = {"x", "", "drawOptions", "a rather longer option name", "\xc3\xa9"};

TEST(OptionIdGenerator, givesIdsWhoseLow16BitsAreZero) {
    VlOptionIdGeneratorHostStruct generator;
    for (const char* name : kNames) {
        EXPECT_EQ(generator.generate(name) & 0xffffU, 0U) << '"' << name << '"';
    }
}

TEST(OptionIdGenerator, takesTheFirstWordOfTheStringAttributesHashUpBy16Bits) {
    VlOptionIdGeneratorHostStruct generator;
    for (const char* name : kNames) {
        EXPECT_EQ(generator.generate(name),
                  VlAttribute::StringAttribute(name).getHash().first << 16U)
            << '"' << name << '"';
    }
}

TEST(OptionIdGenerator, givesTheSameIdForTheSameName) {
    VlOptionIdGeneratorHostStruct generator;
    EXPECT_EQ(generator.generate("x"), generator.generate("x"));
    EXPECT_NE(generator.generate("x"), generator.generate("y"));
}

TEST(OptionIdGenerator, looksNamesUpAgain) {
    VlOptionIdGeneratorHostStruct generator;
    for (const char* name : kNames) {
        EXPECT_STREQ(generator.lookUp(generator.generate(name)), name);
    }
}

TEST(OptionIdGenerator, answersTheEmptyTextForAnIdNeverGenerated) {
    VlOptionIdGeneratorHostStruct generator;
    generator.generate("x");
    EXPECT_STREQ(generator.lookUp(1), "");
    EXPECT_STREQ(generator.lookUp(0), "");
}

TEST(OptionIdGenerator, hashesTheEmptyNameLikeAnyOther) {
    VlOptionIdGeneratorHostStruct generator;
    const std::uint64_t optionId = generator.generate("");
    EXPECT_NE(optionId, 0U);
    EXPECT_EQ(generator.OptionIdTable.count(optionId), 1U);
    EXPECT_STREQ(generator.lookUp(optionId), "");
}

TEST(OptionIdGenerator, takesANullNameForTheEmptyOne) {
    VlOptionIdGeneratorHostStruct generator;
    EXPECT_EQ(generator.generate(nullptr), generator.generate(""));
}

TEST(OptionIdGenerator, remembersTheNewestNameOnACollision) {
    VlOptionIdGeneratorHostStruct generator;
    const std::uint64_t optionId = generator.generate("x");
    generator.OptionIdTable[optionId] = "another name with this id";
    EXPECT_EQ(generator.generate("x"), optionId);
    EXPECT_STREQ(generator.lookUp(optionId), "x");
}

TEST(OptionIdGenerator, keepsALookedUpTextInPlaceWhenItsNameIsGeneratedAgain) {
    VlOptionIdGeneratorHostStruct generator;
    const std::string name(100, 'n');
    const std::uint64_t optionId = generator.generate(name.c_str());
    const char* const text = generator.lookUp(optionId);
    generator.generate(name.c_str());
    EXPECT_EQ(generator.lookUp(optionId), text);
}

TEST(OptionIdGeneratorHostSuite, leadsToTheOneGeneratorOfTheProcess) {
    const OptionIdGeneratorHostSuite& suite = *getOptionIdGeneratorHostSuite();
    const VlOptionIdGeneratorHandle generator = suite.getOptionIdGenerator();
    EXPECT_EQ(generator, &VlOptionIdGeneratorHostStruct::instance());
    const std::uint64_t optionId = suite.generateOptionIdByName(generator, "suite.name");
    EXPECT_STREQ(suite.lookUpOptionId(generator, optionId), "suite.name");
    EXPECT_STREQ(VlOptionIdGeneratorHostStruct::instance().lookUp(optionId), "suite.name");
    EXPECT_STREQ(suite.lookUpOptionId(generator, 1), "");
}

std::string askedName;
std::uint32_t askedVersion = 0;

const VlPluginHost& hostWithSuite() {
    static const VlPluginHost host{[](const char* name, std::uint32_t version) -> const void* {
        askedName = name;
        askedVersion = version;
        return getOptionIdGeneratorHostSuite();
    }};
    return host;
}

const VlPluginHost& hostWithoutSuite() {
    static const VlPluginHost host{
        [](const char*, std::uint32_t) -> const void* { return nullptr; }};
    return host;
}

TEST(OptionIdGeneratorClient, answersMinusOneForANullHost) {
    OptionIdGeneratorClient client;
    EXPECT_EQ(client.setHost(nullptr), -1);
}

TEST(OptionIdGeneratorClient, answersMinusOneForAHostWithoutTheSuite) {
    OptionIdGeneratorClient client;
    EXPECT_EQ(client.setHost(&hostWithoutSuite()), -1);
    EXPECT_EQ(client.getSuite(), nullptr);
}

TEST(OptionIdGeneratorClient, fetchesTheSuiteFromItsHost) {
    OptionIdGeneratorClient client;
    EXPECT_EQ(client.setHost(&hostWithSuite()), 0);
    EXPECT_EQ(askedName, "OptionIdGeneratorHost");
    EXPECT_EQ(askedVersion, 1U);
    EXPECT_EQ(client.getSuite(), getOptionIdGeneratorHostSuite());
}

TEST(OptionIdGeneratorClient, asksANewHostThoughASuiteIsThere) {
    OptionIdGeneratorClient client;
    client.setSuite(getOptionIdGeneratorHostSuite());
    EXPECT_EQ(client.setHost(&hostWithoutSuite()), -1);
    EXPECT_EQ(client.getSuite(), getOptionIdGeneratorHostSuite());
    EXPECT_EQ(client.setHost(&hostWithSuite()), 0);
}

TEST(OptionIdGeneratorClient, takesTheGeneratorOfTheSuiteThatItUses) {
    static VlOptionIdGeneratorHostStruct another;
    static const OptionIdGeneratorHostSuite anothersSuite{
        []() -> VlOptionIdGeneratorHandle { return &another; },
        getOptionIdGeneratorHostSuite()->generateOptionIdByName,
        getOptionIdGeneratorHostSuite()->lookUpOptionId};
    OptionIdGeneratorClient client;
    client.setSuite(getOptionIdGeneratorHostSuite());
    const std::uint64_t optionId = client.generate("of the process");
    client.setSuite(&anothersSuite);
    EXPECT_STREQ(client.lookUp(optionId), "");
    client.setSuite(getOptionIdGeneratorHostSuite());
    EXPECT_STREQ(client.lookUp(optionId), "of the process");
}

TEST(OptionIdGeneratorClient, ignoresANullSuite) {
    OptionIdGeneratorClient client;
    client.setSuite(getOptionIdGeneratorHostSuite());
    client.setSuite(nullptr);
    EXPECT_EQ(client.getSuite(), getOptionIdGeneratorHostSuite());
}

TEST(OptionIdGeneratorClient, failsWithoutSuiteAndHost) {
    OptionIdGeneratorClient client;
    const auto fails =
        ThrowsMessage<std::runtime_error>("No option id generator suite has been set.");
    EXPECT_THAT([&] { static_cast<void>(client.generate("x")); }, fails);
    EXPECT_THAT([&] { static_cast<void>(client.lookUp(1)); }, fails);
}

TEST(OptionIdGeneratorClient, generatesAndLooksUpThroughTheSuite) {
    OptionIdGeneratorClient client;
    client.setSuite(getOptionIdGeneratorHostSuite());
    const std::uint64_t optionId = client.generate("client.name");
    EXPECT_EQ(optionId, VlOptionIdGeneratorHostStruct::instance().generate("client.name"));
    EXPECT_STREQ(client.lookUp(optionId), "client.name");
}

} // namespace
} // namespace ViewerAPI
