#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <string>

using namespace VlAttribute;

namespace {

constexpr std::int64_t kShownChildren = 32;

GroupAttribute groupOf(PyObject* self) {
    return GroupAttribute(attributeOf(self));
}

bool addPair(PyObject* pair, Py_ssize_t index, GroupBuilder& builder) {
    const bool isPair =
        !pythoncompat::isText(pair) && PySequence_Check(pair) != 0 && PySequence_Size(pair) == 2;
    if (!isPair) {
        PyErr_Clear(); // of an object whose length fails
        PyErr_Format(PyExc_TypeError,
                     "GroupAttribute: argument %zd must be a (name, attribute) pair, not %.100s",
                     index + 1, Py_TYPE(pair)->tp_name);
        return false;
    }
    const Reference name(PySequence_GetItem(pair, 0));
    const Reference value(name ? PySequence_GetItem(pair, 1) : nullptr);
    if (!value) {
        return false;
    }
    std::string text;
    if (!pythoncompat::isText(name.get())) {
        PyErr_Format(PyExc_TypeError,
                     "GroupAttribute: the name in argument %zd must be str, not %.100s", index + 1,
                     Py_TYPE(name.get())->tp_name);
        return false;
    }
    Attribute attribute;
    if (!pythoncompat::textAsString(name.get(), text) ||
        !parseAttribute(value.get(), ("GroupAttribute: \"" + text + "\"").c_str(), attribute)) {
        return false;
    }
    builder.set(text, attribute);
    return true;
}

PyObject* create(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    if (keywords && PyDict_Size(keywords) != 0) {
        PyErr_SetString(PyExc_TypeError, "GroupAttribute takes no keyword arguments");
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        GroupBuilder builder;
        for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(args); ++i) {
            if (!addPair(PyTuple_GET_ITEM(args, i), i, builder)) {
                return nullptr;
            }
        }
        return newAttributeObject(type, builder.build());
    });
}

PyObject* getChildByName(PyObject* self, PyObject* args) {
    PyObject* name = nullptr;
    if (!PyArg_ParseTuple(args, "O:getChildByName", &name)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        std::string text;
        return pythoncompat::textAsString(name, text)
                   ? wrapAttribute(groupOf(self).getChildByName(text))
                   : nullptr;
    });
}

PyObject* getChildByIndex(PyObject* self, PyObject* args) {
    Py_ssize_t index = 0;
    if (!PyArg_ParseTuple(args, "n:getChildByIndex", &index)) {
        return nullptr;
    }
    return wrapAttribute(groupOf(self).getChildByIndex(index));
}

PyObject* getChildName(PyObject* self, PyObject* args) {
    Py_ssize_t index = 0;
    if (!PyArg_ParseTuple(args, "n:getChildName", &index)) {
        return nullptr;
    }
    const GroupAttribute group = groupOf(self);
    if (index < 0 || index >= group.getNumberOfChildren()) {
        PyErr_Format(PyExc_IndexError, "getChildName: child %zd of %zd", index,
                     static_cast<Py_ssize_t>(group.getNumberOfChildren()));
        return nullptr;
    }
    return pythoncompat::newText(group.getChildName(index));
}

PyObject* getNumberOfChildren(PyObject* self, PyObject*) {
    return pythoncompat::newInt(groupOf(self).getNumberOfChildren());
}

PyObject* isGroupInherit(PyObject* self, PyObject* args) {
    Py_ssize_t index = 0;
    if (!PyArg_ParseTuple(args, "n:isGroupInherit", &index)) {
        return nullptr;
    }
    return PyBool_FromLong(groupOf(self).isGroupInherit(index));
}

Py_ssize_t length(PyObject* self) {
    return static_cast<Py_ssize_t>(groupOf(self).getNumberOfChildren());
}

