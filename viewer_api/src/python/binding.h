#pragma once

#include "pyreference.h"
#include "pythonmodule.h"

#include "hostobject.h"

#include <exception>
#include <memory>
#include <new>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

// How a native function becomes a method of a Python type. A method is written as
//
//     PyObject* name(Record& self)                   or
//     PyObject* name(Record& self, PyObject* args)
//
// and stands in its type's method table as `method<&name>("name", documentation)`. Around the call
// stand, in this order: the check that the record's host object still lives; a reference to the
// delegate's wrapper, without which a callback could end the delegate, and the host object with
// it, under the running call; the mark of the host's call; and the exception boundary.
//
// For that each record type has, beside a pointer named `host`,
//
//     bool checkAlive() const              false, with an error set, when the host has gone
//     PyReference holdDelegate() const     the delegate's wrapper, if there is one

/// Raises RuntimeError with the text, in place of an error that is already set.
void setRuntimeError(const char* text) noexcept;

/// Raises RuntimeError that the host object of this kind has gone.
void setDestroyedError(const char* kind) noexcept;

/// Where exceptions end. Runs `body`, which returns a new reference or null with an error set, and
/// turns what it throws into a RuntimeError: with its text for a std::exception, "Unknown C++
/// exception" for anything else.
template <class Body>
PyObject* withExceptionBoundary(Body&& body) noexcept {
    try {
        return pythoncompat::returnValue(body());
    } catch (const std::exception& exception) {
        setRuntimeError(exception.what());
    } catch (...) {
        setRuntimeError("Unknown C++ exception");
    }
    return nullptr;
}

namespace detail {

template <class Function>
struct MethodShape;

template <class Record>
struct MethodShape<PyObject* (*)(Record&)> {
    using Self = Record;
    static constexpr int flags = METH_NOARGS;
    template <auto Method>
    static PyObject* call(Record& self, PyObject* /*args*/) {
        return Method(self);
    }
};

template <class Record>
struct MethodShape<PyObject* (*)(Record&, PyObject*)> {
    using Self = Record;
    static constexpr int flags = METH_VARARGS;
    template <auto Method>
    static PyObject* call(Record& self, PyObject* args) {
        return Method(self, args);
    }
};

template <auto Method>
PyObject* guardedEntry(PyObject* object, PyObject* args) {
    using Shape = MethodShape<decltype(Method)>;
    auto& self = *reinterpret_cast<typename Shape::Self*>(object);
    if (!self.checkAlive()) {
        return nullptr;
    }
    const PyReference delegate = self.holdDelegate();
    return withExceptionBoundary([&]() {
        const HostCall call(*self.host);
        return Shape::template call<Method>(self, args);
    });
}

template <auto Method>
PyObject* pythonOnlyEntry(PyObject* object, PyObject* args) {
    using Shape = MethodShape<decltype(Method)>;
    return Shape::template call<Method>(*reinterpret_cast<typename Shape::Self*>(object), args);
}

} // namespace detail

/// An entry of a method table. A method with arguments is METH_VARARGS, one without METH_NOARGS.
template <auto Method>
constexpr PyMethodDef method(const char* name, const char* documentation) {
    return {name, &detail::guardedEntry<Method>, detail::MethodShape<decltype(Method)>::flags,
            documentation};
}

/// An entry for a method that touches Python objects only: nothing stands around it.
template <auto Method>
constexpr PyMethodDef pythonOnlyMethod(const char* name, const char* documentation) {
    return {name, &detail::pythonOnlyEntry<Method>, detail::MethodShape<decltype(Method)>::flags,
            documentation};
}

/// Expires with the host object that a wrapper stands for.
using HostWatch = std::weak_ptr<const void>;

/// A new wrapper of a record type that has `host` and `watch`; further fields are the caller's to
/// fill before Python sees it. No constructor of the type runs. Null with an error set when memory
/// runs out.
template <class Record, class Host>
Record* newWrapper(PyTypeObject& type, Host* host) {
    auto* record = PyObject_New(Record, &type);
    if (record) {
        record->host = host;
        new (&record->watch) HostWatch(host->watch());
    }
    return record;
}

/// Ends a wrapper, whose further fields have been released. The host object stays.
template <class Record>
void deleteWrapper(Record* record) noexcept {
    record->watch.~HostWatch();
    Py_TYPE(record)->tp_free(reinterpret_cast<PyObject*>(record));
}

/// tp_dealloc of a wrapper without further fields.
template <class Record>
void deallocateWrapper(PyObject* object) {
    deleteWrapper(reinterpret_cast<Record*>(object));
}

/// True while the host object lives; otherwise false, with the error set that one of this kind has
/// gone.
bool checkWatch(const HostWatch& watch, const char* kind) noexcept;

/// tp_init of a type whose objects come from other calls; `Text` says from which. Calling a type
/// without tp_new doesn't get here, as the interpreter refuses first; a call of __init__ does.
template <const char* Text>
int refuseConstruction(PyObject*, PyObject*, PyObject*) noexcept {
    PyErr_SetString(PyExc_RuntimeError, Text);
    return -1;
}

/// The type object of a record type, for a static variable; `name` is "module.Type".
template <class Record>
PyTypeObject wrapperType(const char* name, const char* documentation, PyMethodDef* methods,
                         destructor deallocate, initproc refuse) {
    PyTypeObject type = pythoncompat::makeType(name, sizeof(Record));
    type.tp_doc = documentation;
    type.tp_methods = methods;
    type.tp_dealloc = deallocate;
    type.tp_init = refuse;
    return type;
}

/// The Python wrapper of a delegate, held; none when there is no delegate, none hosts it, or the
/// wrapper is ending already.
PyReference holdWrapperOf(const VlViewerDelegateHostStruct* delegate);

/// Readies the type and adds it to the module under `name`. A type that can't be readied is left
/// out, and the module goes on without it.
void registerType(PyObject* module, PyTypeObject& type, const char* name) noexcept;

} // namespace ViewerAPI
