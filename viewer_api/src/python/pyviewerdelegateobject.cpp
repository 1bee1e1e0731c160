#include "pyviewerdelegateobject.h"

#include "attributearguments.h"
#include "manipulatorregistry.h"
#include "optiondocs.h"
#include "pyviewerdelegatecallbacks.h"
#include "pyviewerdelegatecomponentobject.h"
#include "pyviewportobject.h"
#include "stringlistargument.h"
#include "textargument.h"
#include "viewerdelegatedocs.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

#include "viewer_api/ViewerDelegatePluginSuite.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ViewerAPI {

using pythoncompat::newInt;
using pythoncompat::newText;
using pythoncompat::parseArguments;
using pythoncompat::returnBool;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;

bool PyViewerDelegateObject::checkAlive() const {
    if (!host) {
        setDestroyedError("viewer delegate");
        return false;
    }
    return true;
}

PyReference PyViewerDelegateObject::holdDelegate() const {
    return holdWrapperOf(host);
}

PluginOptions PyViewerDelegateObject::pluginOptions() const {
    return {host->instance, host->suite->setOption, host->suite->getOption};
}

namespace {

using Record = PyViewerDelegateObject;
using Host = VlViewerDelegateHostStruct;

PyObject* asObject(Record& self) {
    return reinterpret_cast<PyObject*>(&self);
}

PyObject* componentOrNone(VlViewerDelegateComponentHostStruct* component) {
    return component ? wrapComponent(component) : returnNone();
}

PyObject* viewportOrNone(Record& self, VlViewportHostStruct* viewport) {
    return viewport ? wrapViewport(viewport, asObject(self)) : returnNone();
}

// A method without arguments and result.
template <auto Operation>
PyObject* act(Record& self) {
    (self.host->*Operation)();
    return returnNone();
}

// A question without arguments, answered by a bool.
template <auto Question>
PyObject* ask(Record& self) {
    return returnBool((self.host->*Question)());
}

// A method whose one argument is a list of paths.
using PathsOperation = void (Host::*)(const char* const* paths, std::uint32_t count);

template <PathsOperation Operation>
PyObject* withPaths(Record& self, PyObject* args) {
    StringListArgument paths;
    if (!paths.parse(args)) {
        return nullptr;
    }
    (self.host->*Operation)(paths.paths(), paths.count());
    return returnNone();
}

// A method whose one argument is an integer that is tested against 0.
using FlagOperation = void (Host::*)(bool isSet);

template <FlagOperation Operation>
PyObject* withFlag(Record& self, PyObject* args) {
    int flag = 0;
    if (!PyArg_ParseTuple(args, "i", &flag)) {
        return nullptr;
    }
    (self.host->*Operation)(flag != 0);
    return returnNone();
}

// A method that reads attributes of a location in a scene view.
using AttributesQuery = GroupAttribute (Host::*)(std::string_view path, int sceneView) const;

template <AttributesQuery Query>
PyObject* readAttributes(Record& self, PyObject* args) {
    TextArgument path;
    int sceneView = kVlViewerDelegatePrimary;
    if (!parseArguments(args, "s|i", path, &sceneView)) {
        return nullptr;
    }
    return newPyAttribute((self.host->*Query)(path.get(), sceneView));
}

// A method whose one argument is a group.
using GroupOperation = void (Host::*)(const GroupAttribute& group);

template <GroupOperation Operation>
PyObject* withGroup(Record& self, PyObject* args) {
    GroupAttribute group;
    if (!parseGroupArgument(args, group)) {
        return nullptr;
    }
    (self.host->*Operation)(group);
    return returnNone();
}

// A question about the box of a location.
using BoxQuery = DoubleAttribute (Host::*)(const std::string& path);

template <BoxQuery Query>
PyObject* readBox(Record& self, PyObject* args) {
    TextArgument path;
    if (!parseArguments(args, "s", path)) {
        return nullptr;
    }
    return newPyAttribute((self.host->*Query)(path.get()));
}

// Components and viewports are removed, and their names read, alike.
using NameOperation = void (Host::*)(const std::string& name);
using IndexOperation = void (Host::*)(std::uint32_t index);
using NameQuery = const char* (Host::*)(std::uint32_t index) const;

template <NameOperation Remove>
PyObject* removeByName(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    (self.host->*Remove)(name.get());
    return returnNone();
}

template <IndexOperation Remove>
PyObject* removeByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    if (index >= 0) {
        (self.host->*Remove)(static_cast<std::uint32_t>(index));
    }
    return returnNone();
}

template <NameQuery Query>
PyObject* nameByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    return newText((self.host->*Query)(static_cast<std::uint32_t>(index)));
}

