#include "pythonmodule.h"
#include "textargument.h"

#include "support/scriptedruntime.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <exception>
#include <string>

// The scripted scene runtime, for tests of the bindings in Python: import it before the first
// delegate is made, and say what the scene reports. Clients are numbered from 1 in the order of
// their creation, over all delegates.
//
//     report(client, path, attributes=None)   the location exists
//     reportGone(client, path)                it does not
//     takeCommands() -> [str]                 what the runtime was told since the last call
//     getNumberOfClients() -> int
//     addOp() -> int                          the id of a new op
//     setProcessing(bool)

namespace {

using pythoncompat::parseArguments;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using ViewerAPI::test::ScriptedRuntime;

ScriptedRuntime& runtime() {
    // Lasts for the process: delegates may be released after the module.
    static auto* const instance = new ScriptedRuntime;
    return *instance;
}

template <class Body>
PyObject* withExceptions(Body&& body) {
    try {
        return body();
    } catch (const std::exception& exception) {
        PyErr_SetString(PyExc_RuntimeError, exception.what());
        return nullptr;
    }
}

PyObject* report(PyObject*, PyObject* args) {
    int client = 0;
    TextArgument path;
    PyObject* attributes = Py_None; // borrowed
    if (!parseArguments(args, "is|O", &client, path, &attributes)) {
        return nullptr;
    }
    return withExceptions([&]() {
        VlAttribute::GroupAttribute group(PyVlAttribute::AttributeFromPyObject(attributes));
        runtime().client(client).report(
            path.get(), group.isValid() ? group : VlAttribute::GroupAttribute::Empty());
        return returnNone();
    });
}

PyObject* reportGone(PyObject*, PyObject* args) {
    int client = 0;
    TextArgument path;
    if (!parseArguments(args, "is", &client, path)) {
        return nullptr;
    }
    return withExceptions([&]() {
        runtime().client(client).reportGone(path.get());
        return returnNone();
    });
}

PyObject* takeCommands(PyObject*, PyObject*) {
    PyObject* lines = PyList_New(0);
    for (const std::string& command : runtime().takeCommands()) {
        PyObject* line = pythoncompat::newText(command);
        PyList_Append(lines, line);
        Py_DECREF(line);
    }
    return lines;
}

PyObject* getNumberOfClients(PyObject*, PyObject*) {
    return pythoncompat::newInt(runtime().getNumberOfClients());
}

PyObject* addOp(PyObject*, PyObject*) {
    return pythoncompat::newInt(runtime().addOp());
}

PyObject* setProcessing(PyObject*, PyObject* args) {
    int isProcessing = 0;
    if (!PyArg_ParseTuple(args, "i", &isProcessing)) {
        return nullptr;
    }
    runtime().setProcessing(isProcessing != 0);
    return returnNone();
}

PyMethodDef functions[] = {
    {"report", report, METH_VARARGS, "report(client, path, attributes=None)"},
    {"reportGone", reportGone, METH_VARARGS, "reportGone(client, path)"},
    {"takeCommands", takeCommands, METH_NOARGS, "takeCommands() -> [str]"},
    {"getNumberOfClients", getNumberOfClients, METH_NOARGS, "getNumberOfClients() -> int"},
    {"addOp", addOp, METH_NOARGS, "addOp() -> int"},
    {"setProcessing", setProcessing, METH_VARARGS, "setProcessing(bool)"},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PYTHONCOMPAT_MODULE(ScriptedScene) {
    if (!PyVlAttribute::importApi()) {
        return nullptr;
    }
    runtime();
    return pythoncompat::createModule("ScriptedScene", functions, "A scene that tests decide.");
}
