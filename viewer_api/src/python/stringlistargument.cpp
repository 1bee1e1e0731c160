#include "stringlistargument.h"

namespace ViewerAPI {

bool StringListArgument::parse(PyObject* args, const char* errorText) {
    PyObject* list = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O!", &PyList_Type, &list)) {
        PyErr_SetString(PyExc_TypeError, errorText);
        return false;
    }
    return store(list, errorText);
}

bool StringListArgument::store(PyObject* list, const char* errorText) {
    items = PyReference(PyList_AsTuple(list));
    if (!items) {
        return false;
    }
    const Py_ssize_t size = PyTuple_GET_SIZE(items.get());
    texts.resize(static_cast<std::size_t>(size));
    pointers.resize(static_cast<std::size_t>(size));
    for (Py_ssize_t i = 0; i < size; ++i) {
        auto& text = texts[static_cast<std::size_t>(i)];
        PyObject* item = PyTuple_GET_ITEM(items.get(), i); // borrowed
        if (!pythoncompat::isText(item) || !text.store(item)) {
            PyErr_SetString(PyExc_TypeError, errorText);
            return false;
        }
        pointers[static_cast<std::size_t>(i)] = text.get();
    }
    return true;
}

} // namespace ViewerAPI
