#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"
#include "samplearguments.h"

#include <cmath>
#include <limits>
#include <string_view>

using namespace VlAttribute;

namespace {

/// What tells the numeric kinds apart; `Kind` is the attribute class.
template <typename Kind>
struct Numeric;
template <>
struct Numeric<IntAttribute> {
    using Value = std::int32_t;
    static constexpr const char* kName = "IntAttribute";
    static constexpr const char* kFormat = "i";
};
template <>
struct Numeric<FloatAttribute> {
    using Value = float;
    static constexpr const char* kName = "FloatAttribute";
    static constexpr const char* kFormat = "f";
};
template <>
struct Numeric<DoubleAttribute> {
    using Value = double;
    static constexpr const char* kName = "DoubleAttribute";
    static constexpr const char* kFormat = "d";
};

bool isNumber(PyObject* object) {
    return PyNumber_Check(object) != 0 && PySequence_Check(object) == 0;
}

bool refuseValue(const char* typeName, const char* expected, PyObject* object) {
    PyErr_Format(PyExc_TypeError, "%s: values must be %s, not %.100s", typeName, expected,
                 Py_TYPE(object)->tp_name);
    return false;
}

bool convertInt(PyObject* object, std::int32_t& result) {
    if (!PyIndex_Check(object)) {
        return refuseValue("IntAttribute", "integers", object);
    }
    const Py_ssize_t value = PyNumber_AsSsize_t(object, PyExc_OverflowError);
    if (value == -1 && PyErr_Occurred()) {
        if (!PyErr_ExceptionMatches(PyExc_OverflowError)) {
            return false;
        }
    } else if (value >= std::numeric_limits<std::int32_t>::min() &&
               value <= std::numeric_limits<std::int32_t>::max()) {
        result = static_cast<std::int32_t>(value);
        return true;
    }
    PyErr_SetString(PyExc_OverflowError, "IntAttribute: a value does not fit 32 signed bits");
    return false;
}

bool convertDouble(PyObject* object, double& result) {
    if (PyFloat_CheckExact(object)) {
        result = PyFloat_AS_DOUBLE(object);
        return true;
    }
    result = PyFloat_AsDouble(object);
    if (result == -1.0 && PyErr_Occurred()) {
        return PyErr_ExceptionMatches(PyExc_TypeError)
                   ? refuseValue("DoubleAttribute", "numbers", object)
                   : false;
    }
    return true;
}

bool convertFloat(PyObject* object, float& result) {
    double value = 0;
    if (!convertDouble(object, value)) {
        return PyErr_ExceptionMatches(PyExc_TypeError)
                   ? refuseValue("FloatAttribute", "numbers", object)
                   : false;
    }
    result = static_cast<float>(value);
    if (std::isinf(result) && !std::isinf(value)) {
        PyErr_SetString(PyExc_OverflowError,
                        "FloatAttribute: a value does not fit single precision");
        return false;
    }
    return true;
}

/// Copies a contiguous buffer of exactly the stored type, of any shape. False, without an error,
/// for anything else: it is then read item by item.
template <typename Kind>
bool fromBuffer(PyObject* object, std::vector<typename Numeric<Kind>::Value>& values) {
    Py_buffer view;
    if (!PyObject_CheckBuffer(object)) {
        return false;
    }
    if (PyObject_GetBuffer(object, &view, PyBUF_C_CONTIGUOUS | PyBUF_FORMAT) != 0) {
        PyErr_Clear();
        return false;
    }
    std::string_view format = view.format ? view.format : "B";
    if (format.starts_with('@') || format.starts_with('=') || format.starts_with('<')) {
        format.remove_prefix(1);
    }
    using Value = typename Numeric<Kind>::Value;
    const bool isSame =
        format == Numeric<Kind>::kFormat && view.itemsize == static_cast<Py_ssize_t>(sizeof(Value));
    if (isSame) {
        const auto* first = static_cast<const Value*>(view.buf);
        values.assign(first, first + view.len / view.itemsize);
    }
    PyBuffer_Release(&view);
    return isSame;
}

template <typename Kind>
PyObject* create(PyTypeObject* type, PyObject* args, PyObject* keywords,
                 bool (*convert)(PyObject*, typename Numeric<Kind>::Value&)) {
    return guarded([&]() -> PyObject* {
        using Value = typename Numeric<Kind>::Value;
        const ValueReader<Value> reader{Numeric<Kind>::kName, "a number", isNumber, convert,
                                        fromBuffer<Kind>};
        SampleArguments<Value> arguments;
        long long tupleSize = 1;
        if (!parseConstructor(args, keywords, reader, arguments, tupleSize)) {
            return nullptr;
        }
        return newAttributeObject(
            type, arguments.hasTimes
                      ? Kind(std::span<const float>(arguments.times), arguments.samples, tupleSize)
                      : Kind(std::span<const Value>(arguments.samples.front()), tupleSize));
    });
}

PyObject* createInt(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    return create<IntAttribute>(type, args, keywords, convertInt);
}
PyObject* createFloat(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    return create<FloatAttribute>(type, args, keywords, convertFloat);
}
PyObject* createDouble(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    return create<DoubleAttribute>(type, args, keywords, convertDouble);
}

template <typename Kind>
int getBuffer(PyObject* self, Py_buffer* view, int flags) {
    const auto values = Kind(attributeOf(self)).getNearestSample(0.0F);
    if (PyBuffer_FillInfo(view, self, const_cast<void*>(static_cast<const void*>(values.data())),
                          static_cast<Py_ssize_t>(values.size_bytes()), 1, flags) != 0) {
        return -1;
    }
    view->itemsize = sizeof(typename Numeric<Kind>::Value);
    if ((flags & PyBUF_FORMAT) == PyBUF_FORMAT) {
        view->format = const_cast<char*>(Numeric<Kind>::kFormat);
    }
    // The one dimension counts items; what FillInfo wrote counts bytes. The exporter is the
    // value's only owner that the view keeps alive, so the shape lives in the view itself.
    if ((flags & PyBUF_ND) == PyBUF_ND) {
        view->internal = reinterpret_cast<void*>(values.size());
        view->shape = reinterpret_cast<Py_ssize_t*>(&view->internal);
    }
    return 0;
}

template <typename Kind>
bool addNumericType(PyObject* module, PyTypeObject& type, newfunc construct,
                    const char* documentation) {
    static PyBufferProcs procs = pythoncompat::bufferProcs(getBuffer<Kind>, nullptr);
    type.tp_base = &dataAttributeType;
    type.tp_flags = pythoncompat::kBufferTypeFlags;
    type.tp_as_buffer = &procs;
    type.tp_new = construct;
    type.tp_doc = documentation;
    return addType(module, type, Numeric<Kind>::kName);
}

const char intDocumentation[] =
    "IntAttribute(value, tupleSize=1)\n\n"
    "Integers of 32 signed bits. The value is one integer, a sequence of them, or a dict\n"
    "from times in frames to either, one entry a time sample:\n\n"
    "    IntAttribute(3)\n"
    "    IntAttribute([0, 1, 2, 0, 2, 3], tupleSize=3)\n"
    "    IntAttribute({0: [1, 2], 1.5: [3, 4]})\n\n"
    "Raises TypeError for values that are no integers, OverflowError for those that don't\n"
    "fit, and ValueError when samples differ in length, a time is not finite, or the tuple\n"
    "size does not divide the number of values.";
const char floatDocumentation[] =
    "FloatAttribute(value, tupleSize=1)\n\n"
    "Numbers of single precision. The value is one number, a sequence or a buffer of them,\n"
    "or a dict from times in frames to either, one entry a time sample:\n\n"
    "    FloatAttribute([0, 0, 0, 1, 0, 0], tupleSize=3)\n\n"
    "Raises TypeError for values that are no numbers, OverflowError for those beyond single\n"
    "precision, and ValueError when samples differ in length, a time is not finite, or the\n"
    "tuple size does not divide the number of values.";
const char doubleDocumentation[] =
    "DoubleAttribute(value, tupleSize=1)\n\n"
    "Numbers of double precision. The value is one number, a sequence or a buffer of them,\n"
    "or a dict from times in frames to either, one entry a time sample:\n\n"
    "    DoubleAttribute([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1], tupleSize=4)\n\n"
    "Raises TypeError for values that are no numbers, and ValueError when samples differ in\n"
    "length, a time is not finite, or the tuple size does not divide the number of values.";

} // namespace

PyTypeObject intAttributeType =
    pythoncompat::makeType("PyVlAttribute.IntAttribute", sizeof(AttributeObject));
PyTypeObject floatAttributeType =
    pythoncompat::makeType("PyVlAttribute.FloatAttribute", sizeof(AttributeObject));
PyTypeObject doubleAttributeType =
    pythoncompat::makeType("PyVlAttribute.DoubleAttribute", sizeof(AttributeObject));

bool addNumericAttributeTypes(PyObject* module) {
    return addNumericType<IntAttribute>(module, intAttributeType, createInt, intDocumentation) &&
           addNumericType<FloatAttribute>(module, floatAttributeType, createFloat,
                                          floatDocumentation) &&
           addNumericType<DoubleAttribute>(module, doubleAttributeType, createDouble,
                                           doubleDocumentation);
}
