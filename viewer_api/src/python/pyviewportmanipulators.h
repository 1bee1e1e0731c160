#pragma once

#include "pyviewportobject.h"

namespace ViewerAPI {

// The methods of `Viewport` that deal with its active manipulators.

PyObject* activateManipulator(PyViewportObject& self, PyObject* args);
PyObject* deactivateManipulator(PyViewportObject& self, PyObject* args);
PyObject* deactivateAllManipulators(PyViewportObject& self, PyObject* args);
PyObject* getNumberOfActiveManipulators(PyViewportObject& self);
PyObject* getActiveManipulatorByIndex(PyViewportObject& self, PyObject* args);
PyObject* getActiveManipulatorTags(PyViewportObject& self, PyObject* args);
PyObject* getActiveManipulatorPluginName(PyViewportObject& self, PyObject* args);

} // namespace ViewerAPI
