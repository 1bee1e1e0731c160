#pragma once

// The differences between Python 2.7 and Python 3 in how types and modules are made; for the rest
// see pythoncompat.h. [ui-thread]

#include "pythoncompat.h"

#include <cstddef>

namespace pythoncompat {

// ---- Types

#if PY_MAJOR_VERSION >= 3
using HashValue = Py_hash_t;
inline constexpr long kTypeFlags = Py_TPFLAGS_DEFAULT;
/// Flags of a type that fills tp_as_buffer by bufferProcs().
inline constexpr long kBufferTypeFlags = Py_TPFLAGS_DEFAULT;
#else
using HashValue = long;
inline constexpr long kTypeFlags = Py_TPFLAGS_DEFAULT;
inline constexpr long kBufferTypeFlags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_NEWBUFFER;
#endif

/// A static type object with its name ("module.Type"), the size of its instances and default
/// flags; the caller fills the slots it has before PyType_Ready.
inline PyTypeObject makeType(const char* name, std::size_t instanceSize) {
    PyTypeObject type = {PyVarObject_HEAD_INIT(nullptr, 0)};
    type.tp_name = name;
    type.tp_basicsize = static_cast<Py_ssize_t>(instanceSize);
    type.tp_flags = kTypeFlags;
    return type;
}

/// The table of a type with the new buffer protocol; its type needs kBufferTypeFlags.
inline PyBufferProcs bufferProcs(getbufferproc get, releasebufferproc release) {
    PyBufferProcs procs = {};
    procs.bf_getbuffer = get;
    procs.bf_releasebuffer = release;
    return procs;
}

/// The table of a type whose truth value is told by `truth`; all other entries are null.
inline PyNumberMethods truthMethods(inquiry truth) {
    PyNumberMethods methods = {};
#if PY_MAJOR_VERSION >= 3
    methods.nb_bool = truth;
#else
    methods.nb_nonzero = truth;
#endif
    return methods;
}

// ---- Modules

/// Creates the module under its name. The table and the texts must be static. Python 2 owns the
/// result, on Python 3 the caller does: return it from PYTHONCOMPAT_MODULE's body in either case.
/// Null with an error set on failure.
inline PyObject* createModule(const char* name, PyMethodDef* methods, const char* documentation) {
#if PY_MAJOR_VERSION >= 3
    static PyModuleDef definition = {PyModuleDef_HEAD_INIT};
    definition.m_name = name;
    definition.m_doc = documentation;
    definition.m_size = -1;
    definition.m_methods = methods;
    return PyModule_Create(&definition);
#else
    return Py_InitModule4(name, methods, documentation, nullptr, PYTHON_API_VERSION);
#endif
}

/// Gives up a module that createModule made and that can't be finished.
inline void abandonModule(PyObject* module) {
#if PY_MAJOR_VERSION >= 3
    Py_XDECREF(module);
#else
    static_cast<void>(module);
#endif
}

} // namespace pythoncompat

/// The exported entry of the module NAME, followed by its body: a function without arguments that
/// returns what createModule() gave, or null with an error set.
///
///     PYTHONCOMPAT_MODULE(Example) {
///         PyObject* module = pythoncompat::createModule("Example", methods, "What it is.");
///         ...
///         return module;
///     }
#if PY_MAJOR_VERSION >= 3
#define PYTHONCOMPAT_MODULE(NAME)                                                                  \
    static PyObject* createModule_##NAME();                                                        \
    extern "C" __attribute__((visibility("default"))) PyObject* PyInit_##NAME() {                  \
        return createModule_##NAME();                                                              \
    }                                                                                              \
    static PyObject* createModule_##NAME()
#else
#define PYTHONCOMPAT_MODULE(NAME)                                                                  \
    static PyObject* createModule_##NAME();                                                        \
    extern "C" __attribute__((visibility("default"))) void init##NAME() {                          \
        static_cast<void>(createModule_##NAME());                                                  \
    }                                                                                              \
    static PyObject* createModule_##NAME()
#endif
