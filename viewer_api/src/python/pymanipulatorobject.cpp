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

constexpr char kHowToGetOne[] = "Please use the Viewport.activateManipulator() function to "
                                "instantiate a Manipulator.";

void deallocate(PyObject* object) {
    auto* self = reinterpret_cast<Record*>(object);
    Py_CLEAR(self->viewport);
    deleteWrapper(self);
}

PyTypeObject type = wrapperType<Record>("ViewerAPI_cmodule.Manipulator", "Manipulator plugin",
                                        methods, deallocate, refuseConstruction<kHowToGetOne>);

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
