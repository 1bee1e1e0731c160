// Proxies over the real engine while the frame is scrubbed: what is cooked, how much of it at once,
// and what the viewer does meanwhile.

#include "proxycooks.h"
#include "viewersession.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gmock/gmock.h>

namespace ViewerAPI::test {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::Pair;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr int kLocations = 2000;
constexpr int kFrames = 48;
constexpr int kMostCooks = 1024;

std::string pathOf(int location) {
    return "/root/p" + std::to_string(location);
}

/// Many locations with proxies, of which several are the same.
class ProxyScrubbing : public testing::Test {
protected:
    /// Nothing ends while a cook is held.
    void TearDown() override { cooks.release(); }

    void view(int distinctProxies) {
        distinct = distinctProxies;
        Transaction transaction;
        scene = transaction.createOp("Scene.Literal", sceneOf(0));
        transaction.commit();
        session.delegate->setViewOp(scene);
        session.open("/root");
        setFrame(1);
    }

    /// The attribute `edit` of "/root" is that.
    [[nodiscard]] GroupAttribute sceneOf(int edit) const {
        GroupBuilder children;
        for (int i = 0; i < kLocations; ++i) {
            const GroupAttribute load{
                {"opType", StringAttribute("Test.Proxy")},
                {"opArgs", GroupAttribute{{"what", IntAttribute(i % distinct)}}}};
            children.set("p" + std::to_string(i) + ".a.proxies.viewer.load", load);
        }
        return GroupBuilder()
            .set("staticScene.a.edit", IntAttribute(edit))
            .set("staticScene.c", children.build())
            .build();
    }

    void setFrame(int frame) {
        session.delegate->setSystemArgs(
            GroupBuilder()
                .set("timeSlice.currentTime", FloatAttribute(static_cast<float>(frame)))
                .build());
    }

    /// Every location has its own proxy, of that frame, and all of it.
    void expectFrame(int frame) {
        for (int i = 0; i < kLocations; ++i) {
            const auto* const root = session.known.find(pathOf(i) + "/__VlOst_proxy");
            ASSERT_TRUE(root) << i;
            ASSERT_EQ(IntAttribute(root->attributes.getChildByName("what")).getValue(),
                      i % distinct);
            ASSERT_EQ(FloatAttribute(root->attributes.getChildByName("frame")).getValue(), frame)
                << i;
            ASSERT_TRUE(session.known.find(pathOf(i) + "/__VlOst_proxy/part")) << i;
        }
    }

    int distinct = 1;
    int scene = 0;
    ProxyCooks cooks;
    ProxyClients clients;
    ViewerSession session;
};

TEST_F(ProxyScrubbing, cooksEachJobOnceAndNothingAtAFrameThatWasSeen) {
    constexpr int kDistinct = 200;
    view(kDistinct);
    for (int frame = 1; frame <= kFrames; ++frame) {
        setFrame(frame);
        session.settle();
        expectFrame(frame);
        const auto cooked = cooks.take();
        ASSERT_EQ(cooked.size(), kDistinct) << frame;
        ASSERT_THAT(cooked, Each(Pair(Pair(testing::_, frame), 1)));
    }
    EXPECT_EQ(clients.made, kDistinct * kFrames);
    for (int frame = kFrames - 1; frame >= 1; --frame) {
        setFrame(frame);
        session.pump();
        expectFrame(frame);
    }
    for (int frame = 2; frame <= kFrames; ++frame) {
        setFrame(frame);
        session.pump();
        expectFrame(frame);
    }
    EXPECT_THAT(cooks.take(), IsEmpty());
    EXPECT_EQ(clients.made, kDistinct * kFrames);
    EXPECT_EQ(clients.mostAlive, kDistinct);
    EXPECT_EQ(clients.alive, 0);
}

TEST_F(ProxyScrubbing, showsTheLastFrameWhenNobodyWaitsForThoseOnTheWay) {
    view(200);
    session.settle();
    for (int round = 0; round < 3; ++round) {
        for (int frame = 1; frame <= kFrames; ++frame) {
            setFrame(frame);
            session.pump();
        }
        for (int frame = kFrames - 1; frame > 10 * (round + 1); --frame) {
            setFrame(frame);
            session.pump();
        }
        session.settle();
        expectFrame(10 * (round + 1) + 1);
    }
    EXPECT_LE(clients.mostAlive, kMostCooks);
    EXPECT_EQ(clients.alive, 0);
}

TEST_F(ProxyScrubbing, keepsNoMoreThan1024CooksInFlight) {
    view(kLocations);
    session.settle();
    cooks.take();
    cooks.hold();
    setFrame(2);
    session.pump();
    EXPECT_EQ(clients.alive, kMostCooks);
    // The next frame takes the place of the one that cooks.
    setFrame(3);
    session.pump();
    EXPECT_EQ(clients.alive, kMostCooks);
    cooks.release();
    session.settle();
    expectFrame(3);
    EXPECT_EQ(clients.mostAlive, kMostCooks);
    int ofLastFrame = 0;
    for (const auto& [job, count] : cooks.take()) {
        EXPECT_EQ(count, 1) << job.first << " at " << job.second;
        ofLastFrame += job.second == 3 ? 1 : 0;
    }
    EXPECT_EQ(ofLastFrame, kLocations);
}

TEST_F(ProxyScrubbing, theViewerPumpsOnWhileProxiesCook) {
    view(200);
    session.settle();
    cooks.hold();
    setFrame(2);
    session.pump();
    // What the scene tells arrives, and the proxies of the frame before stand meanwhile.
    for (int edit = 1; edit <= 3; ++edit) {
        Transaction transaction;
        transaction.setOpArgs(scene, "Scene.Literal", sceneOf(edit));
        transaction.commit();
        ASSERT_TRUE(VlScenelibEngine::ApplicationGraph::waitUntilIdle(std::chrono::minutes(1)));
        session.pump();
        const auto* const root = session.known.find("/root");
        EXPECT_EQ(IntAttribute(root->attributes.getChildByName("edit")).getValue(), edit);
        expectFrame(1);
    }
    EXPECT_EQ(clients.alive, 200);
    EXPECT_TRUE(session.delegate->isProcessing());
    // Back at the frame that was seen nothing is left to wait for, though the cooks are held.
    setFrame(1);
    session.pump();
    expectFrame(1);
    EXPECT_EQ(clients.alive, 0);
    EXPECT_FALSE(session.delegate->isProcessing());
}

} // namespace
} // namespace ViewerAPI::test