PyObject* addComponent(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    if (!parseArguments(args, "ss", pluginName, name)) {
        return nullptr;
    }
    return componentOrNone(self.host->addComponent(pluginName.get(), name.get()));
}

PyObject* insertComponent(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    int index = -1;
    if (!parseArguments(args, "ssi", pluginName, name, &index)) {
        return nullptr;
    }
    // A negative index becomes one that no list reaches.
    return componentOrNone(self.host->insertComponent(pluginName.get(), name.get(),
                                                      static_cast<std::uint32_t>(index)));
}

PyObject* getNumberOfComponents(Record& self) {
    return PyLong_FromLong(static_cast<long>(self.host->getNumberOfComponents()));
}

PyObject* getComponent(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    return componentOrNone(self.host->getComponent(name.get()));
}

PyObject* getComponentByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    return componentOrNone(
        index < 0 ? nullptr : self.host->getComponentByIndex(static_cast<std::uint32_t>(index)));
}

PyObject* getComponentIndex(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    const std::int32_t index = self.host->getComponentIndex(name.get());
    if (index < 0) {
        const PyReference text(
            newText(std::string("component with name '") + name.get() + "' not found"));
        if (text) {
            PyErr_SetObject(PyExc_ValueError, text.get());
        }
        return nullptr;
    }
    return newInt(index);
}

PyObject* addViewport(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    if (!parseArguments(args, "ss", pluginName, name)) {
        return nullptr;
    }
    return createViewport(pluginName.get(), name.get(), self.host, asObject(self));
}

PyObject* getViewport(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    return viewportOrNone(self, self.host->getViewport(name.get()));
}

PyObject* getViewportByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    return viewportOrNone(
        self,
        index < 0 ? nullptr : self.host->getViewportByIndex(static_cast<std::uint32_t>(index)));
}

PyObject* getNumberOfViewports(Record& self) {
    return newInt(static_cast<long>(self.host->getNumberOfViewports()));
}

PyObject* setLookThroughLocation(Record& self, PyObject* args) {
    PyObject* object = nullptr; // borrowed
    TextArgument path;
    if (!parseArguments(args, "Os", &object, path)) {
        return nullptr;
    }
    const PyViewportObject& viewport = viewportArgument(object);
    // A viewport that was removed is none, which is no error here.
    if (!viewport.watch.expired()) {
        self.host->setLookThroughLocation(viewport.host, path.get());
    }
    return returnNone();
}

PyObject* setViewOp(Record& self, PyObject* args) {
    int opId = 0;
    if (!PyArg_ParseTuple(args, "i", &opId)) {
        return nullptr;
    }
    self.host->setViewOp(opId);
    return returnNone();
}

PyObject* setManipulationFreezePeriod(Record& self, PyObject* args) {
    int milliseconds = 0;
    if (!PyArg_ParseTuple(args, "i", &milliseconds)) {
        return nullptr;
    }
    self.host->setManipulationFreezePeriod(milliseconds);
    return returnNone();
}

PyObject* getCompatibleManipulatorsInfo(Record& self, PyObject* args) {
    StringListArgument paths;
    if (!paths.parse(args)) {
        return nullptr;
    }
    return newPyAttribute(self.host->getCompatibleManipulatorsInfo(paths.paths(), paths.count()));
}

// Belongs to no delegate, and has never parsed its arguments.
PyObject* getRegisteredManipulatorsInfo(Record& /*self*/, PyObject* /*ignored*/) {
    return newPyAttribute(ViewerAPI::getRegisteredManipulatorsInfo());
}

PyObject* cleanup(Record& self) {
    PyDict_Clear(self.callbacks);
    self.host->cleanup();
    return returnNone();
}

PyObject* computeMergedExtent(Record& self, PyObject* args) {
    constexpr char kErrorText[] = "Argument must be a sequence of strings.";
    PyObject* list = nullptr; // borrowed
    TextArgument exclude;
    if (!parseArguments(args, "O!|s", &PyList_Type, &list, exclude)) {
        PyErr_SetString(PyExc_TypeError, kErrorText);
        return nullptr;
    }
    StringListArgument paths;
    if (!paths.store(list, kErrorText)) {
        return nullptr;
    }
    return newPyAttribute(
        self.host->computeMergedExtent(paths.paths(), paths.count(), exclude ? exclude.get() : ""));
}

PyObject* hideLocations(Record& self, PyObject* args) {
    StringListArgument paths;
    if (!paths.parse(args, "Argument must be a list of strings.")) {
        return nullptr;
    }
    self.host->hideLocations(paths.paths(), paths.count());
    return returnNone();
}

