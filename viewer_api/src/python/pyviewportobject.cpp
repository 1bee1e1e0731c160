#include "pyviewportobject.h"

#include "attributearguments.h"
#include "optiondocs.h"
#include "pyviewportcameraobject.h"
#include "pyviewportlayerobject.h"
#include "pyviewportmanipulators.h"
#include "textargument.h"
#include "viewportdocs.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"
#include "vlviewportlayerhost.h"

#include "viewer_api/ViewportPluginSuite.h"

#include <cassert>
#include <cstdint>
#include <memory>

namespace ViewerAPI {

using pythoncompat::newInt;
using pythoncompat::newText;
using pythoncompat::parseArguments;
using pythoncompat::returnBool;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using VlAttribute::Attribute;

namespace {

// Borrowed, or null once the delegate's wrapper has gone.
PyObject* delegateOf(const PyViewportObject& self) {
    PyObject* delegate = self.delegateRef ? PyWeakref_GetObject(self.delegateRef) : Py_None;
    return delegate == Py_None ? nullptr : delegate;
}

} // namespace

bool PyViewportObject::checkAlive() const {
    return checkWatch(watch, "viewport");
}

PyReference PyViewportObject::holdDelegate() const {
    return PyReference::retain(delegateOf(*this));
}

PluginOptions PyViewportObject::pluginOptions() const {
    return {host->pluginHandle, host->pluginSuite->setOption, host->pluginSuite->getOption};
}

namespace {

using Record = PyViewportObject;
using Host = VlViewportHostStruct;

PyObject* cameraOrNone(VlViewportCameraHostStruct* camera) {
    return camera ? wrapCamera(camera) : returnNone();
}

PyObject* layerOrNone(VlViewportLayerHostStruct* layer) {
    return layer ? wrapLayer(layer) : returnNone();
}

PyObject* getName(Record& self) {
    return newText(self.host->name);
}

PyObject* setup(Record& self, PyObject* args) {
    int windowId = 0;
    if (!PyArg_ParseTuple(args, "i", &windowId)) {
        return nullptr;
    }
    self.host->setup(windowId);
    return returnNone();
}

PyObject* event(Record& self, PyObject* args) {
    PyObject* data = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &data)) {
        // The one method that answers False here as well, with the parser's error left pending.
        return returnBool(false);
    }
    const Attribute attribute = attributeOf(data);
    if (!attribute.isValid()) {
        return returnBool(false);
    }
    return returnBool(self.host->event(attribute.getHandle()));
}

PyObject* draw(Record& self) {
    self.host->draw();
    return returnNone();
}

PyObject* resize(Record& self, PyObject* args) {
    int width = 0;
    int height = 0;
    if (!PyArg_ParseTuple(args, "ii", &width, &height)) {
        return nullptr;
    }
    self.host->resize(width, height);
    return returnNone();
}

PyObject* hover(Record& self, PyObject* args) {
    PyObject* x = nullptr; // borrowed
    PyObject* y = nullptr; // borrowed
    PyTypeObject* intType = pythoncompat::intType();
    if (!PyArg_ParseTuple(args, "|O!O!", intType, &x, intType, &y)) {
        return nullptr;
    }
    if (x && y) {
        self.host->hover(true, pythoncompat::narrowInt(x), pythoncompat::narrowInt(y));
    } else {
        self.host->hover(false, 0, 0);
    }
    return returnNone();
}

PyObject* isDirty(Record& self) {
    return returnBool(self.host->isDirty);
}

PyObject* setDirty(Record& self, PyObject* args) {
    int dirty = 0;
    if (!PyArg_ParseTuple(args, "i", &dirty)) {
        return nullptr;
    }
    self.host->isDirty = dirty != 0;
    return returnNone();
}

PyObject* getActiveCamera(Record& self, PyObject* /*ignored*/) {
    return cameraOrNone(self.host->getActiveCamera());
}

