#include "vlproxyfactory.h"

#include "support/factorytest.h"

#include "VlLogging/LogSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// The base, with as little as makes a factory of it: whatever has a "mark" qualifies, and every
/// wish comes true.
class MarkFactory final : public VlProxyFactory {
public:
    MarkFactory() : VlProxyFactory("mark") {}

    bool hasRequiredAttributes(const GroupAttribute& attrs) const override {
        return attrs.borrowChildByName("mark").isValid();
    }
    void collectProducts(std::vector<FactoryProduct>& out) override {
        collectRemovals(out);
        dropRequestsIfDisabled();
        for (const LocationPath& path : toProduce) {
            out.push_back({kFactoryProductProduced, generatedPath(path),
                           GroupAttribute(*locations.find(path))});
        }
        toProduce.clear();
    }
    using VlProxyFactory::collectRemovals;
};

const GroupAttribute kMarked{{"mark", IntAttribute(1)}};

class VlProxyFactoryTest : public testing::Test {
protected:
    void know(const char* path) { factory.storeLocation(LocationPath(path), kMarked); }
    std::vector<std::string> collected() { return linesOf(collect(factory)); }

    MarkFactory factory;
};

// ---- Which locations qualify

struct Eligibility {
    const char* name;
    GroupAttribute attributes;
    bool isLeaf;
    bool isHidden;
    bool leavesOnly;
    bool skipGeometry;
    bool isEligible;
};

GroupAttribute markedWith(std::string_view name, const VlAttribute::Attribute& value) {
    return GroupBuilder().update(kMarked).set(name, value).build();
}

constexpr const char* kHide = "viewer.default.drawOptions.hide";

const Eligibility kEligibilities[] = {
    {"aLeafWithTheAttribute", kMarked, true, false, true, true, true},
    {"withoutTheAttribute", GroupAttribute::Empty(), true, false, true, true, false},
    {"withoutAnyAttributes", GroupAttribute(), true, false, true, true, false},
    {"hiddenByADrawOption", markedWith(kHide, IntAttribute(1)), true, false, true, true, false},
    {"anyNumberButZeroHides", markedWith(kHide, IntAttribute(-7)), true, false, true, true, false},
    {"zeroDoesNotHide", markedWith(kHide, IntAttribute(0)), true, false, true, true, true},
    {"aFloatDoesNotHide", markedWith(kHide, FloatAttribute(1.0F)), true, false, true, true, true},
    {"aTextDoesNotHide", markedWith(kHide, StringAttribute("1")), true, false, true, true, true},
    {"anEmptyListDoesNotHide", markedWith(kHide, IntAttribute(std::span<const std::int32_t>())),
     true, false, true, true, true},
    {"withChildrenShown", kMarked, false, false, true, true, false},
    {"withChildrenShownWhereThatDoesNotCount", kMarked, false, false, false, true, true},
    {"hiddenInTheView", kMarked, true, true, true, true, false},
    {"withPointsOfItsOwn", markedWith("geometry.point.P", FloatAttribute({1, 2, 3}, 3)), true,
     false, true, true, false},
    {"withPointsOfItsOwnWhereThatDoesNotCount",
     markedWith("geometry.point.P", FloatAttribute({1, 2, 3}, 3)), true, false, true, false, true},
    {"withGeometryButNoPoints", markedWith("geometry.poly.startIndex", IntAttribute(0)), true,
     false, true, true, true},
};

class VlProxyFactoryEligibility : public testing::TestWithParam<Eligibility> {};

TEST_P(VlProxyFactoryEligibility, isToldByTheChange) {
    const Eligibility& row = GetParam();
    MarkFactory factory;
    factory.leavesOnly = row.leavesOnly;
    factory.skipGeometry = row.skipGeometry;
    LocationChange change = leafChange("/root/a", row.attributes);
    change.leaf = row.isLeaf;
    change.hidden = row.isHidden;
    EXPECT_EQ(factory.isEligible(change), row.isEligible);
}