// The host can unhide given locations and tell the hidden ones as well; these two have never been
// offered to Python.
PyMethodDef methods[] = {
    method<&addComponent>("addComponent", docs::delegate::addComponent),
    method<&insertComponent>("insertComponent", docs::delegate::insertComponent),
    method<&removeByName<&Host::removeComponent>>("removeComponent",
                                                  docs::delegate::removeComponent),
    method<&removeByIndex<&Host::removeComponentByIndex>>("removeComponentByIndex",
                                                          docs::delegate::removeComponentByIndex),
    method<&getNumberOfComponents>("getNumberOfComponents", docs::delegate::getNumberOfComponents),
    method<&getComponent>("getComponent", docs::delegate::getComponent),
    method<&getComponentByIndex>("getComponentByIndex", docs::delegate::getComponentByIndex),
    method<&nameByIndex<&Host::getComponentName>>("getComponentName",
                                                  docs::delegate::getComponentName),
    method<&getComponentIndex>("getComponentIndex", docs::delegate::getComponentIndex),
    method<&addViewport>("addViewport", docs::delegate::addViewport),
    method<&getViewport>("getViewport", docs::delegate::getViewport),
    method<&getViewportByIndex>("getViewportByIndex", docs::delegate::getViewportByIndex),
    method<&removeByName<&Host::removeViewport>>("removeViewport", docs::delegate::removeViewport),
    method<&removeByIndex<&Host::removeViewportByIndex>>("removeViewportByIndex",
                                                         docs::delegate::removeViewportByIndex),
    method<&getNumberOfViewports>("getNumberOfViewports", docs::delegate::getNumberOfViewports),
    method<&nameByIndex<&Host::getViewportName>>("getViewportName",
                                                 docs::delegate::getViewportName),
    method<&withPaths<&Host::openLocations>>("openLocations", docs::delegate::openLocations),
    method<&withPaths<&Host::closeLocations>>("closeLocations", docs::delegate::closeLocations),
    method<&withPaths<&Host::pinLocations>>("pinLocations", docs::delegate::pinLocations),
    method<&withPaths<&Host::unpinLocations>>("unpinLocations", docs::delegate::unpinLocations),
    method<&setLookThroughLocation>("setLookThroughLocation",
                                    docs::delegate::setLookThroughLocation),
    method<&withFlag<&Host::setWorkingSetVisibilityEnabled>>(
        "setWorkingSetVisibilityEnabled", docs::delegate::setWorkingSetVisibilityEnabled),
    method<&ask<&Host::getWorkingSetVisibilityEnabled>>(
        "getWorkingSetVisibilityEnabled", docs::delegate::getWorkingSetVisibilityEnabled),
    method<&withGroup<&Host::setVisibilityWorkingSet>>("setVisibilityWorkingSet",
                                                       docs::delegate::setVisibilityWorkingSet),
    method<&setViewOp>("setViewOp", docs::delegate::setViewOp),
    method<&setManipulationFreezePeriod>("setManipulationFreezePeriod",
                                         docs::delegate::setManipulationFreezePeriod),
    method<&ask<&Host::isFrozenDueToManipulation>>("isFrozenDueToManipulation",
                                                   docs::delegate::isFrozenDueToManipulation),
    method<&act<&Host::processLocationEvents>>("processLocationEvents",
                                               docs::delegate::processLocationEvents),
    method<&ask<&Host::isProcessing>>("isProcessing", docs::delegate::isProcessing),
    method<&readAttributes<&Host::getAttributes>>("getAttributes", docs::delegate::getAttributes),
    method<&readAttributes<&Host::getLiveAttributes>>("getLiveAttributes",
                                                      docs::delegate::getLiveAttributes),
    method<&readAttributes<&Host::getCookedAttributes>>("getCookedAttributes",
                                                        docs::delegate::getCookedAttributes),
    method<&withGroup<&Host::setSystemArgs>>("setSystemArgs", docs::delegate::setSystemArgs),
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByNameAsGetOption),
    method<&act<&Host::freeze>>("freeze", docs::delegate::freeze),
    method<&act<&Host::thaw>>("thaw", docs::delegate::thaw),
    method<&act<&Host::flushCaches>>("flushCaches", docs::delegate::flushCaches),
    method<&getCompatibleManipulatorsInfo>("getCompatibleManipulatorsInfo",
                                           docs::delegate::getCompatibleManipulatorsInfo),
    method<&getRegisteredManipulatorsInfo>("getRegisteredManipulatorsInfo",
                                           docs::delegate::getRegisteredManipulatorsInfo),
    pythonOnlyMethod<&registerCallback>("registerCallback", docs::delegate::registerCallback),
    pythonOnlyMethod<&unregisterCallback>("unregisterCallback", docs::delegate::unregisterCallback),
    pythonOnlyMethod<&unregisterAllCallbacks>("unregisterAllCallbacks",
                                              docs::delegate::unregisterAllCallbacks),
    method<&withPaths<&Host::setSelectedLocations>>("setSelectedLocations",
                                                    docs::delegate::setSelectedLocations),
    pythonOnlyMethod<&setSelectionCallbacks>("setSelectionCallbacks",
                                             docs::delegate::setSelectionCallbacks),
    pythonOnlyMethod<&setActiveManipulatorsChangedCallback>(
        "setActiveManipulatorsChangedCallback",
        docs::delegate::setActiveManipulatorsChangedCallback),
    method<&withFlag<&Host::setBoundingBoxesEnabled>>("setBoundingBoxesEnabled",
                                                      docs::delegate::setBoundingBoxesEnabled),
    method<&withFlag<&Host::setProxyGeometryEnabled>>("setProxyGeometryEnabled",
                                                      docs::delegate::setProxyGeometryEnabled),
    method<&act<&Host::setup>>("setup", docs::delegate::setup),
    method<&cleanup>("cleanup", docs::delegate::cleanup),
    method<&readBox<&Host::getBounds>>("getBounds", docs::delegate::getBounds),
    method<&readBox<&Host::computeExtent>>("computeExtent", docs::delegate::computeExtent),
    method<&computeMergedExtent>("computeMergedExtent", docs::delegate::computeMergedExtent),
    method<&hideLocations>("hideLocations", docs::delegate::hideLocations),
    method<&act<&Host::unhideAllLocations>>("unhideAllLocations",
                                            docs::delegate::unhideAllLocations),
    {nullptr, nullptr, 0, nullptr},
};

