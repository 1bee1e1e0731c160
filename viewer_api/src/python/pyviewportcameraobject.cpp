#include "pyviewportcameraobject.h"

#include "attributearguments.h"
#include "cameradocs.h"
#include "optiondocs.h"
#include "textargument.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"

#include "viewer_api/ViewportCameraPluginSuite.h"

#include <cassert>

namespace ViewerAPI {

using pythoncompat::parseArguments;
using pythoncompat::returnBool;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using VlAttribute::Attribute;

bool PyViewportCameraObject::checkAlive() const {
    return checkWatch(watch, "camera");
}

PyReference PyViewportCameraObject::holdDelegate() const {
    // A camera whose viewport has ended has no delegate either.
    return holdWrapperOf(host->viewport ? host->viewport->viewerDelegate : nullptr);
}

PluginOptions PyViewportCameraObject::pluginOptions() const {
    return {host->pluginHandle, host->pluginSuite->setOption, host->pluginSuite->getOption};
}

namespace {

using Record = PyViewportCameraObject;
using Host = VlViewportCameraHostStruct;

// Matrices cross as one flat sequence of 16 numbers, row after row. The parentheses make a setter
// take that one sequence; a result of several values is a tuple by itself.
constexpr char kMatrixFormat[] = "(dddddddddddddddd)";

PyObject* newMatrix(const double* m) {
    return Py_BuildValue(kMatrixFormat, m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9],
                         m[10], m[11], m[12], m[13], m[14], m[15]);
}

bool parseMatrix(PyObject* args, double* m) {
    return PyArg_ParseTuple(args, kMatrixFormat, m, m + 1, m + 2, m + 3, m + 4, m + 5, m + 6, m + 7,
                            m + 8, m + 9, m + 10, m + 11, m + 12, m + 13, m + 14, m + 15) != 0;
}

template <double (Host::*Get)() const>
PyObject* getDouble(Record& self) {
    return PyFloat_FromDouble((self.host->*Get)());
}

template <void (Host::*Set)(double)>
PyObject* setDouble(Record& self, PyObject* args) {
    double value = 0.0;
    if (!PyArg_ParseTuple(args, "d", &value)) {
        return nullptr;
    }
    (self.host->*Set)(value);
    return returnNone();
}

template <Imath::V3d (Host::*Get)() const>
PyObject* getVector(Record& self) {
    const Imath::V3d vector = (self.host->*Get)();
    return Py_BuildValue("ddd", vector.x, vector.y, vector.z);
}

PyObject* setup(Record& self, PyObject* args) {
    PyObject* data = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &data)) {
        return nullptr;
    }
    // What is no attribute reaches the plug-in as a null handle.
    self.host->pluginSuite->setup(self.host->pluginHandle, attributeOf(data).getRetainedHandle());
    return returnNone();
}

PyObject* asAttribute(Record& self) {
    return newPyAttribute(
        Attribute::CreateAndSteal(self.host->pluginSuite->asAttribute(self.host->pluginHandle)));
}

PyObject* getCameraTypeID(Record& self) {
    return Py_BuildValue("i", self.host->pluginSuite->getCameraTypeID(self.host->pluginHandle));
}

PyObject* setViewportDimensions(Record& self, PyObject* args) {
    int width = 0;
    int height = 0;
    if (!PyArg_ParseTuple(args, "ii", &width, &height)) {
        return nullptr;
    }
    self.host->pluginSuite->setViewportDimensions(self.host->pluginHandle, width, height);
    return returnNone();
}

PyObject* getViewMatrix(Record& self) {
    return newMatrix(self.host->getViewMatrix());
}

PyObject* setViewMatrix(Record& self, PyObject* args) {
    double matrix[16];
    if (!parseMatrix(args, matrix)) {
        return nullptr;
    }
    self.host->setViewMatrix(matrix);
    return returnNone();
}

PyObject* getProjectionMatrix(Record& self) {
    return newMatrix(self.host->getProjectionMatrix());
}

PyObject* setProjectionMatrix(Record& self, PyObject* args) {
    double matrix[16];
    if (!parseMatrix(args, matrix)) {
        return nullptr;
    }
    self.host->setProjectionMatrix(matrix);
    return returnNone();
}

PyObject* getNearFar(Record& self) {
    double nearPlane = 0.0;
    double farPlane = 0.0;
    self.host->getNearFar(nearPlane, farPlane);
    return Py_BuildValue("dd", nearPlane, farPlane);
}

PyObject* setNearFar(Record& self, PyObject* args) {
    double nearPlane = 0.0;
    double farPlane = 0.0;
    if (!PyArg_ParseTuple(args, "dd", &nearPlane, &farPlane)) {
        return nullptr;
    }
    self.host->setNearFar(nearPlane, farPlane);
    return returnNone();
}

PyObject* getScreenWindow(Record& self) {
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    self.host->getScreenWindow(left, right, bottom, top);
    return Py_BuildValue("dddd", left, right, bottom, top);
}

PyObject* setScreenWindow(Record& self, PyObject* args) {
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    if (!PyArg_ParseTuple(args, "dddd", &left, &right, &bottom, &top)) {
        return nullptr;
    }
    self.host->setScreenWindow(left, right, bottom, top);
    return returnNone();
}

PyObject* isInteractionDisabled(Record& self) {
    return returnBool(self.host->isInteractionDisabled);
}

PyObject* disableInteraction(Record& self, PyObject* args) {
    int isDisabled = 0;
    if (!PyArg_ParseTuple(args, "i", &isDisabled)) {
        return nullptr;
    }
    self.host->disableInteraction(isDisabled != 0);
    return returnNone();
}

