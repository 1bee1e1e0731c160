#include "pyviewerdelegatecallbacks.h"

namespace ViewerAPI {

using pythoncompat::returnNone;
using pythoncompat::textType;

namespace {

bool store(PyViewerDelegateObject& self, const char* channel, PyObject* callback) {
    const PyReference name(pythoncompat::newText(channel));
    return name && PyDict_SetItem(self.callbacks, name.get(), callback) == 0;
}

} // namespace

PyObject* registerCallback(PyViewerDelegateObject& self, PyObject* args) {
    if (!self.checkAlive()) {
        return nullptr;
    }
    PyObject* name = nullptr;     // borrowed
    PyObject* callback = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O!O", textType(), &name, &callback)) {
        PyErr_SetString(PyExc_TypeError, "Arguments must be a string representing the callback "
                                         "type, and a callable object.");
        return nullptr;
    }
    PyReference previous = PyReference::retain(PyDict_GetItem(self.callbacks, name));
    if (PyDict_SetItem(self.callbacks, name, callback) != 0) {
        return nullptr;
    }
    return previous ? previous.release() : returnNone();
}

PyObject* unregisterCallback(PyViewerDelegateObject& self, PyObject* args) {
    if (!self.checkAlive()) {
        return nullptr;
    }
    PyObject* name = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O!", textType(), &name)) {
        PyErr_SetString(PyExc_TypeError,
                        "Arguments must be a string representing the callback type.");
        return nullptr;
    }
    const int isThere = PyDict_Contains(self.callbacks, name);
    if (isThere < 0 || (isThere > 0 && PyDict_DelItem(self.callbacks, name) != 0)) {
        return nullptr;
    }
    return returnNone();
}

PyObject* unregisterAllCallbacks(PyViewerDelegateObject& self, PyObject* /*ignored*/) {
    if (!self.checkAlive()) {
        return nullptr;
    }
    PyDict_Clear(self.callbacks);
    return returnNone();
}

PyObject* setSelectionCallbacks(PyViewerDelegateObject& self, PyObject* args) {
    if (!self.checkAlive()) {
        return nullptr;
    }
    PyObject* select = nullptr;      // borrowed
    PyObject* getSelected = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "OO", &select, &getSelected)) {
        PyErr_SetString(PyExc_TypeError, "Arguments must be two callable object.");
        return nullptr;
    }
    if (!store(self, "__SELECT_LOCATIONS", select) ||
        !store(self, "__GET_SELECTED_LOCATIONS", getSelected)) {
        return nullptr;
    }
    return returnNone();
}

PyObject* setActiveManipulatorsChangedCallback(PyViewerDelegateObject& self, PyObject* args) {
    if (!self.checkAlive()) {
        return nullptr;
    }
    PyObject* callback = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &callback)) {
        PyErr_SetString(PyExc_TypeError, "Argument must be a callable object.");
        return nullptr;
    }
    if (!store(self, "__ACTIVE_MANIPULATORS_CHANGED", callback)) {
        return nullptr;
    }
    return returnNone();
}

} // namespace ViewerAPI
