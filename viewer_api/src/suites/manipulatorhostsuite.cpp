#include "manipulatorhostsuite.h"

#include "manipulatorregistry.h"
#include "text.h"
#include "triple.h"
#include "vlmanipulatorhandlehost.h"
#include "vlmanipulatorhost.h"
#include "vlviewporthost.h"

namespace ViewerAPI {

namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;

VlManipulatorHostStruct& manipulatorOf(void* host) {
    return *static_cast<VlManipulatorHostStruct*>(host);
}

const char* getPluginName(void* host) {
    return manipulatorOf(host).pluginName.c_str();
}

int event(void* host, VlAttributeStruct* eventData) {
    return manipulatorOf(host).event(eventData) ? 1 : 0;
}

int draw(void* host) {
    return manipulatorOf(host).draw() ? 1 : 0;
}

int pickerDraw(void* host, uint64_t pickerId) {
    return manipulatorOf(host).pickerDraw(pickerId) ? 1 : 0;
}

VlAttributeStruct* getXform(void* host) {
    return manipulatorOf(host).getXform().detach();
}

void setXform(void* host, VlAttributeStruct* xform) {
    manipulatorOf(host).setXform(DoubleAttribute(Attribute::CreateAndRetain(xform)));
}

VlAttributeStruct* calculateXform(void* host) {
    return manipulatorOf(host).calculateXform().detach();
}

VlAttributeStruct* getValue(void* host, const char* path, const char* name) {
    return manipulatorOf(host).getValue(textOf(path), textOf(name)).detach();
}

int setValue(void* host, const char* path, const char* name, VlAttributeStruct* value,
             int isFinal) {
    return manipulatorOf(host).setValue(textOf(path), textOf(name),
                                        Attribute::CreateAndRetain(value), isFinal != 0)
               ? 1
               : 0;
}

void getViewport(void* host, void** viewportHost, void** instance, const void** suite) {
    writeTriple(manipulatorOf(host).viewport, viewportHost, instance, suite);
}

VlAttributeStruct* getLocationPaths(void* host) {
    return manipulatorOf(host).getLocationPaths().detach();
}

void addManipulatorHandle(void* host, const char* pluginName, const char* name, void** handleHost,
                          void** instance, const void** suite) {
    writeTriple(manipulatorOf(host).addManipulatorHandle(textOf(pluginName), textOf(name)),
                handleHost, instance, suite);
}

void getManipulatorHandle(void* host, const char* name, void** handleHost, void** instance,
                          const void** suite) {
    writeTriple(name ? manipulatorOf(host).getManipulatorHandle(name) : nullptr, handleHost,
                instance, suite);
}

void getManipulatorHandleByIndex(void* host, uint32_t index, void** handleHost, void** instance,
                                 const void** suite) {
    writeTriple(manipulatorOf(host).getManipulatorHandleByIndex(index), handleHost, instance,
                suite);
}

void removeManipulatorHandle(void* host, const char* name) {
    if (name) {
        manipulatorOf(host).removeManipulatorHandle(name);
    }
}

void removeManipulatorHandleByIndex(void* host, uint32_t index) {
    manipulatorOf(host).removeManipulatorHandleByIndex(index);
}

uint32_t getNumberOfManipulatorHandles(void* host) {
    return manipulatorOf(host).getNumberOfManipulatorHandles();
}

const char* getManipulatorHandleName(void* host, uint32_t index) {
    return manipulatorOf(host).getManipulatorHandleName(index);
}

VlAttributeStruct* getRegisteredInfo() {
    return getRegisteredManipulatorsInfo().detach();
}

int isEditable(void* host) {
    return manipulatorOf(host).editable ? 1 : 0;
}

void openManipulationGroup(void* host, const char* path) {
    manipulatorOf(host).openManipulationGroup(textOf(path));
}

void closeManipulationGroup(void* host, const char* path) {
    manipulatorOf(host).closeManipulationGroup(textOf(path));
}

constexpr ManipulatorHostSuite kSuite = {
    .getPluginName = getPluginName,
    .event = event,
    .draw = draw,
    .pickerDraw = pickerDraw,
    .getXform = getXform,
    .setXform = setXform,
    .calculateXform = calculateXform,
    .getValue = getValue,
    .setValue = setValue,
    .getViewport = getViewport,
    .getLocationPaths = getLocationPaths,
    .addManipulatorHandle = addManipulatorHandle,
    .getManipulatorHandle = getManipulatorHandle,
    .getManipulatorHandleByIndex = getManipulatorHandleByIndex,
    .removeManipulatorHandle = removeManipulatorHandle,
    .removeManipulatorHandleByIndex = removeManipulatorHandleByIndex,
    .getNumberOfManipulatorHandles = getNumberOfManipulatorHandles,
    .getManipulatorHandleName = getManipulatorHandleName,
    .getRegisteredManipulatorsInfo = getRegisteredInfo,
    .isEditable = isEditable,
    .openManipulationGroup = openManipulationGroup,
    .closeManipulationGroup = closeManipulationGroup,
};

} // namespace

const ManipulatorHostSuite* getManipulatorHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
