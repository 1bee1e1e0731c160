#include "binding.h"

#include "vlviewerdelegatehost.h"

namespace ViewerAPI {

void setRuntimeError(const char* text) noexcept {
    PyErr_Clear(); // the text can't be decoded while an error is pending
    // Not PyErr_SetString, which on Python 3 refuses what is no UTF-8.
    const PyReference value(pythoncompat::newText(text));
    if (value) {
        PyErr_SetObject(PyExc_RuntimeError, value.get());
    }
}

void setDestroyedError(const char* kind) noexcept {
    PyErr_Format(PyExc_RuntimeError, "Underlying C++ %s has been destroyed", kind);
}

bool checkWatch(const HostWatch& watch, const char* kind) noexcept {
    if (watch.expired()) {
        setDestroyedError(kind);
        return false;
    }
    return true;
}

PyReference holdWrapperOf(const VlViewerDelegateHostStruct* delegate) {
    auto* wrapper = delegate ? static_cast<PyObject*>(delegate->hostedPythonObject) : nullptr;
    // The wrapper deletes the delegate when its last reference has gone, and from there a
    // delegate's end may still come by here.
    if (!wrapper || Py_REFCNT(wrapper) == 0) {
        return PyReference();
    }
    return PyReference::retain(wrapper);
}

void registerType(PyObject* module, PyTypeObject& type, const char* name) noexcept {
    if (PyType_Ready(&type) < 0) {
        PyErr_Clear();
        return;
    }
    auto* object = reinterpret_cast<PyObject*>(&type);
    Py_INCREF(object);
    if (PyModule_AddObject(module, name, object) < 0) {
        Py_DECREF(object);
        PyErr_Clear();
    }
}

} // namespace ViewerAPI
