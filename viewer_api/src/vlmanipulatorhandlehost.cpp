#include "vlmanipulatorhandlehost.h"

#include "matrixattribute.h"
#include "plugininstance.h"
#include "vlmanipulatorhost.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"

namespace ViewerAPI {

VlManipulatorHandleHostStruct::VlManipulatorHandleHostStruct(const std::string& pluginName,
                                                             VlManipulatorHostStruct* owner)
    : HostObject(owner), manipulator(owner) {
    createPluginInstance(PluginKind::ManipulatorHandle, pluginName, this, pluginSuite,
                         pluginInstance);
}

VlManipulatorHandleHostStruct::~VlManipulatorHandleHostStruct() {
    endLife();
    destroyPluginInstance(pluginSuite, pluginInstance);
}

void VlManipulatorHandleHostStruct::setLocalXform(const VlAttribute::DoubleAttribute& value) {
    localXform = value;
    localXformMatrix = toMatrix(value);
}

VlAttribute::DoubleAttribute VlManipulatorHandleHostStruct::getCombinedXform() const {
    return toMatrixAttribute(localXformMatrix * manipulator->xformMatrix);
}

bool VlManipulatorHandleHostStruct::event(VlAttributeStruct* eventData) {
    const HostCall call(*this);
    return pluginSuite->event(pluginInstance, eventData) != 0;
}

void VlManipulatorHandleHostStruct::draw() {
    const HostCall call(*this);
    pluginSuite->draw(pluginInstance);
}

void VlManipulatorHandleHostStruct::pickerDraw(std::uint64_t pickerId) {
    const HostCall call(*this);
    pluginSuite->pickerDraw(pluginInstance, pickerId);
}

void VlManipulatorHandleHostStruct::notifyPlugin() {
    const HostCall call(*this);
    pluginSuite->notify(pluginInstance);
}

bool VlManipulatorHandleHostStruct::isEngaged() const {
    return engaged && manipulator->activeLocationPaths.isValid();
}

} // namespace ViewerAPI
