#include "proxyjob.h"

#include "support/attributetext.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace ViewerAPI::test {
namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

GroupAttribute systemAt(float time) {
    return GroupBuilder().set("timeSlice.currentTime", FloatAttribute(time)).build();
}

/// A proxy group of a file, with one more child each.
GroupAttribute proxy(std::initializer_list<std::pair<const char*, VlAttribute::Attribute>> more) {
    GroupBuilder builder;
    builder.set("viewer", StringAttribute("a.obj"));
    for (const auto& [name, value] : more) {
        builder.set(name, value);
    }
    return builder.build();
}

float timeOf(const ProxyJob& job) {
    return FloatAttribute(job.systemArgs.getChildByName("timeSlice.currentTime")).getValue(-99.0F);
}

// ---- The time

struct TimeRow {
    const char* name;
    GroupAttribute proxyAttrs;
    std::optional<float> current;
    float time;
};

const FloatAttribute kFive(5.0F);
const FloatAttribute kTen(10.0F);
const FloatAttribute kTwenty(20.0F);

const TimeRow kTimes[] = {
    {"theApplications", proxy({}), 7.0F, 7.0F},
    {"oneWithoutAny", proxy({}), std::nullopt, 1.0F},
    {"oneWhereStatic", proxy({{"static", IntAttribute(1)}}), 7.0F, 1.0F},
    {"staticBeforeTheCurrentFrame", proxy({{"static", IntAttribute(1)}, {"currentFrame", kFive}}),
     7.0F, 1.0F},
    {"onlyOneIsStatic", proxy({{"static", IntAttribute(2)}}), 7.0F, 7.0F},
    {"zeroIsNotStatic", proxy({{"static", IntAttribute(0)}}), 7.0F, 7.0F},
    {"aFloatIsNotStatic", proxy({{"static", FloatAttribute(1.0F)}}), 7.0F, 7.0F},
    {"theCurrentFrame", proxy({{"currentFrame", kFive}}), 7.0F, 5.0F},
    {"theCurrentFrameHeedsNoLimit", proxy({{"currentFrame", kFive}, {"firstFrame", kTen}}), 7.0F,
     5.0F},
    {"aCurrentFrameOfDoublesIsNone", proxy({{"currentFrame", DoubleAttribute(5.0)}}), 7.0F, 7.0F},
    {"notBeforeTheFirstFrame", proxy({{"firstFrame", kTen}}), 7.0F, 10.0F},
    {"atTheFirstFrame", proxy({{"firstFrame", kTen}}), 10.0F, 10.0F},
    {"afterTheFirstFrame", proxy({{"firstFrame", kTen}}), 11.0F, 11.0F},
    {"notAfterTheLastFrame", proxy({{"firstFrame", kTen}, {"lastFrame", kTwenty}}), 25.0F, 20.0F},
    {"betweenTheLimits", proxy({{"firstFrame", kTen}, {"lastFrame", kTwenty}}), 15.0F, 15.0F},
    {"theLastFrameWinsOverTheFirst", proxy({{"firstFrame", kTwenty}, {"lastFrame", kTen}}), 15.0F,
     10.0F},
    {"aLimitOfIntegersIsNone", proxy({{"lastFrame", IntAttribute(3)}}), 7.0F, 7.0F},
    {"limitsHoldForTheTimeOfNoArgs", proxy({{"firstFrame", kTen}}), std::nullopt, 10.0F},
};

class ProxyJobTime : public testing::TestWithParam<TimeRow> {};

TEST_P(ProxyJobTime, isChosenByTheProxyGroup) {
    const TimeRow& row = GetParam();
    const GroupAttribute system = row.current ? systemAt(*row.current) : GroupAttribute();
    EXPECT_EQ(timeOf(makeProxyJob(row.proxyAttrs, system)), row.time);
}

INSTANTIATE_TEST_SUITE_P(Rows, ProxyJobTime, testing::ValuesIn(kTimes),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- The job

TEST(ProxyJob, keepsTheProxyGroupAndTheOtherSystemArgs) {
    const GroupAttribute proxyAttrs = proxy({{"static", IntAttribute(1)}});
    const GroupAttribute system = GroupBuilder()
                                      .set("variables.shot", StringAttribute("s1"))
                                      .set("timeSlice.numSamples", IntAttribute(3))
                                      .set("timeSlice.currentTime", FloatAttribute(4.0F))
                                      .build();
    const ProxyJob job = makeProxyJob(proxyAttrs, system);
    EXPECT_EQ(job.proxyAttrs, proxyAttrs);
    EXPECT_EQ(textOf(job.systemArgs),
              "{variables={shot=\"s1\"} timeSlice={numSamples=3 currentTime=1}}");
}

// ---- The key

struct KeyRow {
    const char* name;
    GroupAttribute firstProxy;
    float firstTime;
    GroupAttribute secondProxy;
    float secondTime;
    bool isSame;
};

const GroupAttribute kLimited = proxy({{"firstFrame", kTen}, {"lastFrame", kTwenty}});

const KeyRow kKeys[] = {
    {"equalProxiesAtEqualTimes", proxy({}), 7, proxy({}), 7, true},
    {"equalProxiesAtOtherTimes", proxy({}), 7, proxy({}), 8, false},
    {"aStaticProxyAtAnyTime", proxy({{"static", IntAttribute(1)}}), 7,
     proxy({{"static", IntAttribute(1)}}), 8, true},
    {"beyondTheLastFrame", kLimited, 25, kLimited, 20, true},
    {"farBeyondTheLastFrame", kLimited, 25, kLimited, 30, true},
    {"otherLimitsWithTheSameTime", kLimited, 15, proxy({{"firstFrame", kFive}}), 15, true},
    {"aCurrentFrameThatIsTheTime", proxy({{"currentFrame", kTen}}), 3, proxy({}), 10, true},
    {"anotherFile", proxy({}), 7, proxy({{"viewer", StringAttribute("b.obj")}}), 7, false},
    {"anotherChild", proxy({}), 7, proxy({{"other", IntAttribute(1)}}), 7, false},
};

class ProxyJobKey : public testing::TestWithParam<KeyRow> {};

TEST_P(ProxyJobKey, tellsWhatIsLoadedAtWhichTime) {
    const KeyRow& row = GetParam();
    const ProxyJob first = makeProxyJob(row.firstProxy, systemAt(row.firstTime));
    const ProxyJob second = makeProxyJob(row.secondProxy, systemAt(row.secondTime));
    EXPECT_EQ(first.key == second.key, row.isSame);
}

INSTANTIATE_TEST_SUITE_P(Rows, ProxyJobKey, testing::ValuesIn(kKeys),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ProxyJob, otherSystemArgsMakeAnotherKey) {
    const GroupAttribute system =
        GroupBuilder().update(systemAt(7)).set("variables.shot", StringAttribute("s1")).build();
    EXPECT_NE(makeProxyJob(proxy({}), systemAt(7)).key, makeProxyJob(proxy({}), system).key);
}

TEST(ProxyJob, theKeyIsTheFirstHalfOfTheHashOfWhatIsLoadedAndTheArgs) {
    const ProxyJob job = makeProxyJob(proxy({{"lastFrame", kTen}}), systemAt(7));
    const GroupAttribute identity =
        GroupBuilder().set("p", proxy({}), false).set("s", job.systemArgs, false).build();
    EXPECT_EQ(job.key, identity.getHash().first);
}

} // namespace
} // namespace ViewerAPI::test
