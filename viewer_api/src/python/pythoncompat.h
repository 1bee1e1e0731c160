#pragma once

// Every difference between Python 2.7 and Python 3 that the extension modules meet in values, calls
// and errors; pythonmodule.h has those of types and modules. No other file asks for the
// interpreter's version: what reads the same on both is written once, against these functions.
//
// On both interpreters "text" is the type that the interpreter calls `str`. On Python 2 it is a
// string of bytes, taken as it is. On Python 3 it is Unicode text that crosses as UTF-8; bytes
// that are no UTF-8 travel in it by the "surrogateescape" error handler and come back unchanged.
// The other kind of string, `unicode` on 2 and `bytes` on 3, is not text.
//
// All functions but holdsInterpreterLock() must be called with the interpreter lock held.
// [ui-thread]

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <frameobject.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace pythoncompat {

// ---- Text

/// The type that parses as text with "O!".
inline PyTypeObject* textType() noexcept {
#if PY_MAJOR_VERSION >= 3
    return &PyUnicode_Type;
#else
    return &PyString_Type;
#endif
}

/// True for a `str` or an instance of a subclass of it.
inline bool isText(PyObject* object) noexcept {
#if PY_MAJOR_VERSION >= 3
    return PyUnicode_Check(object) != 0;
#else
    return PyString_Check(object) != 0;
#endif
}

/// A new `str` of the given bytes. Null with an error set when memory runs out.
inline PyObject* newText(std::string_view text) {
#if PY_MAJOR_VERSION >= 3
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()),
                                "surrogateescape");
#else
    return PyString_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
#endif
}

/// The text of a `str`, zero-terminated and borrowed from it; `size` may be null. Null with an
/// error set for anything else, and on Python 3 for text that only bytes outside UTF-8 stand for.
inline const char* borrowedText(PyObject* object, Py_ssize_t* size = nullptr) {
    if (!isText(object)) {
        PyErr_Format(PyExc_TypeError, "expected str, not %.100s", Py_TYPE(object)->tp_name);
        return nullptr;
    }
#if PY_MAJOR_VERSION >= 3
    return PyUnicode_AsUTF8AndSize(object, size);
#else
    if (size) {
        *size = PyString_GET_SIZE(object);
    }
    return PyString_AS_STRING(object);
#endif
}

/// After a failure to borrow text: true when the bytes that it stands for can be had by
/// encodedText(); the error is cleared then. Never on Python 2.
inline bool clearUnencodableError() {
#if PY_MAJOR_VERSION >= 3
    if (PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) {
        PyErr_Clear();
        return true;
    }
#endif
    return false;
}

/// A new object of bytes with what a `str` stands for. Null with an error set when no bytes do.
inline PyObject* encodedText(PyObject* text) {
#if PY_MAJOR_VERSION >= 3
    return PyUnicode_AsEncodedString(text, "utf-8", "surrogateescape");
#else
    Py_INCREF(text);
    return text;
#endif
}

/// The bytes of a `str`, embedded zeros included. False with an error set for anything else.
inline bool textAsString(PyObject* object, std::string& result) {
    Py_ssize_t size = 0;
    if (const char* text = borrowedText(object, &size)) {
        result.assign(text, static_cast<std::size_t>(size));
        return true;
    }
    PyObject* encoded = clearUnencodableError() ? encodedText(object) : nullptr;
    if (!encoded) {
        return false;
    }
    result.assign(PyBytes_AS_STRING(encoded), static_cast<std::size_t>(PyBytes_GET_SIZE(encoded)));
    Py_DECREF(encoded);
    return true;
}

// ---- Integers

/// The type of plain integers: `int` on both. Python 2's `long` is another type.
inline PyTypeObject* intType() noexcept {
#if PY_MAJOR_VERSION >= 3
    return &PyLong_Type;
#else
    return &PyInt_Type;
#endif
}

/// A new `int`.
inline PyObject* newInt(long value) {
#if PY_MAJOR_VERSION >= 3
    return PyLong_FromLong(value);
#else
    return PyInt_FromLong(value);
#endif
}

/// True for `int` and, on Python 2, `long`, `bool` included.
inline bool isInteger(PyObject* object) noexcept {
#if PY_MAJOR_VERSION >= 3
    return PyLong_Check(object) != 0;
#else
    return PyInt_Check(object) != 0 || PyLong_Check(object) != 0;
#endif
}

/// The value of an instance of intType(), narrowed to its low 32 bits. Sets no error.
inline std::int32_t narrowInt(PyObject* object) {
#if PY_MAJOR_VERSION >= 3
    return static_cast<std::int32_t>(PyLong_AsUnsignedLongMask(object));
#else
    return static_cast<std::int32_t>(PyInt_AS_LONG(object));
#endif
}

