#include "vlviewerdelegatecomponenthost.h"

#include "plugininstance.h"
#include "vlviewerdelegatehost.h"

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;

VlViewerDelegateComponentHostStruct::VlViewerDelegateComponentHostStruct(
    const std::string& pluginName, VlViewerDelegateHostStruct* owner)
    : HostObject(owner), delegate(owner) {
    createPluginInstance(PluginKind::ViewerDelegateComponent, pluginName, this, suite, instance);
}

VlViewerDelegateComponentHostStruct::~VlViewerDelegateComponentHostStruct() {
    endLife();
    destroyPluginInstance(suite, instance);
}

void VlViewerDelegateComponentHostStruct::setup() {
    const HostCall call(*this);
    suite->setup(instance);
}

void VlViewerDelegateComponentHostStruct::cleanup() {
    const HostCall call(*this);
    suite->cleanup(instance);
}

bool VlViewerDelegateComponentHostStruct::locationEvent(const ViewerLocationEvent& event,
                                                        bool handled) {
    const HostCall call(*this);
    return suite->locationEvent(instance, &event, handled ? 1 : 0) != 0;
}

void VlViewerDelegateComponentHostStruct::locationsSelected(const char* const* paths,
                                                            std::uint32_t count) {
    const HostCall call(*this);
    suite->locationsSelected(instance, const_cast<const char**>(paths), count);
}

void VlViewerDelegateComponentHostStruct::setOption(std::uint64_t optionId,
                                                    const Attribute& value) {
    const HostCall call(*this);
    suite->setOption(instance, optionId, value.getRetainedHandle());
}

Attribute VlViewerDelegateComponentHostStruct::getOption(std::uint64_t optionId) {
    const HostCall call(*this);
    return Attribute::CreateAndSteal(suite->getOption(instance, optionId));
}

bool VlViewerDelegateComponentHostStruct::isProcessing() {
    const HostCall call(*this);
    return suite->isProcessing(instance) != 0;
}

DoubleAttribute VlViewerDelegateComponentHostStruct::getBounds(const char* locationPath) {
    const HostCall call(*this);
    return DoubleAttribute(Attribute::CreateAndSteal(suite->getBounds(instance, locationPath)));
}

DoubleAttribute VlViewerDelegateComponentHostStruct::computeExtent(const char* locationPath) {
    const HostCall call(*this);
    return DoubleAttribute(Attribute::CreateAndSteal(suite->computeExtent(instance, locationPath)));
}

} // namespace ViewerAPI