PyObject* setActiveCamera(Record& self, PyObject* args) {
    PyObject* object = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &object)) {
        return nullptr;
    }
    const PyViewportCameraObject& camera = cameraArgument(object);
    if (!camera.checkAlive()) {
        return nullptr;
    }
    self.host->setActiveCamera(camera.host);
    return returnNone();
}

PyObject* addCamera(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    if (!parseArguments(args, "ss", pluginName, name)) {
        return nullptr;
    }
    return cameraOrNone(self.host->addCamera(pluginName.get(), name.get()));
}

PyObject* getCameraByName(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    return cameraOrNone(name ? self.host->getCameraByName(name.get()) : nullptr);
}

PyObject* getCameraByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    return cameraOrNone(index < 0 ? nullptr
                                  : self.host->getCameraByIndex(static_cast<std::uint32_t>(index)));
}

// The host ignores the removal of the active camera; here it is an error. An unknown camera is
// null, as the active one is while there is none, and counts as the active one then.
bool refuseActiveCamera(Record& self, const VlViewportCameraHostStruct* camera) {
    if (camera != self.host->getActiveCamera()) {
        return false;
    }
    PyErr_SetString(PyExc_ValueError, "Cannot remove the active camera from the viewport.");
    return true;
}

PyObject* removeCamera(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    if (name) {
        if (refuseActiveCamera(self, self.host->getCameraByName(name.get()))) {
            return nullptr;
        }
        self.host->removeCameraByName(name.get());
    }
    return returnNone();
}

PyObject* removeCameraByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    if (index >= 0) {
        const auto position = static_cast<std::uint32_t>(index);
        if (refuseActiveCamera(self, self.host->getCameraByIndex(position))) {
            return nullptr;
        }
        self.host->removeCameraByIndex(position);
    }
    return returnNone();
}

PyObject* getNumberOfCameras(Record& self) {
    return newInt(static_cast<long>(self.host->getNumberOfCameras()));
}

PyObject* getCameraName(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    if (index < 0) {
        return returnNone();
    }
    return newText(self.host->getCameraName(static_cast<std::uint32_t>(index)));
}

PyObject* setViewFrozen(Record& self, PyObject* args) {
    int isFrozen = 0;
    if (!PyArg_ParseTuple(args, "i", &isFrozen)) {
        return nullptr;
    }
    self.host->setViewFrozen(isFrozen != 0);
    return returnNone();
}

PyObject* isViewFrozen(Record& self) {
    return returnBool(self.host->isViewFrozen);
}

PyObject* addLayer(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    if (!parseArguments(args, "ss", pluginName, name)) {
        return nullptr;
    }
    return layerOrNone(self.host->addLayer(pluginName.get(), name.get()));
}

// Answers on a viewport that has gone as well.
PyObject* getViewerDelegate(Record& self) {
    PyObject* delegate = self.watch.expired() ? nullptr : delegateOf(self);
    if (!delegate) {
        return returnNone();
    }
    Py_INCREF(delegate);
    return delegate;
}

PyObject* insertLayer(Record& self, PyObject* args) {
    TextArgument pluginName;
    TextArgument name;
    int index = -1;
    if (!parseArguments(args, "ssi", pluginName, name, &index)) {
        return nullptr;
    }
    return layerOrNone(
        self.host->insertLayer(pluginName.get(), name.get(), static_cast<std::uint32_t>(index)));
}

PyObject* getLayer(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    return layerOrNone(name ? self.host->getLayer(name.get()) : nullptr);
}

PyObject* getLayerByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    return layerOrNone(index < 0 ? nullptr
                                 : self.host->getLayerByIndex(static_cast<std::uint32_t>(index)));
}

PyObject* removeLayer(Record& self, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    if (name) {
        self.host->removeLayer(name.get());
    }
    return returnNone();
}

