#pragma once

#include "pyviewerdelegateobject.h"

namespace ViewerAPI {

// The methods of `ViewerDelegate` that keep its dict of callbacks. They touch Python objects only.
// Nothing checks that a callback is callable: what is not fails when its channel is fired.

PyObject* registerCallback(PyViewerDelegateObject& self, PyObject* args);
PyObject* unregisterCallback(PyViewerDelegateObject& self, PyObject* args);
PyObject* unregisterAllCallbacks(PyViewerDelegateObject& self, PyObject* args);
PyObject* setSelectionCallbacks(PyViewerDelegateObject& self, PyObject* args);
PyObject* setActiveManipulatorsChangedCallback(PyViewerDelegateObject& self, PyObject* args);

} // namespace ViewerAPI
