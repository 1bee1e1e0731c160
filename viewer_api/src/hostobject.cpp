#include "hostobject.h"

#include <algorithm>
#include <vector>

namespace ViewerAPI {

namespace {

uint64_t nextSerial() {
    static uint64_t last = 0;
    return ++last;
}

// Oldest first. Never destroyed, so that objects retired while the process ends find it.
std::vector<HostObject*>& retiredObjects() {
    static auto* objects = new std::vector<HostObject*>;
    return *objects;
}

} // namespace

const HostCall* HostCall::current_ = nullptr;

HostObject::HostObject(HostObject* holder)
    : holder_(holder), serial_(nextSerial()), lifeToken_(std::make_shared<const char>('\0')) {}

HostObject::~HostObject() = default;

bool HostObject::isInCall() const {
    for (const HostCall* call = HostCall::current_; call; call = call->previous_) {
        for (const HostObject* object = call->object_; object; object = object->holder_) {
            if (object == this) {
                return true;
            }
        }
    }
    return false;
}

bool HostObject::isHeldBy(const HostObject& holder) const {
    for (const HostObject* object = holder_; object; object = object->holder_) {
        if (object == &holder) {
            return true;
        }
    }
    return false;
}

void HostObject::retire(HostObject* object) {
    if (!object || object->isRetired_) {
        return;
    }
    object->isRetired_ = true;
    const auto isHeld = [object](const HostObject* other) { return other->isHeldBy(*object); };
    if (object->isInCall() || std::ranges::any_of(retiredObjects(), isHeld)) {
        retiredObjects().push_back(object);
    } else {
        delete object;
    }
}

HostObject* HostObject::takeRetired(const HostObject* holder) {
    // In order of retirement, but nothing before what it holds.
    std::vector<HostObject*>& retired = retiredObjects();
    auto next = std::ranges::find_if(retired, [holder](const HostObject* object) {
        return !holder || object->isHeldBy(*holder);
    });
    if (next == retired.end()) {
        return nullptr;
    }
    for (auto other = next; other != retired.end(); ++other) {
        if ((*other)->isHeldBy(**next)) {
            next = other;
        }
    }
    HostObject* object = *next;
    retired.erase(next);
    return object;
}

void HostObject::deleteRetired(const HostObject* holder) {
    while (HostObject* object = takeRetired(holder)) {
        delete object;
    }
}

void HostObject::deleteAllRetired() {
    // A destructor's plug-in calls are host calls again; the loop that is under way takes what
    // they retire.
    static bool isDeleting = false;
    if (isDeleting) {
        return;
    }
    isDeleting = true;
    deleteRetired(nullptr);
    isDeleting = false;
}

HostCall::HostCall(const HostObject& object) : object_(&object), previous_(current_) {
    current_ = this;
}

HostCall::~HostCall() {
    current_ = previous_;
    if (!current_) {
        HostObject::deleteAllRetired();
    }
}

} // namespace ViewerAPI