PyObject* item(PyObject* self, Py_ssize_t index) {
    const GroupAttribute group = groupOf(self);
    if (index < 0 || index >= group.getNumberOfChildren()) {
        PyErr_SetString(PyExc_IndexError, "group index out of range");
        return nullptr;
    }
    const Reference name(pythoncompat::newText(group.getChildName(index)));
    const Reference child(name ? wrapAttribute(group.borrowChildByIndex(index)) : nullptr);
    return child ? PyTuple_Pack(2, name.get(), child.get()) : nullptr;
}

int contains(PyObject* self, PyObject* name) {
    return guarded(
        [&] {
            std::string text;
            if (!pythoncompat::textAsString(name, text)) {
                return -1;
            }
            return groupOf(self).borrowChildByName(text) ? 1 : 0;
        },
        -1);
}

bool appendText(PyObject* object, std::string& text) {
    const Reference repr(object ? PyObject_Repr(object) : nullptr);
    std::string bytes;
    if (!repr || !pythoncompat::textAsString(repr.get(), bytes)) {
        return false;
    }
    text += bytes;
    return true;
}

PyObject* repr(PyObject* self) {
    if (Py_EnterRecursiveCall(" while printing a GroupAttribute")) {
        return nullptr;
    }
    PyObject* result = guarded([&]() -> PyObject* {
        const GroupAttribute group = groupOf(self);
        const std::int64_t count = group.getNumberOfChildren();
        std::string text = "GroupAttribute(";
        for (std::int64_t i = 0; i < count && i < kShownChildren; ++i) {
            const Reference pair(item(self, static_cast<Py_ssize_t>(i)));
            text += i == 0 ? "" : ", ";
            if (!appendText(pair.get(), text)) {
                return nullptr;
            }
        }
        if (count > kShownChildren) {
            text += ", ... " + std::to_string(count - kShownChildren) + " more";
        }
        return pythoncompat::newText(text + ")");
    });
    Py_LeaveRecursiveCall();
    return result;
}

PyMethodDef methods[] = {
    {"getChildByName", getChildByName, METH_VARARGS,
     "getChildByName(name) -> attribute or None\n\n"
     "A dotted name leads through nested groups: \"geometry.point.P\"."},
    {"getChildByIndex", getChildByIndex, METH_VARARGS,
     "getChildByIndex(index) -> attribute or None\n\nNone when out of range."},
    {"getChildName", getChildName, METH_VARARGS,
     "getChildName(index) -> str\n\nRaises IndexError when out of range."},
    {"getNumberOfChildren", getNumberOfChildren, METH_NOARGS, "getNumberOfChildren() -> int"},
    {"isGroupInherit", isGroupInherit, METH_VARARGS,
     "isGroupInherit(index) -> bool\n\n"
     "Whether the child was set to be inherited by locations below."},
    {}};

const char documentation[] =
    "GroupAttribute(*pairs)\n\n"
    "An ordered list of named attributes, made of (name, attribute) pairs. A dotted name\n"
    "makes nested groups, a name that stands twice keeps its place and takes the later\n"
    "attribute, and a pair with None is left out:\n\n"
    "    GroupAttribute((\"type\", StringAttribute(\"polymesh\")),\n"
    "                   (\"geometry.point.P\", FloatAttribute(points, 3)))\n\n"
    "len() is the number of children, iteration gives (name, attribute) pairs in order, and\n"
    "\"in\" asks for a dotted name. To make a changed copy use a GroupBuilder.";

} // namespace

PyTypeObject groupAttributeType =
    pythoncompat::makeType("PyVlAttribute.GroupAttribute", sizeof(AttributeObject));

bool addGroupAttributeType(PyObject* module) {
    static PySequenceMethods sequenceMethods = {};
    sequenceMethods.sq_length = length;
    sequenceMethods.sq_item = item;
    sequenceMethods.sq_contains = contains;
    groupAttributeType.tp_base = &attributeType;
    groupAttributeType.tp_repr = repr;
    groupAttributeType.tp_as_sequence = &sequenceMethods;
    groupAttributeType.tp_methods = methods;
    groupAttributeType.tp_new = create;
    groupAttributeType.tp_doc = documentation;
    return addType(module, groupAttributeType, "GroupAttribute");
}