PyObject* removeLayerByIndex(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    if (index >= 0) {
        self.host->removeLayerByIndex(static_cast<std::uint32_t>(index));
    }
    return returnNone();
}

PyObject* getNumberOfLayers(Record& self) {
    return newInt(static_cast<long>(self.host->getNumberOfLayers()));
}

PyObject* getLayerName(Record& self, PyObject* args) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return nullptr;
    }
    if (index < 0) {
        return returnNone();
    }
    return newText(self.host->getLayerName(static_cast<std::uint32_t>(index)));
}

PyObject* freeze(Record& self) {
    self.host->freeze();
    return returnNone();
}

PyObject* thaw(Record& self) {
    self.host->thaw();
    return returnNone();
}

template <void (Host::*Set)(float)>
PyObject* setFloat(Record& self, PyObject* args) {
    float value = 0.0f;
    if (!PyArg_ParseTuple(args, "f", &value)) {
        return nullptr;
    }
    (self.host->*Set)(value);
    return returnNone();
}

template <float (Host::*Get)() const>
PyObject* getFloat(Record& self, PyObject* /*ignored*/) {
    return PyFloat_FromDouble(static_cast<double>((self.host->*Get)()));
}

PyObject* setPanAndZoomActive(Record& self, PyObject* args) {
    int isActive = 0;
    if (!PyArg_ParseTuple(args, "i", &isActive)) {
        return nullptr;
    }
    self.host->setPanAndZoomActive(isActive != 0);
    return returnNone();
}

PyObject* isPanAndZoomActive(Record& self, PyObject* /*ignored*/) {
    return returnBool(self.host->isPanAndZoomActive);
}

PyMethodDef methods[] = {
    method<&getName>("getName", docs::viewport::getName),
    method<&setup>("setup", docs::viewport::setup),
    method<&event>("event", docs::viewport::event),
    method<&draw>("draw", docs::viewport::draw),
    method<&resize>("resize", docs::viewport::resize),
    method<&hover>("hover", docs::viewport::hover),
    method<&isDirty>("isDirty", docs::viewport::isDirty),
    method<&setDirty>("setDirty", docs::viewport::setDirty),
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByName),
    method<&getActiveCamera>("getActiveCamera", docs::viewport::getActiveCamera),
    method<&setActiveCamera>("setActiveCamera", docs::viewport::setActiveCamera),
    method<&addCamera>("addCamera", docs::viewport::addCamera),
    method<&getCameraByName>("getCameraByName", docs::viewport::getCameraByName),
    method<&getCameraByIndex>("getCameraByIndex", docs::viewport::getCameraByIndex),
    method<&removeCamera>("removeCamera", docs::viewport::removeCamera),
    method<&removeCameraByIndex>("removeCameraByIndex", docs::viewport::removeCameraByIndex),
    method<&getNumberOfCameras>("getNumberOfCameras", docs::viewport::getNumberOfCameras),
    method<&getCameraName>("getCameraName", docs::viewport::getCameraName),
    method<&setViewFrozen>("setViewFrozen", docs::viewport::setViewFrozen),
    method<&isViewFrozen>("isViewFrozen", docs::viewport::isViewFrozen),
    method<&addLayer>("addLayer", docs::viewport::addLayer),
    pythonOnlyMethod<&getViewerDelegate>("getViewerDelegate", docs::viewport::getViewerDelegate),
    method<&insertLayer>("insertLayer", docs::viewport::insertLayer),
    method<&getLayer>("getLayer", docs::viewport::getLayer),
    method<&getLayerByIndex>("getLayerByIndex", docs::viewport::getLayerByIndex),
    method<&removeLayer>("removeLayer", docs::viewport::removeLayer),
    method<&removeLayerByIndex>("removeLayerByIndex", docs::viewport::removeLayerByIndex),
    method<&getNumberOfLayers>("getNumberOfLayers", docs::viewport::getNumberOfLayers),
    method<&getLayerName>("getLayerName", docs::viewport::getLayerName),
    method<&activateManipulator>("activateManipulator", docs::viewport::activateManipulator),
    method<&deactivateManipulator>("deactivateManipulator", docs::viewport::deactivateManipulator),
    method<&deactivateAllManipulators>("deactivateAllManipulators",
                                       docs::viewport::deactivateAllManipulators),
    method<&getNumberOfActiveManipulators>("getNumberOfActiveManipulators",
                                           docs::viewport::getNumberOfActiveManipulators),
    method<&getActiveManipulatorByIndex>("getActiveManipulatorByIndex",
                                         docs::viewport::getActiveManipulatorByIndex),
    method<&getActiveManipulatorTags>("getActiveManipulatorTags",
                                      docs::viewport::getActiveManipulatorTags),
    method<&getActiveManipulatorPluginName>("getActiveManipulatorPluginName",
                                            docs::viewport::getActiveManipulatorPluginName),
    method<&freeze>("freeze", docs::viewport::freeze),
    method<&thaw>("thaw", docs::viewport::thaw),
    method<&setFloat<&Host::setHorizontalOffset>>("setHorizontalOffset",
                                                  docs::viewport::setHorizontalOffset),
    method<&getFloat<&Host::getHorizontalOffset>>("getHorizontalOffset",
                                                  docs::viewport::getHorizontalOffset),
    method<&setFloat<&Host::setVerticalOffset>>("setVerticalOffset",
                                                docs::viewport::setVerticalOffset),
    method<&getFloat<&Host::getVerticalOffset>>("getVerticalOffset",
                                                docs::viewport::getVerticalOffset),
    method<&setFloat<&Host::setZoom>>("setZoom", docs::viewport::setZoom),
    method<&getFloat<&Host::getZoom>>("getZoom", docs::viewport::getZoom),
    method<&setPanAndZoomActive>("setPanAndZoomActive", docs::viewport::setPanAndZoomActive),
    method<&isPanAndZoomActive>("isPanAndZoomActive", docs::viewport::isPanAndZoomActive),
    {nullptr, nullptr, 0, nullptr},
};

