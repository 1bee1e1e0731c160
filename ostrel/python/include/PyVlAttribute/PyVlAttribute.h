#pragma once

// How other extension modules turn attributes into their Python form and back. They link nothing of
// the module PyVlAttribute: it is imported, and offers its functions in a capsule.
//
// All functions must be called with the interpreter lock held. [ui-thread]

#include <Python.h>

#include "VlAttribute/Attribute.h"

namespace PyVlAttribute {

/// What the capsule "PyVlAttribute._api" points to.
struct Api {
    static constexpr int kVersion = 1;

    int version;
    /// The caller owns a reference to the result. Null, without an error, for any other object.
    VlAttributeStruct* (*handleFromObject)(PyObject* object);
    /// A new reference; None for null. Borrows the handle. Null with an error set when memory runs
    /// out.
    PyObject* (*objectFromHandle)(VlAttributeStruct* handle);
};

/// The functions of the module, which is imported at the first call. Null with ImportError set
/// when it is not there or of another version. An extension module calls this when it is itself
/// imported, so that the two functions below have nothing to fail at.
inline const Api* importApi() {
    static const Api* api = nullptr;
    if (!api) {
        const auto* found = static_cast<const Api*>(PyCapsule_Import("PyVlAttribute._api", 0));
        if (found && found->version != Api::kVersion) {
            PyErr_Format(PyExc_ImportError, "PyVlAttribute offers interface %d, %d is needed",
                         found->version, Api::kVersion);
            return nullptr;
        }
        api = found;
    }
    return api;
}

/// The attribute of a PyVlAttribute object. Null, without a Python error, for None and for any
/// foreign object.
inline VlAttribute::Attribute AttributeFromPyObject(PyObject* object) {
    const Api* api = importApi();
    if (!api) {
        PyErr_Clear();
        return {};
    }
    return VlAttribute::Attribute::CreateAndSteal(api->handleFromObject(object));
}

/// A new reference to the Python form: an object of the class named like the attribute's kind, or
/// None for a null attribute. Null with an error set when memory runs out.
inline PyObject* PyAttributeFromAttribute(const VlAttribute::Attribute& attribute) {
    const Api* api = importApi();
    return api ? api->objectFromHandle(attribute.getHandle()) : nullptr;
}

} // namespace PyVlAttribute
