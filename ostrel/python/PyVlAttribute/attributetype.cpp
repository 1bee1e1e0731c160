#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <memory>

using VlAttribute::Attribute;
using VlAttribute::AttributeType;

namespace {

void dealloc(PyObject* self) {
    std::destroy_at(&reinterpret_cast<AttributeObject*>(self)->attribute);
    Py_TYPE(self)->tp_free(self);
}

PyObject* getHash(PyObject* self, PyObject*) {
    return guarded([&] { return pythoncompat::newText(attributeOf(self).getHash().str()); });
}

pythoncompat::HashValue hash(PyObject* self) {
    const auto value = static_cast<pythoncompat::HashValue>(attributeOf(self).getHash().first);
    return value == -1 ? -2 : value; // -1 reports an error
}

PyObject* richCompare(PyObject* left, PyObject* right, int operation) {
    const Attribute& other = attributeOf(right);
    if (!other) {
        Py_INCREF(Py_NotImplemented);
        return Py_NotImplemented;
    }
    if (operation != Py_EQ && operation != Py_NE) {
        PyErr_SetString(PyExc_TypeError, "attributes are equal or not, they have no order");
        return nullptr;
    }
    return PyBool_FromLong((attributeOf(left) == other) == (operation == Py_EQ));
}

int truth(PyObject*) {
    return 1;
}

PyMethodDef methods[] = {
    {"getHash", getHash, METH_NOARGS,
     "getHash() -> str\n\n"
     "The 128-bit hash of type and content, as 32 hexadecimal digits. Equal attributes\n"
     "have equal hashes, in every process and on both interpreters."},
    {}};

const char documentation[] =
    "The base of all attribute types: an immutable, shared value.\n\n"
    "Attributes compare by type and content (-0.0 equals 0.0, and a NaN equals a NaN, so\n"
    "that a copy is always equal) and can be dictionary keys. An absent attribute is None;\n"
    "every attribute is true, also one without values or children.";

} // namespace

PyTypeObject attributeType =
    pythoncompat::makeType("PyVlAttribute.Attribute", sizeof(AttributeObject));

const Attribute& attributeOf(PyObject* object) noexcept {
    static const Attribute null;
    return PyObject_TypeCheck(object, &attributeType)
               ? reinterpret_cast<AttributeObject*>(object)->attribute
               : null;
}

bool parseAttribute(PyObject* object, const char* what, Attribute& result) {
    if (object == Py_None) {
        result = Attribute();
        return true;
    }
    result = attributeOf(object);
    if (!result) {
        PyErr_Format(PyExc_TypeError, "%s must be an attribute or None, not %.100s", what,
                     Py_TYPE(object)->tp_name);
        return false;
    }
    return true;
}

PyObject* newAttributeObject(PyTypeObject* type, Attribute attribute) {
    PyObject* object = type->tp_alloc(type, 0);
    if (object) {
        std::construct_at(&reinterpret_cast<AttributeObject*>(object)->attribute,
                          std::move(attribute));
    }
    return object;
}

PyObject* wrapAttribute(const Attribute& attribute) {
    switch (attribute.getType()) {
    case AttributeType::Int:
        return newAttributeObject(&intAttributeType, attribute);
    case AttributeType::Float:
        return newAttributeObject(&floatAttributeType, attribute);
    case AttributeType::Double:
        return newAttributeObject(&doubleAttributeType, attribute);
    case AttributeType::String:
        return newAttributeObject(&stringAttributeType, attribute);
    case AttributeType::Group:
        return newAttributeObject(&groupAttributeType, attribute);
    case AttributeType::None:
        break;
    }
    Py_INCREF(Py_None);
    return Py_None;
}

bool addType(PyObject* module, PyTypeObject& type, const char* name) {
    if (PyType_Ready(&type) < 0) {
        return false;
    }
    Py_INCREF(&type);
    return PyModule_AddObject(module, name, reinterpret_cast<PyObject*>(&type)) == 0;
}

bool addAttributeType(PyObject* module) {
    static PyNumberMethods numberMethods = pythoncompat::truthMethods(truth);
    attributeType.tp_dealloc = dealloc;
    attributeType.tp_hash = hash;
    attributeType.tp_richcompare = richCompare;
    attributeType.tp_as_number = &numberMethods;
    attributeType.tp_methods = methods;
    attributeType.tp_doc = documentation;
    return addType(module, attributeType, "Attribute");
}