void deallocate(PyObject* object) {
    auto* self = reinterpret_cast<Record*>(object);
    Py_CLEAR(self->delegateRef);
    deleteWrapper(self);
}

constexpr char kHowToGetOne[] =
    "Please use the ViewerDelegate.addViewport() function to instantiate a "
    "Viewport.";

PyTypeObject type = wrapperType<Record>("ViewerAPI_cmodule.Viewport", "Viewport plugin", methods,
                                        deallocate, refuseConstruction<kHowToGetOne>);

} // namespace

PyObject* wrapViewport(VlViewportHostStruct* host, PyObject* delegateWrapper) {
    auto* viewport = newWrapper<Record>(type, host);
    if (!viewport) {
        return nullptr;
    }
    viewport->delegateRef = PyWeakref_NewRef(delegateWrapper, nullptr);
    PyReference result(reinterpret_cast<PyObject*>(viewport));
    return viewport->delegateRef ? result.release() : nullptr;
}

PyObject* createViewport(const std::string& pluginName, const std::string& name,
                         VlViewerDelegateHostStruct* delegate, PyObject* delegateWrapper) {
    std::unique_ptr<VlViewportHostStruct, RetireHostObject> host(
        new VlViewportHostStruct(pluginName, name, delegate));
    PyReference wrapper(wrapViewport(host.get(), delegateWrapper));
    if (wrapper) {
        delegate->addViewport(host.release(), name);
    }
    return wrapper.release();
}

const PyViewportObject& viewportArgument(PyObject* object) {
    assert(Py_TYPE(object) == &type && "ViewerDelegate.setLookThroughLocation(): not a Viewport");
    return *reinterpret_cast<PyViewportObject*>(object);
}

void registerViewportType(PyObject* module) {
    registerType(module, type, "Viewport");
}

} // namespace ViewerAPI
