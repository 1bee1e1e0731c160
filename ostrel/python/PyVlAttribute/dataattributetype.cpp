#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

using namespace VlAttribute;

namespace {

/// A text longer than this many values says how many more there are.
constexpr std::int64_t kShownValues = 32;

DataAttribute dataOf(PyObject* self) {
    return DataAttribute(attributeOf(self));
}

/// One value as a Python object; the places must be in range.
PyObject* valueAt(const Attribute& attribute, std::int64_t sample, std::int64_t index) {
    const auto place = static_cast<std::size_t>(index);
    switch (attribute.getType()) {
    case AttributeType::Int:
        return pythoncompat::newInt(IntAttribute(attribute).getSample(sample)[place]);
    case AttributeType::Float:
        return PyFloat_FromDouble(
            static_cast<double>(FloatAttribute(attribute).getSample(sample)[place]));
    case AttributeType::Double:
        return PyFloat_FromDouble(DoubleAttribute(attribute).getSample(sample)[place]);
    default:
        return pythoncompat::newText(StringAttribute(attribute).getSample(sample)[place]);
    }
}

PyObject* sampleTuple(const DataAttribute& attribute, std::int64_t sample) {
    const std::int64_t count = attribute.getNumberOfValues();
    Reference tuple(PyTuple_New(static_cast<Py_ssize_t>(count)));
    for (std::int64_t i = 0; tuple && i < count; ++i) {
        PyObject* value = valueAt(attribute, sample, i);
        if (!value) {
            return nullptr;
        }
        PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), value);
    }
    return tuple.release();
}

PyObject* getValue(PyObject* self, PyObject* args) {
    PyObject* defaultValue = Py_None;
    if (!PyArg_ParseTuple(args, "|O:getValue", &defaultValue)) {
        return nullptr;
    }
    const DataAttribute attribute = dataOf(self);
    if (attribute.getNumberOfValues() == 0) {
        Py_INCREF(defaultValue);
        return defaultValue;
    }
    return valueAt(attribute, attribute.getNearestSampleIndex(0.0F), 0);
}

PyObject* getNearestSample(PyObject* self, PyObject* args) {
    float time = 0.0F;
    if (!PyArg_ParseTuple(args, "f:getNearestSample", &time)) {
        return nullptr;
    }
    const DataAttribute attribute = dataOf(self);
    return sampleTuple(attribute, attribute.getNearestSampleIndex(time));
}

PyObject* getNumberOfValues(PyObject* self, PyObject*) {
    return pythoncompat::newInt(dataOf(self).getNumberOfValues());
}

PyObject* getTupleSize(PyObject* self, PyObject*) {
    return pythoncompat::newInt(dataOf(self).getTupleSize());
}

PyObject* getNumberOfTimeSamples(PyObject* self, PyObject*) {
    return pythoncompat::newInt(dataOf(self).getNumberOfTimeSamples());
}

PyObject* getSampleTime(PyObject* self, PyObject* args) {
    Py_ssize_t index = 0;
    if (!PyArg_ParseTuple(args, "n:getSampleTime", &index)) {
        return nullptr;
    }
    const DataAttribute attribute = dataOf(self);
    if (index < 0 || index >= attribute.getNumberOfTimeSamples()) {
        PyErr_Format(PyExc_IndexError, "getSampleTime: sample %zd of %zd", index,
                     static_cast<Py_ssize_t>(attribute.getNumberOfTimeSamples()));
        return nullptr;
    }
    return PyFloat_FromDouble(static_cast<double>(attribute.getSampleTime(index)));
}

Py_ssize_t length(PyObject* self) {
    return static_cast<Py_ssize_t>(dataOf(self).getNumberOfValues());
}

PyObject* item(PyObject* self, Py_ssize_t index) {
    const DataAttribute attribute = dataOf(self);
    if (index < 0 || index >= attribute.getNumberOfValues()) {
        PyErr_SetString(PyExc_IndexError, "attribute index out of range");
        return nullptr;
    }
    return valueAt(attribute, attribute.getNearestSampleIndex(0.0F), index);
}

/// The shortest decimal that reads back as the same number of this precision, as a Python literal.
template <typename T>
std::string numberText(T number) {
    if (std::isnan(number)) {
        return "float('nan')";
    }
    if (std::isinf(number)) {
        return number > 0 ? "float('inf')" : "float('-inf')";
    }
    std::array<char, 64> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    std::string text(digits.data(), result.ptr);
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text;
}

