#include "pyviewerdelegatecomponentobject.h"

#include "optiondocs.h"
#include "vlviewerdelegatecomponenthost.h"

#include "viewer_api/ViewerDelegateComponentPluginSuite.h"

namespace ViewerAPI {

bool PyViewerDelegateComponentObject::checkAlive() const {
    if (watch.expired()) {
        setDestroyedError("component");
        return false;
    }
    return true;
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

// Calling the type doesn't get here, as there is no tp_new and the interpreter refuses first; only
// a call of __init__ does.
int refuseConstruction(PyObject*, PyObject*, PyObject*) {
    PyErr_SetString(PyExc_RuntimeError, "Please use the ViewerDelegate.addComponent() or "
                                        "ViewerDelegate.insertComonent() function to instantiate a "
                                        "ViewerDelegateComponent.");
    return -1;
}

PyTypeObject makeType() {
    PyTypeObject type =
        pythoncompat::makeType("ViewerAPI_cmodule.ViewerDelegateComponent", sizeof(Record));
    type.tp_doc = "ViewerDelegateComponent plugin";
    type.tp_dealloc = deallocateWrapper<Record>;
    type.tp_methods = methods;
    type.tp_init = refuseConstruction;
    return type;
}

PyTypeObject type = makeType();

} // namespace

PyObject* wrapComponent(VlViewerDelegateComponentHostStruct* host) {
    return reinterpret_cast<PyObject*>(newWrapper<Record>(type, host));
}

void registerViewerDelegateComponentType(PyObject* module) {
    registerType(module, type, "ViewerDelegateComponent");
}

} // namespace ViewerAPI
