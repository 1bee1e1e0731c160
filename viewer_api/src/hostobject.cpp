#include "hostobject.h"

#include <deque>

namespace ViewerAPI {

namespace {

uint64_t nextSerial() {
    static uint64_t last = 0;
    return ++last;
}

// Oldest first. Never destroyed, so that objects retired while the process ends find it.
std::deque<HostObject*>& retiredObjects() {
    static auto* objects = new std::deque<HostObject*>;
    return *objects;
}

} // namespace

const HostCall* HostCall::current_ = nullptr;

HostObject::HostObject(HostObject* holder) : holder_(holder), serial_(nextSerial()) {}

HostObject::~HostObject() = default;

bool HostObject::isInCall() const {
    for (const HostCall* call = HostCall::current_; call; call = call->previous_)
        for (const HostObject* object = call->object_; object; object = object->holder_)
            if (object == this)
                return true;
    return false;
}

void HostObject::retire(HostObject* object) {
    if (!object || object->isRetired_)
        return;
    object->isRetired_ = true;
    if (object->isInCall())
        retiredObjects().push_back(object);
    else
        delete object;
}

void HostObject::deleteRetired() {
    // A destructor's plug-in calls are host calls again; the loop that is under way takes what
    // they retire.
    static bool isDeleting = false;
    if (isDeleting)
        return;
    isDeleting = true;
    std::deque<HostObject*>& retired = retiredObjects();
    while (!retired.empty()) {
        HostObject* object = retired.front();
        retired.pop_front();
        delete object;
    }
    isDeleting = false;
}

HostCall::HostCall(const HostObject& object) : object_(&object), previous_(current_) {
    current_ = this;
}

HostCall::~HostCall() {
    current_ = previous_;
    if (!current_)
        HostObject::deleteRetired();
}

} // namespace ViewerAPI
