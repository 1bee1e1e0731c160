#include "pymanipulatorobject.h"

#include "attributearguments.h"
#include "optiondocs.h"
#include "vlmanipulatorhost.h"
#include "vlviewporthost.h"

#include "viewer_api/ManipulatorPluginSuite.h"

namespace ViewerAPI {

bool PyManipulatorObject::checkAlive() const {
    // One that is deactivated in its own call is there until that returns, and dead all the same.
    if (watch.expired() || host->isRetired()) {
        setDestroyedError("manipulator handle");
        return false;
    }
    return true;
}

PyReference PyManipulatorObject::holdDelegate() const {
    return holdWrapperOf(host->viewport->viewerDelegate);
}

PluginOptions PyManipulatorObject::pluginOptions() const {
    return {host->pluginInstance, host->pluginSuite->setOption, host->pluginSuite->getOption};
}

namespace {

using Record = PyManipulatorObject;

PyObject* getPluginName(Record& self) {
    return pythoncompat::newText(self.host->pluginName.c_str());
}

PyObject* getTags(Record& self) {
    return newPyAttribute(self.host->getTags());
}

PyObject* getLocationPaths(Record& self) {
    return newPyAttribute(self.host->getLocationPaths());
}

PyMethodDef methods[] = {
    method<&getPluginName>("getPluginName", "getPluginName() -> str\n\n"
                                            "Gets the manipulator's plug-in name."),
    method<&getTags>("getTags", "getTags() -> GroupAttribute\n\n"
                                "Gets the tags GroupAttribute of the manipulator."),
    method<&getLocationPaths>("getLocationPaths",
                              "getLocationPaths() -> StringAttribute\n\n"
                              "Gets the location paths being manipulated by this manipulator."),
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByName),
    {nullptr, nullptr, 0, nullptr},
};

// Calling the type doesn't get here, as there is no tp_new and the interpreter refuses first; only
// a call of __init__ does.
int refuseConstruction(PyObject*, PyObject*, PyObject*) {
    PyErr_SetString(PyExc_RuntimeError, "Please use the Viewport.activateManipulator() function to "
                                        "instantiate a Manipulator.");
    return -1;
}

void deallocate(PyObject* object) {
    auto* self = reinterpret_cast<Record*>(object);
    Py_CLEAR(self->viewport);
    deleteWrapper(self);
}

PyTypeObject makeType() {
    PyTypeObject type = pythoncompat::makeType("ViewerAPI_cmodule.Manipulator", sizeof(Record));
    type.tp_doc = "Manipulator plugin";
    type.tp_dealloc = deallocate;
    type.tp_methods = methods;
    type.tp_init = refuseConstruction;
    return type;
}

PyTypeObject type = makeType();

} // namespace

PyObject* wrapManipulator(VlManipulatorHostStruct* host, PyObject* viewportWrapper) {
    auto* record = newWrapper<Record>(type, host);
    if (record) {
        Py_INCREF(viewportWrapper);
        record->viewport = viewportWrapper;
    }
    return reinterpret_cast<PyObject*>(record);
}

void registerManipulatorType(PyObject* module) {
    registerType(module, type, "Manipulator");
}

} // namespace ViewerAPI
