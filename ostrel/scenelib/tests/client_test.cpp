#include "VlScenelib/Client.h"

#include "allocationcounter.h"

#include <gmock/gmock.h>

#include <deque>
#include <string>
#include <vector>

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::Client;
using VlScenelib::LocationEvent;

/// What the table below answers from: one client's queue, and what was asked of it.
struct Queue {
    std::deque<std::string> waiting;
    std::deque<std::string> arrivingDuringDrain;
    std::vector<std::uint32_t> capacities;
    std::vector<int> continuations;
    std::vector<std::string> handedOut;
    StringAttribute children{"child"};
    std::size_t ready = 0;
    int released = 0;
};

Queue* queueOf(ScenelibClientHandle client) {
    return reinterpret_cast<Queue*>(client);
}

std::uint32_t fetch(ScenelibClientHandle client, ScenelibLocationRecord* records,
                    std::uint32_t capacity, int isContinuation, std::size_t* left) {
    Queue& queue = *queueOf(client);
    queue.capacities.push_back(capacity);
    queue.continuations.push_back(isContinuation);
    if (isContinuation == 0) {
        queue.ready = queue.waiting.size();
    }
    queue.handedOut.clear();
    while (queue.handedOut.size() < capacity && queue.ready > 0) {
        queue.handedOut.push_back(queue.waiting.front());
        queue.waiting.pop_front();
        --queue.ready;
    }
    *left = queue.ready;
    queue.waiting.insert(queue.waiting.end(), queue.arrivingDuringDrain.begin(),
                         queue.arrivingDuringDrain.end());
    queue.arrivingDuringDrain.clear();
    for (std::size_t i = 0; i < queue.handedOut.size(); ++i) {
        records[i] = {queue.handedOut[i].data(), queue.handedOut[i].size(),
                      GroupAttribute::Empty().detach(), StringAttribute(queue.children).detach(),
                      1};
    }
    return static_cast<std::uint32_t>(queue.handedOut.size());
}

ScenelibRuntimeSuite makeSuite() {
    ScenelibRuntimeSuite suite{};
    suite.releaseClient = [](ScenelibClientHandle client) { ++queueOf(client)->released; };
    suite.getLocationEvents = fetch;
    return suite;
}

class ClientEvents : public testing::Test {
protected:
    ClientEvents() : client(reinterpret_cast<ScenelibClientHandle>(&queue), &suite) {}

    void fill(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            queue.waiting.push_back("/root/" + std::to_string(i));
        }
    }

    ScenelibRuntimeSuite suite = makeSuite();
    Queue queue;
    Client client;
    std::vector<LocationEvent> events;
};

TEST_F(ClientEvents, replacesTheVectorAlsoWhenNothingIsReady) {
    events.emplace_back("/root/old", VlScenelib::LocationData());
    client.getLocationEvents(events, -1);
    EXPECT_TRUE(events.empty());
}

class ClientNoLimit : public ClientEvents, public testing::WithParamInterface<int> {};

TEST_P(ClientNoLimit, fetchesAllInOrder) {
    fill(1000);
    client.getLocationEvents(events, GetParam());
    ASSERT_EQ(events.size(), 1000U);
    for (std::size_t i = 0; i < events.size(); ++i) {
        ASSERT_EQ(events[i].getLocationPath(), "/root/" + std::to_string(i));
        ASSERT_TRUE(events[i].getLocationData().doesLocationExist());
    }
    EXPECT_EQ(events[0].getLocationData().getPotentialChildren().getValue(), "child");
}

INSTANTIATE_TEST_SUITE_P(MinusOneAndZero, ClientNoLimit, testing::Values(-1, 0));

TEST_F(ClientEvents, limitIsExact) {
    fill(1000);
    client.getLocationEvents(events, 300);
    EXPECT_EQ(events.size(), 300U);
    EXPECT_EQ(queue.waiting.size(), 700U);
    client.getLocationEvents(events, 1);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].getLocationPath(), "/root/300");
}

TEST_F(ClientEvents, whatArrivesDuringADrainWaitsForTheNext) {
    fill(300);
    queue.arrivingDuringDrain.push_back("/root/new");
    client.getLocationEvents(events, -1);
    EXPECT_EQ(events.size(), 300U);
    EXPECT_THAT(queue.continuations, testing::ElementsAre(0, 1));
    client.getLocationEvents(events, -1);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].getLocationPath(), "/root/new");
}

TEST_F(ClientEvents, referencesAreTakenOver) {
    fill(1);
    client.getLocationEvents(events, -1);
    const VlAttributeStruct* handle =
        events[0].getLocationData().getPotentialChildren().getHandle();
    EXPECT_EQ(handle->refCount.load(), 2U); // the queue's and the event's
}

TEST(Client, releasesItsHandleOnce) {
    const ScenelibRuntimeSuite suite = makeSuite();
    Queue queue;
    { const Client client(reinterpret_cast<ScenelibClientHandle>(&queue), &suite); }
    EXPECT_EQ(queue.released, 1);
}

TEST_F(ClientEvents, pathsAndEventsOfManyTakeAFewAllocations) {
    fill(1000);
    queue.handedOut.reserve(1000);
    const int before = allocationCount();
    client.getLocationEvents(events, -1);
    EXPECT_LT(allocationCount() - before, 50);
    EXPECT_EQ(events.capacity(), 1000U);
}

TEST_F(ClientEvents, anEventOutlivesThoseThatItCameWith) {
    fill(300);
    client.getLocationEvents(events, -1);
    const LocationEvent kept = events[280];
    events.clear();
    EXPECT_EQ(kept.getLocationPath(), "/root/280");
}

TEST(LocationData, defaultDoesNotExist) {
    const VlScenelib::LocationData data;
    EXPECT_FALSE(data.doesLocationExist());
    EXPECT_FALSE(data.getAttrs().isValid());
    EXPECT_EQ(data.getPotentialChildren().getNumberOfValues(), 0);
}

} // namespace