INSTANTIATE_TEST_SUITE_P(Rows, VlProxyFactoryEligibility, testing::ValuesIn(kEligibilities),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- What is known

TEST_F(VlProxyFactoryTest, startsEnabledForLeavesWithoutPoints) {
    EXPECT_TRUE(factory.isEnabled());
    EXPECT_TRUE(factory.leavesOnly);
    EXPECT_TRUE(factory.skipGeometry);
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyFactoryTest, keepsWhatItWasToldFirstOfALocation) {
    EXPECT_TRUE(factory.storeLocation(LocationPath("/root/a"), kMarked));
    EXPECT_FALSE(factory.storeLocation(LocationPath("/root/a"), {{"mark", IntAttribute(2)}}));
    factory.requestProduce(LocationPath("/root/a"));
    EXPECT_EQ(collect(factory).at(0).attrs, kMarked);
}

TEST_F(VlProxyFactoryTest, knowsWholePathsOnly) {
    know("/root/ab");
    EXPECT_TRUE(factory.hasLocation("/root/ab"));
    EXPECT_FALSE(factory.hasLocation("/root/a"));
    factory.forgetLocation("/root/a");
    EXPECT_TRUE(factory.hasLocation("/root/ab"));
    factory.forgetLocation("/root/ab");
    EXPECT_FALSE(factory.hasLocation("/root/ab"));
}

TEST_F(VlProxyFactoryTest, removesASubtreeAndPassesOverWhatOnlyBeginsAlike) {
    for (const char* path : {"/root/a", "/root/a/b", "/root/a/b/c", "/root/a.b", "/root/a-",
                             "/root/ab", "/root/b", "/root"}) {
        know(path);
    }
    factory.removeSubtree("/root/a");
    std::vector<std::string> left;
    for (const char* path : {"/root/a", "/root/a/b", "/root/a/b/c", "/root/a.b", "/root/a-",
                             "/root/ab", "/root/b", "/root"}) {
        if (factory.hasLocation(path)) {
            left.emplace_back(path);
        }
    }
    EXPECT_THAT(left, ElementsAre("/root/a.b", "/root/a-", "/root/ab", "/root/b", "/root"));
}

TEST_F(VlProxyFactoryTest, removesASubtreeWhoseTopIsNotKnown) {
    know("/root/a/b");
    factory.removeSubtree("/root/a");
    EXPECT_FALSE(factory.hasLocation("/root/a/b"));
    EXPECT_THAT(collected(), IsEmpty());
}

// ---- What is asked for

TEST_F(VlProxyFactoryTest, aRemovalIsAnEmptyGroupAtTheGeneratedLocation) {
    factory.requestRemove(LocationPath("/root/a"));
    EXPECT_THAT(collect(factory), ElementsAre(FactoryProduct{kFactoryProductRemoved, "/root/a/mark",
                                                             GroupAttribute::Empty()}));
}

TEST_F(VlProxyFactoryTest, listsEmptyThemselvesAtACollection) {
    know("/root/a");
    factory.requestProduce(LocationPath("/root/a"));
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/mark"));
    EXPECT_FALSE(factory.hasPendingWork());
    factory.requestRemove(LocationPath("/root/a"));
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark"));
    EXPECT_FALSE(factory.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyFactoryTest, aPathMayBeAskedForTwice) {
    know("/root/a");
    factory.requestProduce(LocationPath("/root/a"));
    factory.requestProduce(LocationPath("/root/a"));
    factory.requestRemove(LocationPath("/root/b"));
    factory.requestRemove(LocationPath("/root/b"));
    EXPECT_THAT(collected(), ElementsAre("removed /root/b/mark", "removed /root/b/mark",
                                         "produced /root/a/mark", "produced /root/a/mark"));
}

TEST_F(VlProxyFactoryTest, clearForgetsLocationsAndLeavesRequests) {
    know("/root/a");
    factory.requestRemove(LocationPath("/root/a"));
    factory.clear();
    EXPECT_FALSE(factory.hasLocation("/root/a"));
    EXPECT_TRUE(factory.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark"));
}

TEST_F(VlProxyFactoryTest, theHooksThatKindsMayFillDoNothing) {
    know("/root/a");
    factory.setOwner(nullptr);
    factory.initialise();
    factory.setAttributeName("other");
    factory.setSystemArgs(kMarked);
    EXPECT_TRUE(factory.hasLocation("/root/a"));
    EXPECT_FALSE(factory.hasPendingWork());
}

// ---- On and off

TEST_F(VlProxyFactoryTest, disablingRemovesEverythingAtTheNextCollectionThoughDisabledThen) {
    know("/root/b");
    know("/root/a");
    factory.setEnabled(false);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark", "removed /root/b/mark"));
}

TEST_F(VlProxyFactoryTest, enablingAsksForWhatQualifiesAtThatMoment) {
    know("/root/a");
    know("/root/b");
    factory.setEnabled(false);
    collected();
    factory.forgetLocation("/root/a");
    know("/root/c");
    factory.setEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("produced /root/b/mark", "produced /root/c/mark"));
}

TEST_F(VlProxyFactoryTest, enablingTwiceDoesNothing) {
    know("/root/a");
    factory.setEnabled(true);
    EXPECT_FALSE(factory.hasPendingWork());
    factory.setEnabled(false);
    collected();
    factory.setEnabled(false);
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlProxyFactoryTest, aLocationThatBecameKnownWhileDisabledGetsARemovalOfWhatNeverWas) {
    factory.setEnabled(false);
    know("/root/a");
    factory.setEnabled(true);
    factory.setEnabled(false);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark"));
}

TEST_F(VlProxyFactoryTest, onAndOffWithoutACollectionBetweenProducesNothing) {
    factory.setEnabled(false);
    know("/root/a");
    factory.setEnabled(true);
    factory.setEnabled(false);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark"));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyFactoryTest, offAndOnWithoutACollectionBetweenProducesAfterTheRemoval) {
    know("/root/a");
    factory.setEnabled(false);
    factory.setEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/mark", "produced /root/a/mark"));
}

// ---- The debug log

class VlProxyFactoryLog : public testing::Test {
protected:
    VlProxyFactoryLog() : levelBefore(getLogLevel()) {
        setLogSink([this](const LogRecord& record) { records.push_back(record); });
    }
    ~VlProxyFactoryLog() override {
        setLogSink({});
        setLogLevel(levelBefore);
    }

    const LogLevel levelBefore;
    std::vector<LogRecord> records;
    const std::vector<FactoryProduct> products{
        {kFactoryProductProduced, "/root/a/mark", kMarked},
        {kFactoryProductRemoved, "/root/b/mark", GroupAttribute::Empty()},
        {kFactoryProductProduced, "/root/c/mark", kMarked}};
};

TEST_F(VlProxyFactoryLog, tellsOfProductsFromTheGivenOneOn) {
    setLogLevel(LogLevel::Debug);
    VlProxyFactory::logProducts(products, 1);
    const auto record = [](const std::string& text) {
        return LogRecord{LogLevel::Debug, "ViewerAPI.VlProxyFactory", text,
                         "viewer_api/src/vlproxyfactory", 103};
    };
    EXPECT_THAT(records, ElementsAre(record(" Removed: /root/b/mark: " +
                                            GroupAttribute::Empty().getHash().str()),
                                     record("Produced: /root/c/mark: " + kMarked.getHash().str())));
}

TEST_F(VlProxyFactoryLog, isSilentAboveTheDebugLevel) {
    setLogLevel(LogLevel::Info);
    VlProxyFactory::logProducts(products, 0);
    EXPECT_THAT(records, IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
