#pragma once

#include "boundary.h"
#include "pythoncompat.h"

#include <string>
#include <vector>

/// How one kind of attribute reads its values. `Value` is what it stores.
template <typename Value>
struct ValueReader {
    const char* typeName;  ///< "IntAttribute"
    const char* valueWord; ///< "a number"
    /// True for an object that is one value, not a sequence of them.
    bool (*isValue)(PyObject* object);
    /// False with an error set when the object is no such value.
    bool (*convert)(PyObject* object, Value& result);
    /// Takes all values of a buffer of the right type at once; null where there is no such road.
    bool (*fromBuffer)(PyObject* object, std::vector<Value>& values);
};

/// The first argument of a constructor: a value, a sequence of values, or a dict from times to
/// either.
template <typename Value>
class SampleArguments {
public:
    /// False with an error set for anything else.
    bool parse(PyObject* object, const ValueReader<Value>& reader) {
        if (!PyDict_Check(object)) {
            samples.resize(1);
            return parseSample(object, reader, samples.front());
        }
        hasTimes = true;
        // Reading a value may run Python code that changes the dict.
        const Reference items(PyDict_Items(object));
        const Py_ssize_t count = items ? PyList_GET_SIZE(items.get()) : 0;
        samples.resize(static_cast<std::size_t>(count));
        for (Py_ssize_t i = 0; i < count; ++i) {
            PyObject* item = PyList_GET_ITEM(items.get(), i); // borrowed
            const double time = PyFloat_AsDouble(PyTuple_GET_ITEM(item, 0));
            if (time == -1.0 && PyErr_Occurred()) {
                PyErr_Format(PyExc_TypeError, "%s: sample times must be numbers, not %.100s",
                             reader.typeName, Py_TYPE(PyTuple_GET_ITEM(item, 0))->tp_name);
                return false;
            }
            times.push_back(static_cast<float>(time));
            if (!parseSample(PyTuple_GET_ITEM(item, 1), reader,
                             samples[static_cast<std::size_t>(i)])) {
                return false;
            }
        }
        return static_cast<bool>(items);
    }

    std::vector<float> times; ///< for the samples, in the dict's order
    std::vector<std::vector<Value>> samples;
    bool hasTimes = false; ///< false: one sample at time 0

private:
    static bool parseSample(PyObject* object, const ValueReader<Value>& reader,
                            std::vector<Value>& values) {
        if (reader.isValue(object)) {
            values.emplace_back();
            return reader.convert(object, values.back());
        }
        if (reader.fromBuffer && reader.fromBuffer(object, values)) {
            return true;
        }
        const bool isForeign = pythoncompat::isText(object) || PyBytes_Check(object) ||
                               PyUnicode_Check(object) || PyDict_Check(object);
        const Reference fast(isForeign ? nullptr : PySequence_Fast(object, ""));
        if (!fast) {
            if (isForeign || PyErr_ExceptionMatches(PyExc_TypeError)) {
                PyErr_Format(PyExc_TypeError,
                             "%s: expected %s, a sequence of them, or a dict from times to "
                             "either, not %.100s",
                             reader.typeName, reader.valueWord, Py_TYPE(object)->tp_name);
            }
            return false;
        }
        values.reserve(static_cast<std::size_t>(PySequence_Fast_GET_SIZE(fast.get())));
        // The size is asked for anew: converting an item may run code that changes a list.
        for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(fast.get()); ++i) {
            PyObject* item = PySequence_Fast_GET_ITEM(fast.get(), i);
            Py_INCREF(item);
            const Reference held(item);
            values.emplace_back();
            if (!reader.convert(item, values.back())) {
                return false;
            }
        }
        return true;
    }
};

/// The common end of the constructors: (value, tupleSize=1).
template <typename Value>
bool parseConstructor(PyObject* args, PyObject* keywords, const ValueReader<Value>& reader,
                      SampleArguments<Value>& arguments, long long& tupleSize) {
    static const char* names[] = {"value", "tupleSize", nullptr};
    PyObject* value = nullptr;
    tupleSize = 1;
    const std::string format = std::string("O|L:") + reader.typeName;
    return PyArg_ParseTupleAndKeywords(args, keywords, format.c_str(), const_cast<char**>(names),
                                       &value, &tupleSize) != 0 &&
           arguments.parse(value, reader);
}
