#include "pythonmodule.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "attributeobject.h"

namespace {

VlAttributeStruct* handleFromObject(PyObject* object) {
    return object ? attributeOf(object).getRetainedHandle() : nullptr;
}

PyObject* objectFromHandle(VlAttributeStruct* handle) {
    return wrapAttribute(VlAttribute::Attribute::CreateAndRetain(handle));
}

PyVlAttribute::Api api = {PyVlAttribute::Api::kVersion, handleFromObject, objectFromHandle};

bool addApi(PyObject* module) {
    PyObject* capsule = PyCapsule_New(&api, "PyVlAttribute._api", nullptr);
    return capsule && PyModule_AddObject(module, "_api", capsule) == 0;
}

const char documentation[] =
    "Attributes: the immutable values that scenes are made of.\n\n"
    "A location of a scene has one GroupAttribute. Its children are groups again, or values:\n"
    "IntAttribute, FloatAttribute, DoubleAttribute and StringAttribute hold an array of values\n"
    "in tuples, possibly in several time samples. Attributes never change; a GroupBuilder\n"
    "makes changed copies, which share what is unchanged. Where an attribute is absent there\n"
    "is None.\n\n"
    "    from PyVlAttribute import *\n"
    "    attrs = GroupAttribute((\"type\", StringAttribute(\"polymesh\")),\n"
    "                           (\"bound\", DoubleAttribute([-1, 1, -1, 1, -1, 1])))\n"
    "    attrs.getChildByName(\"type\").getValue()          # 'polymesh'\n"
    "    moved = GroupBuilder().update(attrs)\n"
    "    moved.set(\"xform.move.translate\", DoubleAttribute([1, 0, 0], 3))\n"
    "    attrs = moved.build()";

PyMethodDef functions[] = {{}};

} // namespace

PYTHONCOMPAT_MODULE(PyVlAttribute) {
    PyObject* module = pythoncompat::createModule("PyVlAttribute", functions, documentation);
    if (!module || !addAttributeType(module) || !addDataAttributeType(module) ||
        !addNumericAttributeTypes(module) || !addStringAttributeType(module) ||
        !addGroupAttributeType(module) || !addGroupBuilderType(module) || !addApi(module)) {
        if (module) {
            pythoncompat::abandonModule(module);
        }
        return nullptr;
    }
    return module;
}
