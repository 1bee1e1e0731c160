#include "pyviewportmanipulators.h"

#include "attributearguments.h"
#include "pymanipulatorobject.h"
#include "stringlistargument.h"
#include "textargument.h"
#include "vlmanipulatorhost.h"
#include "vlviewporthost.h"

#include "VlAttribute/StringAttribute.h"

#include <cstdint>
#include <span>

namespace ViewerAPI {

using pythoncompat::parseArguments;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;

namespace {

// The one argument is an index. False with an error set when it is not; `manipulator` is null for
// an index that none has.
bool parseManipulator(PyViewportObject& self, PyObject* args,
                      VlManipulatorHostStruct*& manipulator) {
    int index = -1;
    if (!PyArg_ParseTuple(args, "i", &index)) {
        return false;
    }
    manipulator = index < 0
                      ? nullptr
                      : self.host->getActiveManipulatorByIndex(static_cast<std::uint32_t>(index));
    return true;
}

} // namespace

PyObject* activateManipulator(PyViewportObject& self, PyObject* args) {
    TextArgument pluginName;
    PyObject* list = nullptr; // borrowed
    int signal = 0;
    // What is no list gets the parser's own error here, unlike in the methods of delegates: scripts
    // know it so.
    if (!parseArguments(args, "sO!i", pluginName, &PyList_Type, &list, &signal)) {
        return nullptr;
    }
    StringListArgument paths;
    if (!paths.store(list, "Second argument must be a sequence of strings.")) {
        return nullptr;
    }
    const VlAttribute::StringAttribute attribute(
        std::span<const char* const>(paths.paths(), paths.count()));
    self.host->activateManipulator(pluginName.get(), attribute, signal != 0);
    return returnNone();
}

PyObject* deactivateManipulator(PyViewportObject& self, PyObject* args) {
    TextArgument pluginName;
    int signal = 0;
    if (!parseArguments(args, "si", pluginName, &signal)) {
        return nullptr;
    }
    self.host->deactivateManipulator(pluginName.get(), signal != 0);
    return returnNone();
}

PyObject* deactivateAllManipulators(PyViewportObject& self, PyObject* args) {
    int signal = 0;
    if (!PyArg_ParseTuple(args, "i", &signal)) {
        return nullptr;
    }
    self.host->deactivateAllManipulators(signal != 0);
    return returnNone();
}

PyObject* getNumberOfActiveManipulators(PyViewportObject& self) {
    return pythoncompat::newInt(self.host->getNumberOfActiveManipulators());
}

PyObject* getActiveManipulatorByIndex(PyViewportObject& self, PyObject* args) {
    VlManipulatorHostStruct* manipulator = nullptr;
    if (!parseManipulator(self, args, manipulator)) {
        return nullptr;
    }
    return manipulator ? wrapManipulator(manipulator, reinterpret_cast<PyObject*>(&self))
                       : returnNone();
}

PyObject* getActiveManipulatorTags(PyViewportObject& self, PyObject* args) {
    VlManipulatorHostStruct* manipulator = nullptr;
    if (!parseManipulator(self, args, manipulator)) {
        return nullptr;
    }
    return newPyAttribute(manipulator ? manipulator->getTags() : VlAttribute::GroupAttribute());
}

PyObject* getActiveManipulatorPluginName(PyViewportObject& self, PyObject* args) {
    VlManipulatorHostStruct* manipulator = nullptr;
    if (!parseManipulator(self, args, manipulator)) {
        return nullptr;
    }
    return manipulator ? pythoncompat::newText(manipulator->pluginName.c_str()) : returnNone();
}

} // namespace ViewerAPI
