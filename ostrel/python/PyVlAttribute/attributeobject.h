#pragma once

#include "pythoncompat.h"

#include "VlAttribute/VlAttribute.h"

/// The Python form of an attribute: the object head and one reference. Immutable, like the value.
struct AttributeObject {
    PyObject_HEAD VlAttribute::Attribute attribute; ///< never null
};

/// The types, in the order in which they lean on each other. Each `add...` makes a type ready and
/// adds it to the module; false with a Python error set on failure.
extern PyTypeObject attributeType;
extern PyTypeObject dataAttributeType;
extern PyTypeObject intAttributeType;
extern PyTypeObject floatAttributeType;
extern PyTypeObject doubleAttributeType;
extern PyTypeObject stringAttributeType;
extern PyTypeObject groupAttributeType;

bool addAttributeType(PyObject* module);
bool addDataAttributeType(PyObject* module);
bool addNumericAttributeTypes(PyObject* module);
bool addStringAttributeType(PyObject* module);
bool addGroupAttributeType(PyObject* module);
bool addGroupBuilderType(PyObject* module);

/// What every `add...` ends with.
bool addType(PyObject* module, PyTypeObject& type, const char* name);

/// A new object of the given type. Null with an error set when memory runs out.
PyObject* newAttributeObject(PyTypeObject* type, VlAttribute::Attribute attribute);
/// A new reference to the object for an attribute of any kind; None for null.
PyObject* wrapAttribute(const VlAttribute::Attribute& attribute);
/// The attribute of an attribute object (borrowed); null, without an error, for anything else.
const VlAttribute::Attribute& attributeOf(PyObject* object) noexcept;
/// As above for an argument that must be an attribute or None; else false with TypeError, whose
/// text begins with `what`.
bool parseAttribute(PyObject* object, const char* what, VlAttribute::Attribute& result);
