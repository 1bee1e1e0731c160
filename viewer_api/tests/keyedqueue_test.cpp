#include "keyedqueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ProxyJob jobOf(std::uint64_t key) {
    ProxyJob job;
    job.key = key;
    return job;
}

std::vector<std::string> textsOf(const auto& paths) {
    std::vector<std::string> texts;
    for (const LocationPath& path : paths) {
        texts.push_back(path.str());
    }
    return texts;
}

class KeyedQueueTest : public testing::Test {
protected:
    void push(const char* location, std::uint64_t key) {
        queue.push(LocationPath(location), jobOf(key));
    }
    std::vector<std::string> order() { return textsOf(queue.locations()); }
    std::vector<std::string> waitingFor(std::uint64_t key) {
        return textsOf(queue.locationsForJob(key));
    }

    KeyedQueue queue;
};

TEST_F(KeyedQueueTest, givesBackInOrderOfWaiting) {
    push("/b", 1);
    push("/a", 2);
    push("/c", 1);
    EXPECT_EQ(queue.size(), 3U);
    const auto [location, job] = queue.pop();
    EXPECT_EQ(location, "/b");
    EXPECT_EQ(job.key, 1U);
    EXPECT_THAT(order(), ElementsAre("/a", "/c"));
    EXPECT_FALSE(queue.contains("/b"));
    EXPECT_TRUE(queue.contains("/a"));
}

TEST_F(KeyedQueueTest, anEqualJobKeepsTheStoredOne) {
    ProxyJob first = jobOf(1);
    first.proxyAttrs = VlAttribute::GroupAttribute::Empty();
    queue.push(LocationPath("/a"), first);
    push("/a", 1);
    EXPECT_TRUE(queue.pop().second.proxyAttrs.isValid());
}

TEST_F(KeyedQueueTest, tellsWhichLocationsWaitAtOrBelowOne) {
    for (const char* location : {"/a/c", "/ab", "/a", "/b", "/a/b", "/a.b"}) {
        push(location, 1);
    }
    EXPECT_THAT(textsOf(queue.locationsAtOrBelow("/a")), ElementsAre("/a", "/a/b", "/a/c"));
}

TEST_F(KeyedQueueTest, clearLeavesNothing) {
    push("/a", 1);
    queue.clear();
    EXPECT_EQ(queue.size(), 0U);
    EXPECT_THAT(order(), IsEmpty());
    EXPECT_THAT(waitingFor(1), IsEmpty());
    EXPECT_FALSE(queue.contains("/a"));
}

TEST_F(KeyedQueueTest, thePopOfAnEmptyQueueThrowsItsText) {
    const char* text = nullptr;
    try {
        static_cast<void>(queue.pop());
    } catch (const char* thrown) {
        text = thrown;
    }
    EXPECT_STREQ(text, "KeyedQueue Error: Popping from empty queue");
}

// ---- Who waits in which place, and for which job

using Step = std::function<void(KeyedQueue&)>;

Step push(const char* location, std::uint64_t key) {
    return [=](KeyedQueue& queue) { queue.push(LocationPath(location), jobOf(key)); };
}
Step remove(const char* location) {
    return [=](KeyedQueue& queue) { queue.remove(location); };
}
Step pop() {
    return [](KeyedQueue& queue) { static_cast<void>(queue.pop()); };
}

using Texts = std::vector<std::string>;

struct QueueRow {
    const char* name;
    std::vector<Step> steps;
    Texts order;
    Texts waitingForJob1;
    Texts waitingForJob2;
};

class KeyedQueueSteps : public testing::TestWithParam<QueueRow> {};

