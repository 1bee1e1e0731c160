#include "pymanipulatorbridge.h"

#include "attributearguments.h"

namespace ViewerAPI {

using pythoncompat::newInt;
using pythoncompat::newText;
using pythoncompat::PendingErrorAside;
using VlAttribute::Attribute;

namespace {

// The module `ViewerAPI`: imported by the first delegate that can, and kept for ever.
PyObject* applicationModule() {
    static PyObject* module = nullptr;
    if (!module) {
        const PyReference name(newText("ViewerAPI"));
        module = name ? PyImport_Import(name.get()) : nullptr;
        if (!module) {
            PyErr_Print();
        }
    }
    return module;
}

bool isBound(const PyReference& method) {
    if (method) {
        return true;
    }
    PyErr_SetString(PyExc_RuntimeError, "This method of the ManipulatorBridge could not be bound");
    return false;
}

// Each of these gives a new reference, or null with an error set. An argument that could not be
// made is null, and its error the call's.

PyReference call(const PyReference& method) {
    return PyReference(isBound(method) ? PyObject_CallObject(method.get(), nullptr) : nullptr);
}

PyReference call(const PyReference& method, const PyReference& argument) {
    return PyReference(isBound(method) && argument
                           ? pythoncompat::callOneArgument(method.get(), argument.get())
                           : nullptr);
}

template <class... Arguments>
PyReference call(const PyReference& method, const PyReference& first, const PyReference& second,
                 const Arguments&... others) {
    if (!isBound(method) || !(first && second && (... && others))) {
        return PyReference();
    }
    const PyReference arguments(
        PyTuple_Pack(2 + sizeof...(others), first.get(), second.get(), others.get()...));
    return PyReference(arguments ? PyObject_CallObject(method.get(), arguments.get()) : nullptr);
}

// True when no error is set; prints one that is.
bool succeeded() {
    if (PyErr_Occurred()) {
        PyErr_Print();
        return false;
    }
    return true;
}

// The truth of a result that may be null with an error set.
bool isTrue(const PyReference& result) {
    const bool truth = result && PyObject_IsTrue(result.get()) == 1;
    return succeeded() && truth;
}

} // namespace

PyManipulatorBridge::PyManipulatorBridge() {
    const PendingErrorAside earlierError;
    bind();
}

PyManipulatorBridge::~PyManipulatorBridge() {
    getValueMethod.reset();
    setValueMethod.reset();
    isNodeEditableMethod.reset();
    updateOpMethod.reset();
    getManipulationCommitIdMethod.reset();
    bridge.reset();
    openManipulationGroupMethod.reset();
    closeManipulationGroupMethod.reset();
    cleanupLiveAttributesMethod.reset();
}

void PyManipulatorBridge::bind() {
    PyObject* module = applicationModule(); // borrowed
    if (!module) {
        return;
    }
    const PyReference bridgeClass(PyObject_GetAttrString(module, "ManipulatorBridge"));
    if (!succeeded()) {
        return;
    }
    bridge = PyReference(PyObject_CallObject(bridgeClass.get(), nullptr));
    if (!succeeded()) {
        return;
    }
    const struct {
        const char* name;
        PyReference& method;
    } methods[] = {
        {"getValue", getValueMethod},
        {"setValue", setValueMethod},
        {"isNodeEditable", isNodeEditableMethod},
        {"updateOp", updateOpMethod},
        {"getManipulationCommitId", getManipulationCommitIdMethod},
        {"openManipulationGroup", openManipulationGroupMethod},
        {"closeManipulationGroup", closeManipulationGroupMethod},
        {"cleanupLiveAttributes", cleanupLiveAttributesMethod},
    };
    for (const auto& entry : methods) {
        entry.method = PyReference(PyObject_GetAttrString(bridge.get(), entry.name));
        if (!succeeded()) {
            return;
        }
    }
}

bool PyManipulatorBridge::setValue(const std::string& location, const std::string& attributeName,
                                   const Attribute& value, bool isFinal) {
    const PendingErrorAside earlierError;
    return isTrue(call(setValueMethod, PyReference(newText(location)),
                       PyReference(newText(attributeName)), PyReference(newPyAttribute(value)),
                       PyReference(newInt(isFinal ? 1 : 0))));
}

bool PyManipulatorBridge::isNodeEditable(const char* nodeName) {
    const PendingErrorAside earlierError;
    return isTrue(call(isNodeEditableMethod, PyReference(newText(nodeName))));
}

void PyManipulatorBridge::updateOp(int opId) {
    const PendingErrorAside earlierError;
    call(updateOpMethod, PyReference(newInt(opId)));
    succeeded();
}

void PyManipulatorBridge::updateOp(int opId, const std::string& text) {
    const PendingErrorAside earlierError;
    call(updateOpMethod, PyReference(newInt(opId)), PyReference(newText(text)));
    succeeded();
}

Attribute PyManipulatorBridge::getValue(const std::string& location,
                                        const std::string& attributeName) {
    const PendingErrorAside earlierError;
    call(getValueMethod, PyReference(newText(location)), PyReference(newText(attributeName)));
    succeeded();
    return Attribute();
}

std::int32_t PyManipulatorBridge::getManipulationCommitId() {
    const PendingErrorAside earlierError;
    const PyReference result = call(getManipulationCommitIdMethod);
    const long commitId = result ? PyLong_AsLong(result.get()) : -1;
    return succeeded() ? static_cast<std::int32_t>(commitId) : -2;
}

void PyManipulatorBridge::openManipulationGroup(const std::string& location) {
    const PendingErrorAside earlierError;
    call(openManipulationGroupMethod, PyReference(newText(location)));
}

void PyManipulatorBridge::closeManipulationGroup(const std::string& location) {
    const PendingErrorAside earlierError;
    call(closeManipulationGroupMethod, PyReference(newText(location)));
}

void PyManipulatorBridge::cleanupLiveAttributes(const std::string& location) {
    const PendingErrorAside earlierError;
    call(cleanupLiveAttributesMethod, PyReference(newText(location)));
}

} // namespace ViewerAPI
