#include "attributeobject.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <memory>
#include <string>

using namespace VlAttribute;

namespace {

struct GroupBuilderObject {
    PyObject_HEAD GroupBuilder builder;
};

GroupBuilder& builderOf(PyObject* self) {
    return reinterpret_cast<GroupBuilderObject*>(self)->builder;
}

PyObject* create(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    static const char* names[] = {nullptr};
    if (!PyArg_ParseTupleAndKeywords(args, keywords, ":GroupBuilder", const_cast<char**>(names))) {
        return nullptr;
    }
    PyObject* self = type->tp_alloc(type, 0);
    if (self) {
        std::construct_at(&builderOf(self));
    }
    return self;
}

void dealloc(PyObject* self) {
    std::destroy_at(&builderOf(self));
    Py_TYPE(self)->tp_free(self);
}

PyObject* itself(PyObject* self) {
    Py_INCREF(self);
    return self;
}

PyObject* set(PyObject* self, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"name", "attribute", "groupInherit", nullptr};
    PyObject* name = nullptr;
    PyObject* value = nullptr;
    PyObject* inherit = Py_True;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OO|O:set", const_cast<char**>(names), &name,
                                     &value, &inherit)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        std::string text;
        Attribute attribute;
        const int isInherit = PyObject_IsTrue(inherit);
        if (isInherit < 0 || !pythoncompat::textAsString(name, text) ||
            !parseAttribute(value, ("GroupBuilder.set: \"" + text + "\"").c_str(), attribute)) {
            return nullptr;
        }
        builderOf(self).set(text, attribute, isInherit == 1);
        return itself(self);
    });
}

bool parseGroup(PyObject* args, const char* format, const char* what, GroupAttribute& group) {
    PyObject* object = nullptr;
    if (!PyArg_ParseTuple(args, format, &object)) {
        return false;
    }
    group = GroupAttribute(attributeOf(object));
    if (!group && object != Py_None) {
        PyErr_Format(PyExc_TypeError, "%s: expected a GroupAttribute or None, not %.100s", what,
                     Py_TYPE(object)->tp_name);
        return false;
    }
    return true;
}

PyObject* update(PyObject* self, PyObject* args) {
    GroupAttribute group;
    if (!parseGroup(args, "O:update", "GroupBuilder.update", group)) {
        return nullptr;
    }
    return guarded([&] {
        builderOf(self).update(group);
        return itself(self);
    });
}

PyObject* deepUpdate(PyObject* self, PyObject* args) {
    GroupAttribute group;
    if (!parseGroup(args, "O:deepUpdate", "GroupBuilder.deepUpdate", group)) {
        return nullptr;
    }
    return guarded([&] {
        builderOf(self).deepUpdate(group);
        return itself(self);
    });
}

PyObject* deleteChild(PyObject* self, PyObject* args) {
    PyObject* name = nullptr;
    if (!PyArg_ParseTuple(args, "O:delete", &name)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        std::string text;
        if (!pythoncompat::textAsString(name, text)) {
            return nullptr;
        }
        builderOf(self).del(text);
        return itself(self);
    });
}

PyObject* build(PyObject* self, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"keepBuilder", nullptr};
    PyObject* keep = Py_False;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "|O:build", const_cast<char**>(names),
                                     &keep)) {
        return nullptr;
    }
    const int isKept = PyObject_IsTrue(keep);
    if (isKept < 0) {
        return nullptr;
    }
    return guarded([&] {
        return wrapAttribute(
            builderOf(self).build(isKept == 1 ? BuildMode::KeepBuilder : BuildMode::Normal));
    });
}

PyObject* isValid(PyObject* self, PyObject*) {
    return PyBool_FromLong(builderOf(self).isValid());
}

PyMethodDef methods[] = {
    {"set", reinterpret_cast<PyCFunction>(set), METH_VARARGS | METH_KEYWORDS,
     "set(name, attribute, groupInherit=True) -> self\n\n"
     "Sets a child. In a dotted name every part but the last names a group, which is made\n"
     "where there is none and merged into where there is one. A name that is set again keeps\n"
     "its place. None leaves the child out, and removes one that is there. Raises ValueError\n"
     "for a name that is empty or has an empty part."},
    {"update", update, METH_VARARGS,
     "update(group) -> self\n\n"
     "Sets each child of the group, replacing what bore its name. None changes nothing."},
    {"deepUpdate", deepUpdate, METH_VARARGS,
     "deepUpdate(group) -> self\n\n"
     "As update, but where both sides have a group of a name, the one is merged into the\n"
     "other in the same manner."},
    {"delete", deleteChild, METH_VARARGS,
     "delete(name) -> self\n\nRemoves the child of that dotted name, if it is there."},
    {"build", reinterpret_cast<PyCFunction>(build), METH_VARARGS | METH_KEYWORDS,
     "build(keepBuilder=False) -> GroupAttribute\n\n"
     "The group of what has been set. The builder is empty afterwards unless it is kept."},
    {"isValid", isValid, METH_NOARGS,
     "isValid() -> bool\n\nWhether anything has been set and not deleted."},
    {}};

const char documentation[] =
    "GroupBuilder()\n\n"
    "Collects named attributes and makes a GroupAttribute of them. All methods but build and\n"
    "isValid return the builder, so that calls can be chained:\n\n"
    "    GroupBuilder().update(attrs).set(\"material.baseColor\", red).build()";

PyTypeObject groupBuilderType =
    pythoncompat::makeType("PyVlAttribute.GroupBuilder", sizeof(GroupBuilderObject));

} // namespace

bool addGroupBuilderType(PyObject* module) {
    groupBuilderType.tp_dealloc = dealloc;
    groupBuilderType.tp_methods = methods;
    groupBuilderType.tp_new = create;
    groupBuilderType.tp_doc = documentation;
    return addType(module, groupBuilderType, "GroupBuilder");
}
