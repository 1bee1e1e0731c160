#include "testops.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

using namespace VlScenelibEngine;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

namespace {

class Stamp final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        GroupBuilder attrs;
        attrs.update(input.getAttrs());
        attrs.set("stamp", context.getArg("stamp"));
        if (context.getName() == "a") {
            attrs.set("mark", context.getArg("mark"));
        }
        return {attrs.build(), input.getChildren()};
    }
};

class Filter final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        if (!input.getChildren()) {
            return {input.getAttrs()};
        }
        const std::string hidden = StringAttribute(context.getArg("hide")).getValue();
        std::vector<std::string> names;
        for (std::size_t i = 0; i < input.getChildren()->size(); ++i) {
            if (input.getChildren()->getName(i) != hidden) {
                names.emplace_back(input.getChildren()->getName(i));
            }
        }
        return {input.getAttrs(), ChildList::create(StringAttribute(names))};
    }
};

class Far final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (!context.isRoot()) {
            return CookResult::sameAsInput(0);
        }
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        const std::string path = StringAttribute(context.getArg("path")).getValue();
        GroupBuilder attrs;
        attrs.update(input.getAttrs());
        attrs.set("far", context.getInput(0, path).getAttrs());
        return {attrs.build(), input.getChildren()};
    }
};

class Throw final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (context.getName() == StringAttribute(context.getArg("name")).getValue()) {
            throw std::runtime_error("thrown at " + context.getPath());
        }
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        return {input.getAttrs(), input.getChildren()};
    }
};

class Swap final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (!context.isRoot() && context.getName() < "b" && context.getInput(0).exists()) {
            return CookResult::sameAsInput(0);
        }
        std::vector<std::string> names;
        GroupAttribute attrs = GroupAttribute::Empty();
        for (std::size_t i = 0; i < 2; ++i) {
            const InputLocation input = context.getInput(i);
            if (input.exists()) {
                attrs = input.getAttrs();
            }
            for (std::size_t j = 0; input.getChildren() && j < input.getChildren()->size(); ++j) {
                const std::string name(input.getChildren()->getName(j));
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
        return {attrs, ChildList::create(StringAttribute(names))};
    }
};

/// What is there as soon as a thread of its own comes round to it.
class Parcel final : public Awaited {
public:
    using Awaited::setThere;
};

class Postman {
public:
    ~Postman() {
        {
            const std::lock_guard lock(mutex);
            isOver = true;
        }
        changed.notify_one();
        thread.join();
    }

    std::shared_ptr<Parcel> order(const std::string& address) {
        const std::lock_guard lock(mutex);
        std::weak_ptr<Parcel>& place = ordered[address];
        std::shared_ptr<Parcel> parcel = place.lock();
        if (!parcel) {
            parcel = std::make_shared<Parcel>();
            place = parcel;
            waiting.push_back(parcel);
            changed.notify_one();
        }
        return parcel;
    }

    void setHeld(bool isHeldNow) {
        {
            const std::lock_guard lock(mutex);
            isHeld = isHeldNow;
        }
        changed.notify_one();
    }

private:
    void deliver() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return isOver || (!isHeld && !waiting.empty()); });
            if (isOver) {
                return;
            }
            const std::shared_ptr<Parcel> parcel = waiting.front().lock();
            waiting.pop_front();
            lock.unlock();
            if (parcel) {
                parcel->setThere();
            }
            lock.lock();
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::string, std::weak_ptr<Parcel>> ordered;
    std::deque<std::weak_ptr<Parcel>> waiting;
    bool isHeld = false;
    bool isOver = false;
    std::thread thread{[this] { deliver(); }};
};

Postman& getPostman() {
    static Postman postman;
    return postman;
}

class Late final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        const auto wait = [&context] {
            if (IntAttribute(context.getArg("stamp")).getValue(1) != 0) {
                context.await(getPostman().order(context.getPath()));
            }
        };
        if (context.isRoot()) {
            wait();
        }
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        if (context.getName() == "b") {
            wait();
        }
        return {input.getAttrs(), input.getChildren()};
    }
};

} // namespace

void setLateHeld(bool isHeld) {
    getPostman().setHeld(isHeld);
}

void registerTestOps() {
    registerOpType("Test.Stamp", std::make_shared<Stamp>());
    registerOpType("Test.Filter", std::make_shared<Filter>());
    registerOpType("Test.Far", std::make_shared<Far>());
    registerOpType("Test.Throw", std::make_shared<Throw>());
    registerOpType("Test.Swap", std::make_shared<Swap>());
    registerOpType("Test.Late", std::make_shared<Late>());
}
