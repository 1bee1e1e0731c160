#include "VlAttribute/VlAttribute.h"
#include "nametable.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace VlAttribute;

constexpr int kThreads = 8;

/// Runs `work(thread)` on several threads that start at the same moment.
template <typename Work>
void runTogether(Work work) {
    std::atomic<int> ready = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            ++ready;
            while (ready < kThreads) {
                std::this_thread::yield();
            }
            work(thread);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

GroupAttribute makeScene(int seed) {
    GroupBuilder builder;
    for (int i = 0; i < 30; ++i) {
        builder.set("a" + std::to_string(i) + ".b.c", IntAttribute(seed + i));
        builder.set("s" + std::to_string(i), StringAttribute("text"));
    }
    return builder.build();
}

TEST(Attribute, hashesAndComparesOnManyThreadsAtOnce) {
    for (int round = 0; round < 50; ++round) {
        const GroupAttribute group = makeScene(round);
        const GroupAttribute equal = makeScene(round);
        const Hash expected = makeScene(round).getHash();
        std::atomic<int> failures = 0;
        runTogether([&](int thread) {
            if (thread % 2 == 0 && !(group == equal)) {
                ++failures;
            }
            if (group.getHash() != expected ||
                group.getChildByName("a3").getHash() != equal.getChildByName("a3").getHash()) {
                ++failures;
            }
        });
        EXPECT_EQ(failures, 0) << "round " << round;
    }
}

TEST(Attribute, countsReferencesFromManyThreads) {
    Attribute shared = makeScene(1);
    VlAttributeStruct* handle = shared.getHandle();
    runTogether([&](int) {
        std::vector<Attribute> copies;
        for (int i = 0; i < 2000; ++i) {
            copies.push_back(shared);
            copies.push_back(GroupAttribute(shared).getChildByIndex(i % 60));
            if (copies.size() > 50) {
                copies.clear();
            }
        }
    });
    EXPECT_EQ(handle->refCount, 1U);
}

TEST(Attribute, diesOnWhicheverThreadDropsItLast) {
    for (int round = 0; round < 200; ++round) {
        const GroupAttribute parent = makeScene(round);
        std::vector<Attribute> perThread(kThreads, GroupAttribute{{"child", parent}});
        runTogether([&](int thread) { perThread[static_cast<std::size_t>(thread)] = {}; });
        EXPECT_EQ(parent.getHandle()->refCount, 1U);
    }
}

TEST(NameTable, givesOneObjectForANameOnEveryThread) {
    constexpr std::size_t kNames = 5000;
    std::vector<std::vector<const InternedName*>> found(kThreads);
    runTogether([&](int thread) {
        for (std::size_t i = 0; i < kNames; ++i) {
            found[static_cast<std::size_t>(thread)].push_back(
                internName("thread test " + std::to_string(i)));
        }
    });
    for (std::size_t i = 0; i < kNames; ++i) {
        EXPECT_EQ(found[0][i]->text(), "thread test " + std::to_string(i));
        for (int thread = 1; thread < kThreads; ++thread) {
            ASSERT_EQ(found[static_cast<std::size_t>(thread)][i], found[0][i]);
        }
    }
}

} // namespace
