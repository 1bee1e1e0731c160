#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"
#include "samplearguments.h"

using namespace VlAttribute;

namespace {

bool convert(PyObject* object, std::string& result) {
    if (!pythoncompat::isText(object)) {
        PyErr_Format(PyExc_TypeError, "StringAttribute: values must be str, not %.100s",
                     Py_TYPE(object)->tp_name);
        return false;
    }
    return pythoncompat::textAsString(object, result);
}

PyObject* create(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    return guarded([&]() -> PyObject* {
        const ValueReader<std::string> reader{"StringAttribute", "a str", pythoncompat::isText,
                                              convert, nullptr};
        SampleArguments<std::string> arguments;
        long long tupleSize = 1;
        if (!parseConstructor(args, keywords, reader, arguments, tupleSize)) {
            return nullptr;
        }
        return newAttributeObject(
            type, arguments.hasTimes ? StringAttribute(std::span<const float>(arguments.times),
                                                       arguments.samples, tupleSize)
                                     : StringAttribute(arguments.samples.front(), tupleSize));
    });
}

const char documentation[] =
    "StringAttribute(value, tupleSize=1)\n\n"
    "Text. The value is one str, a sequence of them (also an empty one), or a dict from\n"
    "times in frames to either, one entry a time sample. On Python 3 text is stored as UTF-8\n"
    "and bytes are refused; on Python 2 a str is stored as it is and unicode is refused.";

} // namespace

PyTypeObject stringAttributeType =
    pythoncompat::makeType("PyVlAttribute.StringAttribute", sizeof(AttributeObject));

bool addStringAttributeType(PyObject* module) {
    stringAttributeType.tp_base = &dataAttributeType;
    stringAttributeType.tp_new = create;
    stringAttributeType.tp_doc = documentation;
    return addType(module, stringAttributeType, "StringAttribute");
}