bool appendValueText(const DataAttribute& attribute, std::int64_t sample, std::int64_t index,
                     std::string& text) {
    const auto place = static_cast<std::size_t>(index);
    if (attribute.getType() == AttributeType::Float) {
        text += numberText(FloatAttribute(attribute).getSample(sample)[place]);
        return true;
    }
    if (attribute.getType() == AttributeType::Double) {
        text += numberText(DoubleAttribute(attribute).getSample(sample)[place]);
        return true;
    }
    const Reference value(valueAt(attribute, sample, index));
    const Reference repr(value ? PyObject_Repr(value.get()) : nullptr);
    std::string bytes;
    if (!repr || !pythoncompat::textAsString(repr.get(), bytes)) {
        return false;
    }
    text += bytes;
    return true;
}

bool appendSampleText(const DataAttribute& attribute, std::int64_t sample, std::string& text) {
    const std::int64_t count = attribute.getNumberOfValues();
    text += '[';
    for (std::int64_t i = 0; i < count && i < kShownValues; ++i) {
        text += i == 0 ? "" : ", ";
        if (!appendValueText(attribute, sample, i, text)) {
            return false;
        }
    }
    if (count > kShownValues) {
        text += ", ... " + std::to_string(count - kShownValues) + " more";
    }
    text += ']';
    return true;
}

PyObject* repr(PyObject* self) {
    return guarded([&]() -> PyObject* {
        const DataAttribute attribute = dataOf(self);
        const std::int64_t sampleCount = attribute.getNumberOfTimeSamples();
        std::string text = std::string(std::strrchr(Py_TYPE(self)->tp_name, '.') + 1) + "(";
        if (sampleCount > 1 || attribute.getSampleTime(0) != 0.0F) {
            text += '{';
            for (std::int64_t i = 0; i < sampleCount && i < kShownValues; ++i) {
                text += (i == 0 ? "" : ", ") + numberText(attribute.getSampleTime(i)) + ": ";
                if (!appendSampleText(attribute, i, text)) {
                    return nullptr;
                }
            }
            if (sampleCount > kShownValues) {
                text += ", ... " + std::to_string(sampleCount - kShownValues) + " more";
            }
            text += '}';
        } else if (attribute.getNumberOfValues() == 1) {
            if (!appendValueText(attribute, 0, 0, text)) {
                return nullptr;
            }
        } else if (!appendSampleText(attribute, 0, text)) {
            return nullptr;
        }
        if (attribute.getTupleSize() != 1) {
            text += ", " + std::to_string(attribute.getTupleSize());
        }
        return pythoncompat::newText(text + ")");
    });
}

PyMethodDef methods[] = {
    {"getValue", getValue, METH_VARARGS,
     "getValue(default=None)\n\n"
     "The first value of the sample nearest to time 0, or the default if there is none."},
    {"getNearestSample", getNearestSample, METH_VARARGS,
     "getNearestSample(time) -> tuple\n\n"
     "The values of the sample with the smallest distance to a time in frames; on a tie\n"
     "those of the earlier sample."},
    {"getNumberOfValues", getNumberOfValues, METH_NOARGS,
     "getNumberOfValues() -> int\n\nValues (not tuples) in each time sample."},
    {"getTupleSize", getTupleSize, METH_NOARGS,
     "getTupleSize() -> int\n\nHow many values belong together: 3 for points."},
    {"getNumberOfTimeSamples", getNumberOfTimeSamples, METH_NOARGS,
     "getNumberOfTimeSamples() -> int\n\nAt least 1."},
    {"getSampleTime", getSampleTime, METH_VARARGS,
     "getSampleTime(index) -> float\n\n"
     "The time of a sample, in frames; samples are in order of time. Raises IndexError."},
    {}};

const char documentation[] =
    "The base of attributes that hold values: numbers or strings, in one or more time\n"
    "samples of equal length.\n\n"
    "As a sequence (len, indexing, iteration) and as a buffer, an attribute is its sample\n"
    "nearest to time 0.";

} // namespace

PyTypeObject dataAttributeType =
    pythoncompat::makeType("PyVlAttribute.DataAttribute", sizeof(AttributeObject));

bool addDataAttributeType(PyObject* module) {
    static PySequenceMethods sequenceMethods = {};
    sequenceMethods.sq_length = length;
    sequenceMethods.sq_item = item;
    dataAttributeType.tp_base = &attributeType;
    dataAttributeType.tp_repr = repr;
    dataAttributeType.tp_as_sequence = &sequenceMethods;
    dataAttributeType.tp_methods = methods;
    dataAttributeType.tp_doc = documentation;
    return addType(module, dataAttributeType, "DataAttribute");
}
