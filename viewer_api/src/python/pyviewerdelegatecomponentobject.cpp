#include "pyviewerdelegatecomponentobject.h"

#include "optiondocs.h"
#include "vlviewerdelegatecomponenthost.h"

#include "viewer_api/ViewerDelegateComponentPluginSuite.h"

namespace ViewerAPI {

bool PyViewerDelegateComponentObject::checkAlive() const {
    return checkWatch(watch, "component");
}

PyReference PyViewerDelegateComponentObject::holdDelegate() const {
    return holdWrapperOf(host->delegate);
}

PluginOptions PyViewerDelegateComponentObject::pluginOptions() const {
    return {host->instance, host->suite->setOption, host->suite->getOption};
}

namespace {

using Record = PyViewerDelegateComponentObject;

PyMethodDef methods[] = {
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByNameAsGetOption),
    {nullptr, nullptr, 0, nullptr},
};

constexpr char kHowToGetOne[] = "Please use the ViewerDelegate.addComponent() or "
                                "ViewerDelegate.insertComonent() function to instantiate a "
                                "ViewerDelegateComponent.";

PyTypeObject type = wrapperType<Record>(
    "ViewerAPI_cmodule.ViewerDelegateComponent", "ViewerDelegateComponent plugin", methods,
    deallocateWrapper<Record>, refuseConstruction<kHowToGetOne>);

} // namespace

PyObject* wrapComponent(VlViewerDelegateComponentHostStruct* host) {
    return reinterpret_cast<PyObject*>(newWrapper<Record>(type, host));
}

void registerViewerDelegateComponentType(PyObject* module) {
    registerType(module, type, "ViewerDelegateComponent");
}

} // namespace ViewerAPI
