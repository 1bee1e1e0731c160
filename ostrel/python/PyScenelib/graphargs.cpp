#include "graphargs.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "boundary.h"

#include <limits>

bool readOpType(PyObject* object, std::string& opType) {
    if (!pythoncompat::isText(object)) {
        PyErr_Format(PyExc_TypeError, "the op type must be str, not %.100s",
                     Py_TYPE(object)->tp_name);
        return false;
    }
    return pythoncompat::textAsString(object, opType);
}

bool readPath(PyObject* object, std::string& path) {
    if (!pythoncompat::isText(object)) {
        PyErr_Format(PyExc_TypeError, "the path must be str, not %.100s", Py_TYPE(object)->tp_name);
        return false;
    }
    return pythoncompat::textAsString(object, path);
}

bool readArgs(PyObject* object, VlAttribute::GroupAttribute& args) {
    args = VlAttribute::GroupAttribute(PyVlAttribute::AttributeFromPyObject(object));
    if (!args && object != Py_None) {
        PyErr_Format(PyExc_TypeError, "the args must be a GroupAttribute or None, not %.100s",
                     Py_TYPE(object)->tp_name);
        return false;
    }
    return true;
}

bool readOpId(PyObject* object, int& opId) {
    if (!pythoncompat::isInteger(object)) {
        PyErr_Format(PyExc_TypeError, "an op id must be int, not %.100s", Py_TYPE(object)->tp_name);
        return false;
    }
    const Py_ssize_t value = PyNumber_AsSsize_t(object, nullptr); // clipped when too large
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
        PyErr_SetString(PyExc_ValueError, "there is no op with so large an id");
        return false;
    }
    opId = static_cast<int>(value);
    return true;
}

bool readOpIds(PyObject* object, std::vector<int>& opIds) {
    const Reference sequence(PySequence_Fast(object, "the inputs must be a sequence of op ids"));
    if (!sequence) {
        return false;
    }
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(sequence.get());
    opIds.resize(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i < count; ++i) {
        if (!readOpId(PySequence_Fast_GET_ITEM(sequence.get(), i),
                      opIds[static_cast<std::size_t>(i)])) {
            return false;
        }
    }
    return true;
}