/// True when the object is an integer that stands for an integer attribute; `value` is then what
/// the attribute holds. On Python 2 that is every `int`, narrowed to 32 bits, and no `long`; on
/// Python 3, which has but one integer type, every `int` that fits 32 signed bits. `bool` counts
/// on both. Sets no error.
inline bool intAttributeValue(PyObject* object, std::int32_t& value) {
#if PY_MAJOR_VERSION >= 3
    if (!PyLong_Check(object)) {
        return false;
    }
    int overflow = 0;
    const long long wide = PyLong_AsLongLongAndOverflow(object, &overflow);
    if (overflow != 0 || wide < INT32_MIN || wide > INT32_MAX) {
        return false;
    }
    value = static_cast<std::int32_t>(wide);
    return true;
#else
    if (!PyInt_Check(object)) {
        return false;
    }
    value = static_cast<std::int32_t>(PyInt_AS_LONG(object));
    return true;
#endif
}

// ---- Calls

/// Calls with one positional argument, by the quickest road the interpreter has. New reference, or
/// null with an error set.
inline PyObject* callOneArgument(PyObject* callable, PyObject* argument) {
#if PY_VERSION_HEX >= 0x03090000
    return PyObject_CallOneArg(callable, argument);
#else
    PyObject* arguments = PyTuple_Pack(1, argument);
    if (!arguments) {
        return nullptr;
    }
    PyObject* result = PyObject_CallObject(callable, arguments);
    Py_DECREF(arguments);
    return result;
#endif
}

/// What a method may return when an error can be pending beside its value. Python 2 takes both and
/// raises the error at its next test for one; Python 3 calls that a SystemError, so there the value
/// is dropped and the error surfaces at once. Takes the reference to `value`.
inline PyObject* returnValue(PyObject* value) {
#if PY_MAJOR_VERSION >= 3
    if (value && PyErr_Occurred()) {
        Py_DECREF(value);
        return nullptr;
    }
#endif
    return value;
}

/// None with a new reference, by returnValue().
inline PyObject* returnNone() {
    Py_INCREF(Py_None);
    return returnValue(Py_None);
}

/// True or False with a new reference, by returnValue().
inline PyObject* returnBool(bool value) {
    return returnValue(PyBool_FromLong(value));
}

/// True when the calling thread holds the interpreter lock. Unlike all else here, it may be called
/// without. [any-thread]
inline bool holdsInterpreterLock() noexcept {
#if PY_MAJOR_VERSION >= 3
    return PyGILState_Check() != 0;
#else
    return _PyThreadState_Current && _PyThreadState_Current == PyGILState_GetThisThreadState();
#endif
}

// ---- Errors

/// Sets an error that is pending aside for as long as it lives, so that Python can be called
/// meanwhile, and puts it back in place of one that came up since. Python 2 too trips over an error
/// that it is called with: in a loop, or where a number is converted.
class PendingErrorAside {
public:
    PendingErrorAside() {
        if (PyErr_Occurred()) {
            PyErr_Fetch(&type, &value, &traceback);
        }
    }
    ~PendingErrorAside() {
        if (type) {
            PyErr_Restore(type, value, traceback);
        }
    }
    PendingErrorAside(const PendingErrorAside&) = delete;
    PendingErrorAside& operator=(const PendingErrorAside&) = delete;

private:
    PyObject* type = nullptr; // owned, like the other two
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
};

/// One entry of a traceback. The objects are borrowed from it.
struct TracebackEntry {
    PyObject* fileName; ///< text
    PyObject* codeName; ///< text
    int line;
};

/// Calls `visit(TracebackEntry)` for each entry of a traceback, outermost frame first. Null has
/// none. Leaves no error set.
template <class Visitor>
void visitTraceback(PyObject* traceback, Visitor&& visit) {
    for (auto* entry = reinterpret_cast<PyTracebackObject*>(traceback); entry;
         entry = entry->tb_next) {
#if PY_MAJOR_VERSION >= 3
        // From 3.12 on the field is computed at need, by the attribute.
        PyObject* line = PyObject_GetAttrString(reinterpret_cast<PyObject*>(entry), "tb_lineno");
        const long lineNumber = line ? PyLong_AsLong(line) : 0;
        Py_XDECREF(line);
        PyErr_Clear();
#if PY_VERSION_HEX >= 0x03090000
        PyCodeObject* code = PyFrame_GetCode(entry->tb_frame);
#else
        PyCodeObject* code = entry->tb_frame->f_code;
        Py_INCREF(code);
#endif
        visit(TracebackEntry{code->co_filename, code->co_name, static_cast<int>(lineNumber)});
        Py_DECREF(code);
#else
        PyCodeObject* code = entry->tb_frame->f_code;
        visit(TracebackEntry{code->co_filename, code->co_name, entry->tb_lineno});
#endif
    }
}

} // namespace pythoncompat
