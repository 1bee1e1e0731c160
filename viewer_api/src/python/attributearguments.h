#pragma once

#include "pyreference.h"

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"

namespace ViewerAPI {

// Attributes as arguments and results of methods. What is no attribute object counts as a null
// attribute; whether that is an error is told per argument. [ui-thread]

/// The attribute of a Python object; null, and no error set, when it is none.
[[nodiscard]] VlAttribute::Attribute attributeOf(PyObject* object);

/// The Python form of an attribute, also of a null one. New reference, or null with an error set.
[[nodiscard]] PyObject* newPyAttribute(const VlAttribute::Attribute& attribute);

/// Takes the one argument of a method, a group. False with a TypeError set when it is none.
[[nodiscard]] bool parseGroupArgument(PyObject* args, VlAttribute::GroupAttribute& group);

/// The attribute that an option is set to. False with a TypeError set when it is none.
[[nodiscard]] bool optionValueOf(PyObject* object, VlAttribute::Attribute& value);

} // namespace ViewerAPI
