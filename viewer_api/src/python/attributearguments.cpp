#include "attributearguments.h"

#include "PyVlAttribute/PyVlAttribute.h"

namespace ViewerAPI {

VlAttribute::Attribute attributeOf(PyObject* object) {
    return PyVlAttribute::AttributeFromPyObject(object);
}

PyObject* newPyAttribute(const VlAttribute::Attribute& attribute) {
    return PyVlAttribute::PyAttributeFromAttribute(attribute);
}

bool parseGroupArgument(PyObject* args, VlAttribute::GroupAttribute& group) {
    PyObject* object = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &object)) {
        return false;
    }
    group = VlAttribute::GroupAttribute(attributeOf(object));
    if (!group.isValid()) {
        PyErr_SetString(PyExc_TypeError, "First argument must be an VlGroupAttribute object");
        return false;
    }
    return true;
}

bool optionValueOf(PyObject* object, VlAttribute::Attribute& value) {
    value = attributeOf(object);
    if (!value.isValid()) {
        PyErr_SetString(PyExc_TypeError, "Second argument must be an VlAttribute object");
        return false;
    }
    return true;
}

} // namespace ViewerAPI
