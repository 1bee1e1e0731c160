#include "hostobject.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace ViewerAPI {
namespace {

using Names = std::vector<std::string>;

class NamedObject : public HostObject {
public:
    NamedObject(std::string name, Names& ended, HostObject* holder = nullptr)
        : HostObject(holder), name_(std::move(name)), ended_(ended) {}
    ~NamedObject() override {
        endLife();
        ended_.push_back(name_);
    }

private:
    std::string name_;
    Names& ended_;
};

TEST(HostObject, isDeletedAtOnceWhenNotBeingCalled) {
    Names ended;
    auto* object = new NamedObject("a", ended);
    NamedObject other("other", ended);
    HostCall call(other);
    HostObject::retire(object);
    EXPECT_EQ(ended, Names{"a"});
}

TEST(HostObject, removedDuringItsOwnCallIsDeletedWhenTheOutermostCallReturns) {
    Names ended;
    NamedObject outer("outer", ended);
    auto* object = new NamedObject("a", ended);
    {
        HostCall outermost(outer);
        {
            HostCall call(*object);
            HostObject::retire(object);
            EXPECT_EQ(ended, Names{});
        }
        EXPECT_EQ(ended, Names{}) << "the outermost call is still on the stack";
    }
    EXPECT_EQ(ended, Names{"a"});
}

TEST(HostObject, callOfWhatItHoldsCountsAsItsOwn) {
    Names ended;
    auto* viewport = new NamedObject("viewport", ended);
    NamedObject layer("layer", ended, viewport);
    {
        HostCall call(layer);
        EXPECT_TRUE(viewport->isInCall());
        HostObject::retire(viewport);
        EXPECT_EQ(ended, Names{});
    }
    EXPECT_EQ(ended, Names{"viewport"});
}

TEST(HostObject, holderWaitsForWhatItHolds) {
    Names ended;
    NamedObject outer("outer", ended);
    auto* viewport = new NamedObject("viewport", ended);
    auto* layer = new NamedObject("layer", ended, viewport);
    {
        HostCall outermost(outer);
        {
            HostCall call(*layer);
            HostObject::retire(viewport);
            HostObject::retire(layer);
        }
    }
    EXPECT_EQ(ended, (Names{"layer", "viewport"}));
}

TEST(HostObject, holderOfAWaitingObjectWaitsToo) {
    Names ended;
    NamedObject outer("outer", ended);
    auto* viewport = new NamedObject("viewport", ended);
    auto* layer = new NamedObject("layer", ended, viewport);
    {
        HostCall outermost(outer);
        {
            HostCall call(*layer);
            HostObject::retire(layer);
        }
        // Not in a call any more, but the layer still points at it.
        EXPECT_FALSE(viewport->isInCall());
        HostObject::retire(viewport);
        EXPECT_EQ(ended, Names{});
    }
    EXPECT_EQ(ended, (Names{"layer", "viewport"}));
}

TEST(HostObject, retiredTwiceIsDeletedOnce) {
    Names ended;
    auto* object = new NamedObject("a", ended);
    {
        HostCall call(*object);
        HostObject::retire(object);
        HostObject::retire(object);
    }
    EXPECT_EQ(ended, Names{"a"});
    HostObject::retire(nullptr);
}

TEST(HostObject, objectsRetiredByADestructorAreDeletedInTheSameSweep) {
    class Retiring : public NamedObject {
    public:
        Retiring(Names& ended, HostObject* next) : NamedObject("first", ended), next_(next) {}
        ~Retiring() override {
            // A destructor's plug-in may call the host, which may remove more.
            HostCall call(*next_);
            HostObject::retire(next_);
        }

    private:
        HostObject* next_;
    };
    Names ended;
    auto* object = new Retiring(ended, new NamedObject("second", ended));
    {
        HostCall call(*object);
        HostObject::retire(object);
    }
    EXPECT_EQ(ended, (Names{"first", "second"}));
}

TEST(HostObject, anExceptionThroughTheOutermostCallDeletesWhatWaits) {
    Names ended;
    auto* object = new NamedObject("a", ended);
    EXPECT_THROW(
        {
            HostCall call(*object);
            HostObject::retire(object);
            throw std::runtime_error("from a plug-in");
        },
        std::runtime_error);
    EXPECT_EQ(ended, Names{"a"});
}

TEST(HostObject, watchOutlivesRemovalAndExpiresWithTheObject) {
    Names ended;
    auto* object = new NamedObject("a", ended);
    const std::weak_ptr<const void> watch = object->watch();
    {
        HostCall call(*object);
        EXPECT_FALSE(object->isRetired());
        HostObject::retire(object);
        EXPECT_FALSE(watch.expired());
        EXPECT_TRUE(object->isRetired());
    }
    EXPECT_TRUE(watch.expired());
}

/// Fails when it has made and dropped something that still waits for its end.
class FailingHolder : public HostObject {
public:
    explicit FailingHolder(Names& ended) {
        auto* held = new NamedObject("held", ended, this);
        auto* heldByThat = new NamedObject("held by that", ended, held);
        {
            const HostCall call(*heldByThat);
            HostObject::retire(held);
            HostObject::retire(heldByThat);
        }
        EXPECT_EQ(ended, Names{}) << "an outer call is on";
        endHeld();
        throw std::runtime_error("no memory");
    }
};

TEST(HostObject, aConstructorThatFailsTakesAlongWhatWaitsForItsEnd) {
    Names ended;
    NamedObject outer("outer", ended);
    auto* other = new NamedObject("other", ended);
    {
        const HostCall outermost(outer);
        {
            const HostCall call(*other);
            HostObject::retire(other);
        }
        EXPECT_THROW(FailingHolder{ended}, std::runtime_error);
        EXPECT_EQ(ended, (Names{"held by that", "held"})) << "and nothing else";
    }
    EXPECT_EQ(ended, (Names{"held by that", "held", "other"}));
}

TEST(HostObject, serialsDifferAlsoAtOneAddress) {
    Names ended;
    alignas(NamedObject) unsigned char memory[sizeof(NamedObject)];
    auto* first = new (memory) NamedObject("a", ended);
    const uint64_t serial = first->serial();
    first->~NamedObject();
    auto* second = new (memory) NamedObject("b", ended);
    EXPECT_NE(second->serial(), serial);
    second->~NamedObject();
}

} // namespace
} // namespace ViewerAPI