void deallocate(PyObject* object) {
    auto* self = reinterpret_cast<Record*>(object);
    // What ends here may call Python, and an error that is on its way must survive that.
    PyObject* errorType = nullptr;
    PyObject* errorValue = nullptr;
    PyObject* errorTraceback = nullptr;
    PyErr_Fetch(&errorType, &errorValue, &errorTraceback);
    if (self->weakrefs) {
        PyObject_ClearWeakRefs(object);
    }
    Py_CLEAR(self->callbacks);
    if (Host* host = std::exchange(self->host, nullptr)) {
        host->hostedPythonObject = nullptr;
        HostObject::retire(host);
    }
    PyErr_Restore(errorType, errorValue, errorTraceback);
    Py_TYPE(object)->tp_free(object);
}

PyObject* allocate(PyTypeObject* subtype, PyObject* /*args*/, PyObject* /*keywords*/) {
    // Cleared by the interpreter.
    return subtype->tp_alloc(subtype, 0);
}

constexpr char kHowToGetOne[] = "Please use the CreateViewerDelegate() function to "
                                "instantiate a ViewerDelegate.";

PyTypeObject makeType() {
    PyTypeObject type =
        wrapperType<Record>("ViewerAPI_cmodule.ViewerDelegate", "ViewerDelegate plugin", methods,
                            deallocate, refuseConstruction<kHowToGetOne>);
    type.tp_weaklistoffset = offsetof(Record, weakrefs);
    type.tp_new = allocate;
    return type;
}

PyTypeObject type = makeType();

} // namespace

PyObject* createViewerDelegate(PyObject* /*module*/, PyObject* args) {
    return withExceptionBoundary([args]() -> PyObject* {
        TextArgument pluginName;
        if (!parseArguments(args, "s", pluginName)) {
            return nullptr;
        }
        auto* self = PyObject_New(Record, &type);
        if (!self) {
            return nullptr;
        }
        PyReference result(asObject(*self));
        self->host = nullptr;
        self->callbacks = nullptr;
        self->weakrefs = nullptr;
        self->host = new Host(pluginName.get(), self);
        self->callbacks = PyDict_New();
        return self->callbacks ? result.release() : nullptr;
    });
}

void registerViewerDelegateType(PyObject* module) {
    registerType(module, type, "ViewerDelegate");
    PyModule_AddIntConstant(module, "kVlViewerDelegatePrimary", kVlViewerDelegatePrimary);
    PyModule_AddIntConstant(module, "kVlViewerDelegateSources", kVlViewerDelegateSources);
    PyModule_AddIntConstant(module, "kVlViewerDelegateLookThrough", kVlViewerDelegateLookThrough);
}

} // namespace ViewerAPI