PyObject* hasLocationPath(Record& self) {
    return returnBool(self.host->hasLocationPath());
}

PyObject* getLocationPath(Record& self) {
    const char* path = self.host->getLocationPath();
    return path ? pythoncompat::newText(path) : returnNone();
}

PyObject* setLocationPath(Record& self, PyObject* args) {
    TextArgument path;
    if (!parseArguments(args, "s", path)) {
        return nullptr;
    }
    if (path) {
        self.host->setLocationPath(path.get());
    }
    return returnNone();
}

PyObject* setDirty(Record& self, PyObject* args) {
    int dirtyBits = 0;
    if (!PyArg_ParseTuple(args, "i", &dirtyBits)) {
        return nullptr;
    }
    self.host->setDirty(dirtyBits);
    return returnNone();
}

PyMethodDef methods[] = {
    method<&setup>("setup", docs::camera::setup),
    method<&asAttribute>("asAttribute", docs::camera::asAttribute),
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByName),
    method<&getCameraTypeID>("getCameraTypeID", docs::camera::getCameraTypeID),
    method<&setViewportDimensions>("setViewportDimensions", docs::camera::setViewportDimensions),
    method<&getViewMatrix>("getViewMatrix", docs::camera::getViewMatrix),
    method<&setViewMatrix>("setViewMatrix", docs::camera::setViewMatrix),
    method<&getProjectionMatrix>("getProjectionMatrix", docs::camera::getProjectionMatrix),
    method<&setProjectionMatrix>("setProjectionMatrix", docs::camera::setProjectionMatrix),
    method<&getDouble<&Host::getCenterOfInterest>>("getCenterOfInterest",
                                                   docs::camera::getCenterOfInterest),
    method<&setDouble<&Host::setCenterOfInterest>>("setCenterOfInterest",
                                                   docs::camera::setCenterOfInterest),
    method<&getDouble<&Host::getFOV>>("getFOV", docs::camera::getFOV),
    method<&setDouble<&Host::setFOV>>("setFOV", docs::camera::setFOV),
    method<&getDouble<&Host::getOrthographicWidth>>("getOrthographicWidth",
                                                    docs::camera::getOrthographicWidth),
    method<&setDouble<&Host::setOrthographicWidth>>("setOrthographicWidth",
                                                    docs::camera::setOrthographicWidth),
    method<&getNearFar>("getNearFar", docs::camera::getNearFar),
    method<&setNearFar>("setNearFar", docs::camera::setNearFar),
    method<&getScreenWindow>("getScreenWindow", docs::camera::getScreenWindow),
    method<&setScreenWindow>("setScreenWindow", docs::camera::setScreenWindow),
    method<&isInteractionDisabled>("isInteractionDisabled", docs::camera::isInteractionDisabled),
    method<&disableInteraction>("disableInteraction", docs::camera::disableInteraction),
    method<&hasLocationPath>("hasLocationPath", docs::camera::hasLocationPath),
    method<&getLocationPath>("getLocationPath", docs::camera::getLocationPath),
    method<&setLocationPath>("setLocationPath", docs::camera::setLocationPath),
    method<&getVector<&Host::getOrigin>>("getOrigin", docs::camera::getOrigin),
    method<&getVector<&Host::getDirection>>("getDirection", docs::camera::getDirection),
    method<&getVector<&Host::getUp>>("getUp", docs::camera::getUp),
    method<&getVector<&Host::getLeft>>("getLeft", docs::camera::getLeft),
    method<&setDirty>("setDirty", docs::camera::setDirty),
    {nullptr, nullptr, 0, nullptr},
};

constexpr char kHowToGetOne[] =
    "Please use the Viewport.addCamera() or Viewport.insertCamera() function to "
    "instantiate a ViewportCamera.";

PyTypeObject type =
    wrapperType<Record>("ViewerAPI_cmodule.ViewportCamera", "ViewportCamera plugin", methods,
                        deallocateWrapper<Record>, refuseConstruction<kHowToGetOne>);

struct Constant {
    const char* name;
    long value;
};

constexpr Constant kConstants[] = {
    {"kVlViewportCameraTypeUnknown", kVlViewportCameraTypeUnknown},
    {"kVlViewportCameraTypePerspective", kVlViewportCameraTypePerspective},
    {"kVlViewportCameraTypeOrthographic", kVlViewportCameraTypeOrthographic},
    {"kVlViewportCameraTypeSpherical", kVlViewportCameraTypeSpherical},
    {"CameraDirtyBits_Clean", CameraDirtyBits_Clean},
    {"CameraDirtyBits_DirtyParams", CameraDirtyBits_DirtyParams},
    {"CameraDirtyBits_AllDirty", CameraDirtyBits_AllDirty},
};

} // namespace

PyObject* wrapCamera(VlViewportCameraHostStruct* host) {
    return reinterpret_cast<PyObject*>(newWrapper<Record>(type, host));
}

const PyViewportCameraObject& cameraArgument(PyObject* object) {
    assert(Py_TYPE(object) == &type && "Viewport.setActiveCamera(): not a ViewportCamera");
    return *reinterpret_cast<PyViewportCameraObject*>(object);
}

void registerViewportCameraType(PyObject* module) {
    registerType(module, type, "ViewportCamera");
    for (const Constant& constant : kConstants) {
        PyModule_AddIntConstant(module, constant.name, constant.value);
    }
}

} // namespace ViewerAPI
