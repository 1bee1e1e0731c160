#include "pymanipulatorbridge.h"
#include "pythonmodule.h"
#include "textargument.h"

#include "PyVlAttribute/PyVlAttribute.h"

#include <string>

// The holder of the ManipulatorBridge by itself, for tests that call each of its operations as the
// host would.
//
//     create() -> holder
//     setValue(holder, location, name, value, isFinal) -> bool    isNodeEditable(holder, node) ->
//     bool updateOp(holder, opId) and updateOp(holder, opId, text)      getValue(holder, location,
//     name) getManipulationCommitId(holder) -> int openManipulationGroup, closeManipulationGroup,
//     cleanupLiveAttributes(holder, location) callTwice(holder, location, node) -> bool
//     cleanupLiveAttributes, then isNodeEditable

namespace {

using pythoncompat::newInt;
using pythoncompat::parseArguments;
using pythoncompat::returnBool;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using ViewerAPI::PyManipulatorBridge;

constexpr char kCapsule[] = "BridgeHolder";

PyManipulatorBridge& holderOf(PyObject* capsule) {
    return *static_cast<PyManipulatorBridge*>(PyCapsule_GetPointer(capsule, kCapsule));
}

PyObject* create(PyObject*, PyObject*) {
    return PyCapsule_New(new PyManipulatorBridge, kCapsule,
                         [](PyObject* capsule) { delete &holderOf(capsule); });
}

PyObject* setValue(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    PyObject* value = nullptr;  // borrowed
    TextArgument location;
    TextArgument name;
    int isFinal = 0;
    if (!parseArguments(args, "OssOi", &holder, location, name, &value, &isFinal)) {
        return nullptr;
    }
    return returnBool(holderOf(holder).setValue(
        location.get(), name.get(), PyVlAttribute::AttributeFromPyObject(value), isFinal != 0));
}

PyObject* isNodeEditable(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    TextArgument node;
    if (!parseArguments(args, "Os", &holder, node)) {
        return nullptr;
    }
    return returnBool(holderOf(holder).isNodeEditable(node.get()));
}

PyObject* updateOp(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    int opId = 0;
    TextArgument text;
    if (!parseArguments(args, "Oi|s", &holder, &opId, text)) {
        return nullptr;
    }
    if (text) {
        holderOf(holder).updateOp(opId, text.get());
    } else {
        holderOf(holder).updateOp(opId);
    }
    return returnNone();
}

PyObject* getValue(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    TextArgument location;
    TextArgument name;
    if (!parseArguments(args, "Oss", &holder, location, name)) {
        return nullptr;
    }
    return pythoncompat::returnValue(PyVlAttribute::PyAttributeFromAttribute(
        holderOf(holder).getValue(location.get(), name.get())));
}

PyObject* getManipulationCommitId(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &holder)) {
        return nullptr;
    }
    return pythoncompat::returnValue(newInt(holderOf(holder).getManipulationCommitId()));
}

template <void (PyManipulatorBridge::*Operation)(const std::string&)>
PyObject* withLocation(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    TextArgument location;
    if (!parseArguments(args, "Os", &holder, location)) {
        return nullptr;
    }
    (holderOf(holder).*Operation)(location.get());
    return returnNone();
}

PyObject* callTwice(PyObject*, PyObject* args) {
    PyObject* holder = nullptr; // borrowed
    TextArgument location;
    TextArgument node;
    if (!parseArguments(args, "Oss", &holder, location, node)) {
        return nullptr;
    }
    holderOf(holder).cleanupLiveAttributes(location.get());
    return returnBool(holderOf(holder).isNodeEditable(node.get()));
}

PyMethodDef functions[] = {
    {"create", create, METH_NOARGS, nullptr},
    {"setValue", setValue, METH_VARARGS, nullptr},
    {"isNodeEditable", isNodeEditable, METH_VARARGS, nullptr},
    {"updateOp", updateOp, METH_VARARGS, nullptr},
    {"getValue", getValue, METH_VARARGS, nullptr},
    {"getManipulationCommitId", getManipulationCommitId, METH_VARARGS, nullptr},
    {"openManipulationGroup", withLocation<&PyManipulatorBridge::openManipulationGroup>,
     METH_VARARGS, nullptr},
    {"closeManipulationGroup", withLocation<&PyManipulatorBridge::closeManipulationGroup>,
     METH_VARARGS, nullptr},
    {"cleanupLiveAttributes", withLocation<&PyManipulatorBridge::cleanupLiveAttributes>,
     METH_VARARGS, nullptr},
    {"callTwice", callTwice, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PYTHONCOMPAT_MODULE(BridgeHolder) {
    if (!PyVlAttribute::importApi()) {
        return nullptr;
    }
    return pythoncompat::createModule("BridgeHolder", functions, "A ManipulatorBridge's holder.");
}
