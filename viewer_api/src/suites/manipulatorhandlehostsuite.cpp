#include "manipulatorhandlehostsuite.h"

#include "triple.h"
#include "vlmanipulatorhandlehost.h"
#include "vlmanipulatorhost.h"

namespace ViewerAPI {

namespace {

VlManipulatorHandleHostStruct& handleOf(void* host) {
    return *static_cast<VlManipulatorHandleHostStruct*>(host);
}

void getManipulator(void* host, void** manipulatorHost, void** instance, const void** suite) {
    writeTriple(handleOf(host).manipulator, manipulatorHost, instance, suite);
}

VlAttributeStruct* getCombinedXform(void* host) {
    return handleOf(host).getCombinedXform().detach();
}

void setLocalXform(void* host, VlAttributeStruct* xform) {
    handleOf(host).setLocalXform(
        VlAttribute::DoubleAttribute(VlAttribute::Attribute::CreateAndRetain(xform)));
}

VlAttributeStruct* getLocalXform(void* host) {
    return handleOf(host).getLocalXform().detach();
}

int event(void* host, VlAttributeStruct* eventData) {
    return handleOf(host).event(eventData) ? 1 : 0;
}

void draw(void* host) {
    handleOf(host).draw();
}

void pickerDraw(void* host, uint64_t pickerId) {
    handleOf(host).pickerDraw(pickerId);
}

int setEngaged(void* host, int engaged) {
    return handleOf(host).engaged = engaged != 0;
}

int isEngaged(void* host) {
    return handleOf(host).isEngaged() ? 1 : 0;
}

int setMarked(void* host, int marked) {
    return handleOf(host).marked = marked != 0;
}

int isMarked(void* host) {
    return handleOf(host).marked ? 1 : 0;
}

void notifyPlugin(void* host) {
    handleOf(host).notifyPlugin();
}

constexpr ManipulatorHandleHostSuite kSuite = {
    .getManipulator = getManipulator,
    .getCombinedXform = getCombinedXform,
    .setLocalXform = setLocalXform,
    .getLocalXform = getLocalXform,
    .event = event,
    .draw = draw,
    .pickerDraw = pickerDraw,
    .setEngaged = setEngaged,
    .isEngaged = isEngaged,
    .setMarked = setMarked,
    .isMarked = isMarked,
    .notifyPlugin = notifyPlugin,
};

} // namespace

const ManipulatorHandleHostSuite* getManipulatorHandleHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
