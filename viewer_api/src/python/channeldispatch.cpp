#include "channeldispatch.h"

#include "attributearguments.h"
#include "pyviewerdelegateobject.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ViewerAPI {

using VlAttribute::Attribute;

namespace {

// The text of a `str` that was made to describe an error. What can't be had, because a repr raised,
// must not hide the error itself.
std::string describe(const PyReference& description) {
    std::string text;
    if (!description || !pythoncompat::textAsString(description.get(), text)) {
        PyErr_Clear();
        return "<no description>";
    }
    return text;
}

std::string textOf(PyObject* object) {
    std::string text;
    if (!pythoncompat::textAsString(object, text)) {
        PyErr_Clear();
    }
    return text;
}

void appendTraceback(std::string& text, PyObject* traceback) {
    pythoncompat::visitTraceback(traceback, [&](const pythoncompat::TracebackEntry& entry) {
        char line[2000];
        PyOS_snprintf(line, sizeof(line), "  File \"%.500s\", line %d, in %.500s\n",
                      textOf(entry.fileName).c_str(), entry.line, textOf(entry.codeName).c_str());
        text += line;
    });
}

[[noreturn]] void throwPythonError() {
    PyObject* type = nullptr; // owned until restored, like the other two
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    std::string text = describe(PyReference(PyObject_Str(type)));
    text += '\n';
    text += describe(PyReference(PyObject_Repr(value)));
    text += '\n';
    appendTraceback(text, traceback);
    PyErr_Restore(type, value, traceback);
    throw std::runtime_error(text);
}

Attribute attributeOfResult(PyObject* result) {
    if (result == Py_None) {
        return Attribute();
    }
    Attribute attribute = attributeOf(result);
    if (attribute.isValid()) {
        return attribute;
    }
    std::int32_t integer = 0;
    if (pythoncompat::intAttributeValue(result, integer)) {
        return VlAttribute::IntAttribute(integer);
    }
    if (PyFloat_Check(result)) {
        return VlAttribute::FloatAttribute(static_cast<float>(PyFloat_AS_DOUBLE(result)));
    }
    if (pythoncompat::isText(result)) {
        std::string text;
        if (pythoncompat::textAsString(result, text)) {
            return VlAttribute::StringAttribute(text);
        }
        PyErr_Clear();
    }
    return Attribute();
}

} // namespace

Attribute dispatchToPython(void* hostedPythonObject, const char* channel, const Attribute& value) {
    auto* wrapper = static_cast<PyViewerDelegateObject*>(hostedPythonObject);
    if (!wrapper || !wrapper->callbacks) {
        return Attribute();
    }
    const pythoncompat::PendingErrorAside earlierError;
    const PyReference name(pythoncompat::newText(channel));
    if (!name) {
        throwPythonError();
    }
    // Held, as the callable may take itself out of the dict.
    const PyReference callback =
        PyReference::retain(PyDict_GetItem(wrapper->callbacks, name.get()));
    if (!callback) {
        return Attribute();
    }
    const PyReference argument(newPyAttribute(value));
    const PyReference result(
        argument ? pythoncompat::callOneArgument(callback.get(), argument.get()) : nullptr);
    if (PyErr_Occurred()) {
        throwPythonError();
    }
    return attributeOfResult(result.get());
}

} // namespace ViewerAPI