TEST_P(KeyedQueueSteps, leaveTheseWaiting) {
    KeyedQueue queue;
    for (const Step& step : GetParam().steps) {
        step(queue);
    }
    EXPECT_EQ(textsOf(queue.locations()), GetParam().order);
    EXPECT_EQ(queue.size(), GetParam().order.size());
    EXPECT_EQ(textsOf(queue.locationsForJob(1)), GetParam().waitingForJob1);
    EXPECT_EQ(textsOf(queue.locationsForJob(2)), GetParam().waitingForJob2);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, KeyedQueueSteps,
    testing::Values(
        QueueRow{"nothingYet", {}, {}, {}, {}},
        QueueRow{"anEqualJobTwiceLeavesOneEntryAtItsFirstPlace",
                 {push("/a", 1), push("/b", 1), push("/a", 1)},
                 {"/a", "/b"},
                 {"/a", "/b"},
                 {}},
        QueueRow{"aNewJobSendsALocationToTheBack",
                 {push("/a", 1), push("/b", 1), push("/a", 2)},
                 {"/b", "/a"},
                 {"/b"},
                 {"/a"}},
        QueueRow{"thoseWhoWaitForAJobStandInTheOrderOfTheirPaths",
                 {push("/b", 1), push("/a", 1), push("/c", 2)},
                 {"/b", "/a", "/c"},
                 {"/a", "/b"},
                 {"/c"}},
        QueueRow{"aPopOfOneOfTwoWithTheSameJobLeavesTheOther",
                 {push("/b", 1), push("/a", 1), pop()},
                 {"/a"},
                 {"/a"},
                 {}},
        QueueRow{"aRemovalFromTheMiddle",
                 {push("/a", 1), push("/b", 2), push("/c", 1), remove("/b")},
                 {"/a", "/c"},
                 {"/a", "/c"},
                 {}},
        QueueRow{"aJobThatNobodyWaitsForAnyLonger", {push("/a", 1), remove("/a")}, {}, {}, {}},
        QueueRow{"theNextPushFillsAJobThatNobodyWaitedFor",
                 {push("/a", 1), remove("/a"), push("/b", 1)},
                 {"/b"},
                 {"/b"},
                 {}}),
    [](const auto& row) { return std::string(row.param.name); });

/// Compares with a list of pairs that is searched from end to end.
TEST_F(KeyedQueueTest, equalsAPlainListOverRandomSequences) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&random](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    std::vector<std::pair<std::string, std::uint64_t>> plain;
    const auto find = [&plain](const std::string& location) {
        return std::find_if(plain.begin(), plain.end(),
                            [&](const auto& entry) { return entry.first == location; });
    };
    for (int step = 0; step < 20000; ++step) {
        const std::string location = "/" + std::to_string(upTo(12));
        const auto key = static_cast<std::uint64_t>(upTo(5));
        const auto found = find(location);
        switch (upTo(10)) {
        case 0:
            if (!plain.empty()) {
                const auto [popped, job] = queue.pop();
                ASSERT_EQ(popped.str(), plain.front().first) << "step " << step;
                ASSERT_EQ(job.key, plain.front().second) << "step " << step;
                plain.erase(plain.begin());
            }
            break;
        case 1:
        case 2:
        case 3:
            if (found != plain.end()) {
                queue.remove(location);
                plain.erase(found);
            }
            break;
        case 4:
            if (upTo(300) == 0) {
                queue.clear();
                plain.clear();
            }
            break;
        default:
            queue.push(LocationPath(location), jobOf(key));
            if (found != plain.end() && found->second == key) {
                break;
            }
            if (found != plain.end()) {
                plain.erase(found);
            }
            plain.emplace_back(location, key);
            break;
        }
        std::vector<std::string> expected;
        for (const auto& entry : plain) {
            expected.push_back(entry.first);
        }
        ASSERT_EQ(order(), expected) << "step " << step;
        ASSERT_EQ(queue.size(), plain.size()) << "step " << step;
        for (std::uint64_t each = 0; each < 5; ++each) {
            std::vector<std::string> waiting;
            for (const auto& entry : plain) {
                if (entry.second == each) {
                    waiting.push_back(entry.first);
                }
            }
            std::sort(waiting.begin(), waiting.end());
            ASSERT_EQ(waitingFor(each), waiting) << "step " << step << ", key " << each;
        }
        ASSERT_EQ(queue.contains(location), find(location) != plain.end()) << "step " << step;
    }
}

} // namespace
} // namespace ViewerAPI::test
