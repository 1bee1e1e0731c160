#include "pythonmodule.h"
#include "textargument.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "VlAttribute/Attribute.h"
#include "VlPluginSystem/PluginManager.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraHostSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

// Plug-ins of six kinds whose every entry asks a Python function, for tests of the bindings:
// "ScriptedDelegate", "ScriptedComponent", "ScriptedViewport", "ScriptedLayer", "ScriptedCamera";
// and two Manipulators, "ScriptedMove" and "ScriptedAim".
//
//     setHook(hook)    hook(plugin, host, entry, arguments) -> answer, for every entry of every
//                      instance; host is a number that stands for the host object, 0 for an entry
//                      without an instance
//     setEventHook(hook)   hook(path, attributes) for every location event of a delegate's plug-in,
//                      after setHook's
//     StandardError    raised in the hook, it leaves the entry as a std::runtime_error of its text
//     OtherError       raised in the hook, it leaves the entry as an int
//
// What a delegate's plug-in may ask of its host, by the host suite; an exception of the host comes
// back as StandardError, or as OtherError what is none:
//
//     callPythonCallback(host, name, value) -> attribute
//     selectLocation(host, path), selectLocations(host, [path]), getSelectedLocations(host)
//     activateSourceLocations(host, [path])
//     setManipulatedAttribute(host, path, name, value, isFinal) -> bool
//     openManipulationGroup(host, path), closeManipulationGroup(host, path)
//     removeComponentByIndex(host, index), removeViewportByIndex(host, index)
//
// A listed plug-in that can't be had any more:
//
//     unregisterManipulator(name), registerManipulators()

namespace {

using pythoncompat::newText;
using pythoncompat::parseArguments;
using pythoncompat::returnNone;
using pythoncompat::TextArgument;
using VlAttribute::Attribute;

PyObject* hook = nullptr;
PyObject* eventHook = nullptr;
PyObject* standardError = nullptr;
PyObject* otherError = nullptr;

struct Instance {
    const char* plugin;
    void* host;
};

// An attribute that stays the caller's, as one that is handed over is an Attribute here.
struct Borrowed {
    VlAttributeStruct* handle;
};

PyObject* toPython(int value) {
    return pythoncompat::newInt(value);
}
PyObject* toPython(std::uint64_t value) {
    return PyLong_FromUnsignedLongLong(value);
}
PyObject* toPython(const char* text) {
    return newText(text);
}
PyObject* toPython(const Attribute& value) {
    return PyVlAttribute::PyAttributeFromAttribute(value);
}
PyObject* toPython(Borrowed value) {
    return toPython(Attribute::CreateAndRetain(value.handle));
}

PyObject* toPythonList(const char* const* paths, std::uint32_t count) {
    PyObject* list = PyList_New(static_cast<Py_ssize_t>(count));
    for (std::uint32_t i = 0; i < count; ++i) {
        PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), newText(paths[i]));
    }
    return list;
}

// Turns the Python error that is set into the exception that it stands for.
[[noreturn]] void throwHookError() {
    if (PyErr_ExceptionMatches(otherError)) {
        PyErr_Clear();
        throw 42;
    }
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    std::string text;
    PyObject* description = PyObject_Str(value);
    if (!description || !pythoncompat::textAsString(description, text)) {
        PyErr_Clear();
        text = "no description";
    }
    Py_XDECREF(description);
    Py_XDECREF(type);
    Py_XDECREF(value);
    Py_XDECREF(traceback);
    throw std::runtime_error(text);
}

// The hook's answer, a new reference; takes over `arguments`.
PyObject* askHook(const char* plugin, void* host, const char* entry, PyObject* arguments) {
    // The entry may run while an error is pending, which is not the hook's.
    const pythoncompat::PendingErrorAside earlierError;
    if (!hook) {
        Py_DECREF(arguments);
        return returnNone();
    }
    char format[] = "sNsN"; // not const on Python 2
    PyObject* answer =
        PyObject_CallFunction(hook, format, plugin, PyLong_FromVoidPtr(host), entry, arguments);
    if (!answer) {
        throwHookError();
    }
    return answer;
}

void tellEventHook(const ViewerLocationEvent& event) {
    if (!eventHook) {
        return;
    }
    const pythoncompat::PendingErrorAside earlierError;
    char format[] = "sN";
    PyObject* answer = PyObject_CallFunction(eventHook, format, event.locationPath,
                                             toPython(Borrowed{event.attributes}));
    if (!answer) {
        throwHookError();
    }
    Py_DECREF(answer);
}

template <class Result>
Result fromAnswer(PyObject* answer) {
    if constexpr (std::is_same_v<Result, int>) {
        const int value = answer == Py_None ? 0 : static_cast<int>(PyLong_AsLong(answer));
        Py_DECREF(answer);
        return value;
    } else if constexpr (std::is_same_v<Result, VlAttributeStruct*>) {
        Attribute value = PyVlAttribute::AttributeFromPyObject(answer);
        Py_DECREF(answer);
        return value.detach();
    } else {
        Py_DECREF(answer);
    }
}

template <class Result = void, class... Arguments>
Result call(void* instance, const char* entry, const Arguments&... arguments) {
    const auto& self = *static_cast<Instance*>(instance);
    PyObject* tuple = PyTuple_New(sizeof...(arguments));
    Py_ssize_t index = 0;
    (PyTuple_SET_ITEM(tuple, index++, toPython(arguments)), ...);
    return fromAnswer<Result>(askHook(self.plugin, self.host, entry, tuple));
}

// Null when the hook answers False.
void* create(const char* plugin, void* host) {
    PyObject* answer = askHook(plugin, host, "create", PyTuple_New(0));
    const bool isRefused = answer == Py_False;
    Py_DECREF(answer);
    return isRefused ? nullptr : new Instance{plugin, host};
}

void destroy(void* instance) {
    try {
        call(instance, "destroy");
    } catch (...) { // a destructor calls
    }
    delete static_cast<Instance*>(instance);
}

void callSelected(void* instance, const char** paths, std::uint32_t count) {
    const auto& self = *static_cast<Instance*>(instance);
    PyObject* tuple = Py_BuildValue("(N)", toPythonList(paths, count));
    fromAnswer<void>(askHook(self.plugin, self.host, "locationsSelected", tuple));
}

void setOption(void* instance, std::uint64_t id, VlAttributeStruct* value) {
    call(instance, "setOption", id, Attribute::CreateAndSteal(value));
}
VlAttributeStruct* getOption(void* instance, std::uint64_t id) {
    return call<VlAttributeStruct*>(instance, "getOption", id);
}
void setup(void* instance) {
    call(instance, "setup");
}
void cleanup(void* instance) {
    call(instance, "cleanup");
}
void freeze(void* instance) {
    call(instance, "freeze");
}
void thaw(void* instance) {
    call(instance, "thaw");
}
void draw(void* instance) {
    call(instance, "draw");
}
void resize(void* instance, int width, int height) {
    call(instance, "resize", width, height);
}
void hover(void* instance, int isHovering, int x, int y) {
    call(instance, "hover", isHovering, x, y);
}
int isProcessing(void* instance) {
    return call<int>(instance, "isProcessing");
}
VlAttributeStruct* getBounds(void* instance, const char* path) {
    return call<VlAttributeStruct*>(instance, "getBounds", path);
}
VlAttributeStruct* computeExtent(void* instance, const char* path) {
    return call<VlAttributeStruct*>(instance, "computeExtent", path);
}

const ViewerDelegatePluginSuite kDelegate{
    .create = [](void* host) { return create("ScriptedDelegate", host); },
    .destroy = destroy,
    .locationEvent =
        [](void* instance, const ViewerLocationEvent* event, int handled) {
            call(instance, "locationEvent", event->locationPath, handled);
            tellEventHook(*event);
        },
    .sourceLocationEvent =
        [](void* instance, const ViewerLocationEvent* event) {
            call(instance, "sourceLocationEvent", event->locationPath);
        },
    .locationsSelected = callSelected,
    .setOption = setOption,
    .getOption = getOption,
    .freeze = freeze,
    .thaw = thaw,
    .setup = setup,
    .cleanup = cleanup,
    .isProcessing = isProcessing,
    .getBounds = getBounds,
    .computeExtent = computeExtent,
};

const ViewerDelegateComponentPluginSuite kComponent{
    .create = [](void* host) { return create("ScriptedComponent", host); },
    .destroy = destroy,
    .locationEvent =
        [](void* instance, const ViewerLocationEvent* event, int handled) {
            return call<int>(instance, "locationEvent", event->locationPath, handled);
        },
    .locationsSelected = callSelected,
    .setOption = setOption,
    .getOption = getOption,
    .setup = setup,
    .cleanup = cleanup,
    .isProcessing = isProcessing,
    .getBounds = getBounds,
    .computeExtent = computeExtent,
};

const ViewportPluginSuite kViewport{
    .create = [](void* host) { return create("ScriptedViewport", host); },
    .destroy = destroy,
    .setup = setup,
    .cleanup = cleanup,
    // Borrows the event.
    .event = [](void* instance,
                VlAttributeStruct* event) { return call<int>(instance, "event", Borrowed{event}); },
    .draw = draw,
    .resize = resize,
    .hover = hover,
    .setOption = setOption,
    .getOption = getOption,
    .freeze = freeze,
    .thaw = thaw,
    .pickerDraw = [](void*, int, int, int, int, VlAttributeStruct*) {},
    .customPick = [](void*, int, int, int, int, int, VlAttributeStruct**, float*) { return 0; },
};

const ViewportLayerPluginSuite kLayer{
    .create = [](void* host) { return create("ScriptedLayer", host); },
    .destroy = destroy,
    .setup = setup,
    .cleanup = cleanup,
    // Owns the event.
    .event =
        [](void* instance, VlAttributeStruct* event) {
            return call<int>(instance, "event", Attribute::CreateAndSteal(event));
        },
    .draw = draw,
    .resize = resize,
    .hover = hover,
    .freeze = freeze,
    .thaw = thaw,
    .setOption = setOption,
    .getOption = getOption,
    .pickerDraw = [](void*, int, int, int, int, VlAttributeStruct*) {},
    .usesPickingCache = [](void*) { return 0; },
    .customPick = [](void*, int, int, int, int, int, VlAttributeStruct**, float*) { return 0; },
};

ViewportCameraPluginSuite makeCamera() {
    // Some slots of this table have no name of ours.
    ViewportCameraPluginSuite suite{};
    suite.create = [](void* host) { return create("ScriptedCamera", host); };
    suite.destroy = destroy;
    suite.getCameraTypeID = [](void* instance) { return call<int>(instance, "getCameraTypeID"); };
    suite.setViewportDimensions = [](void* instance, int width, int height) {
        call(instance, "setViewportDimensions", width, height);
    };
    suite.setOption = setOption;
    suite.getOption = getOption;
    suite.setup = [](void* instance, VlAttributeStruct* camera) {
        call(instance, "setup", Attribute::CreateAndSteal(camera));
    };
    suite.asAttribute = [](void* instance) {
        return call<VlAttributeStruct*>(instance, "asAttribute");
    };
    suite.setDirty = [](void* instance, int dirtyBits) { call(instance, "setDirty", dirtyBits); };
    return suite;
}

const ViewportCameraPluginSuite kCamera = makeCamera();

template <const char* plugin>
ManipulatorPluginSuite makeManipulator() {
    ManipulatorPluginSuite suite{};
    suite.create = [](void* host) { return create(plugin, host); };
    suite.destroy = destroy;
    suite.setup = setup;
    // Borrows the event.
    suite.event = [](void* instance, VlAttributeStruct* event) {
        return call<int>(instance, "event", Borrowed{event});
    };
    suite.draw = draw;
    suite.pickerDraw = [](void* instance, std::uint64_t id) { call(instance, "pickerDraw", id); };
    suite.setOption = setOption;
    suite.getOption = getOption;
    suite.matches = [](VlAttributeStruct* location) {
        PyObject* arguments = Py_BuildValue("(N)", toPython(Borrowed{location}));
        return fromAnswer<int>(askHook(plugin, nullptr, "matches", arguments));
    };
    suite.getTags = [] {
        return fromAnswer<VlAttributeStruct*>(askHook(plugin, nullptr, "getTags", PyTuple_New(0)));
    };
    return suite;
}

constexpr char kMoveName[] = "ScriptedMove";
constexpr char kAimName[] = "ScriptedAim";
const ManipulatorPluginSuite kMove = makeManipulator<kMoveName>();
const ManipulatorPluginSuite kAim = makeManipulator<kAimName>();

const VlPluginRecord kManipulators[] = {
    {"ManipulatorPlugin", kMoveName, 2, &kMove},
    {"ManipulatorPlugin", "WithoutSuite", 2, nullptr},
    {"ManipulatorPlugin", kAimName, 2, &kAim},
};

// A delegate whose table is missing, and a plug-in that is registered under one kind only.
const VlPluginRecord kRecords[] = {
    {"ViewerDelegatePlugin", "ScriptedDelegate", 3, &kDelegate},
    {"ViewerDelegateComponentPlugin", "ScriptedComponent", 2, &kComponent},
    {"ViewportPlugin", "ScriptedViewport", 2, &kViewport},
    {"ViewportLayerPlugin", "ScriptedLayer", 2, &kLayer},
    {"ViewportCameraPlugin", "ScriptedCamera", 2, &kCamera},
    {"ViewerDelegatePlugin", "WithoutSuite", 3, nullptr},
    {"ViewerDelegateComponentPlugin", "WithoutSuite", 2, nullptr},
    {"ViewportPlugin", "WithoutSuite", 2, nullptr},
    {"ViewportLayerPlugin", "WithoutSuite", 2, nullptr},
    {"ViewportCameraPlugin", "WithoutSuite", 2, nullptr},
};

// ---- What the plug-ins may ask of the host ----

const ViewerDelegateHostSuite& delegateHost() {
    return *static_cast<const ViewerDelegateHostSuite*>(PluginManager::getHostSuite(
        VL_VIEWER_DELEGATE_HOST_SUITE, VL_VIEWER_DELEGATE_HOST_SUITE_VERSION));
}

template <class Body>
PyObject* withExceptions(Body&& body) {
    try {
        return pythoncompat::returnValue(body());
    } catch (const std::exception& exception) {
        PyObject* text = newText(exception.what());
        PyErr_SetObject(standardError, text);
        Py_XDECREF(text);
        return nullptr;
    } catch (...) {
        PyErr_SetNone(otherError);
        return nullptr;
    }
}

PyObject* callPythonCallback(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    TextArgument name;
    PyObject* value = Py_None; // borrowed
    if (!parseArguments(args, "KsO", &host, name, &value)) {
        return nullptr;
    }
    return withExceptions([&]() {
        const Attribute argument = PyVlAttribute::AttributeFromPyObject(value);
        return toPython(Attribute::CreateAndSteal(delegateHost().callPythonCallback(
            reinterpret_cast<void*>(host), name.get(), argument.getHandle())));
    });
}

// An operation of the host with a path.
template <auto Entry>
PyObject* withPath(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    TextArgument path;
    if (!parseArguments(args, "Ks", &host, path)) {
        return nullptr;
    }
    return withExceptions([&]() {
        (delegateHost().*Entry)(reinterpret_cast<void*>(host), path.get());
        return returnNone();
    });
}

// An operation of the host with an index.
template <auto Entry>
PyObject* withIndex(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    unsigned index = 0;
    if (!PyArg_ParseTuple(args, "KI", &host, &index)) {
        return nullptr;
    }
    return withExceptions([&]() {
        (delegateHost().*Entry)(reinterpret_cast<void*>(host), index);
        return returnNone();
    });
}

// An operation of the host with a list of paths.
template <auto Entry>
PyObject* withPaths(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    PyObject* list = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "KO!", &host, &PyList_Type, &list)) {
        return nullptr;
    }
    std::vector<TextArgument> texts(static_cast<std::size_t>(PyList_GET_SIZE(list)));
    std::vector<const char*> paths;
    for (TextArgument& text : texts) {
        if (!text.store(PyList_GET_ITEM(list, static_cast<Py_ssize_t>(paths.size())))) {
            return nullptr;
        }
        paths.push_back(text.get());
    }
    return withExceptions([&]() {
        (delegateHost().*Entry)(reinterpret_cast<void*>(host), paths.data(),
                                static_cast<std::uint32_t>(paths.size()));
        return returnNone();
    });
}

PyObject* setManipulatedAttribute(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    TextArgument path;
    TextArgument name;
    PyObject* value = nullptr;   // borrowed
    PyObject* isFinal = nullptr; // borrowed
    if (!parseArguments(args, "KssOO", &host, path, name, &value, &isFinal)) {
        return nullptr;
    }
    return withExceptions([&]() {
        const Attribute attribute = PyVlAttribute::AttributeFromPyObject(value);
        return PyBool_FromLong(delegateHost().setManipulatedAttribute(
            reinterpret_cast<void*>(host), path.get(), name.get(), attribute.getHandle(),
            PyObject_IsTrue(isFinal)));
    });
}

PyObject* getSelectedLocations(PyObject*, PyObject* args) {
    unsigned long long host = 0;
    if (!PyArg_ParseTuple(args, "K", &host)) {
        return nullptr;
    }
    return withExceptions([&]() {
        return toPython(Attribute::CreateAndSteal(
            delegateHost().getSelectedLocations(reinterpret_cast<void*>(host))));
    });
}

void unregisterManipulatorNamed(const char* name) {
    VlPluginSystem::unregisterPlugin("ManipulatorPlugin", name, 2);
}

PyObject* unregisterManipulator(PyObject*, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    unregisterManipulatorNamed(name.get());
    return returnNone();
}

// All of them anew, in their order.
PyObject* registerManipulators(PyObject*, PyObject*) {
    for (const VlPluginRecord& record : kManipulators) {
        unregisterManipulatorNamed(record.name);
        VlPluginSystem::registerPlugin(record);
    }
    return returnNone();
}

template <PyObject** Hook>
PyObject* setHook(PyObject*, PyObject* args) {
    PyObject* callable = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &callable)) {
        return nullptr;
    }
    Py_XINCREF(callable);
    Py_XDECREF(*Hook);
    *Hook = callable;
    return returnNone();
}

PyMethodDef functions[] = {
    {"setHook", setHook<&hook>, METH_VARARGS, nullptr},
    {"setEventHook", setHook<&eventHook>, METH_VARARGS, nullptr},
    {"callPythonCallback", callPythonCallback, METH_VARARGS, nullptr},
    {"selectLocation", withPath<&ViewerDelegateHostSuite::selectLocation>, METH_VARARGS, nullptr},
    {"selectLocations", withPaths<&ViewerDelegateHostSuite::selectLocations>, METH_VARARGS,
     nullptr},
    {"activateSourceLocations", withPaths<&ViewerDelegateHostSuite::activateSourceLocations>,
     METH_VARARGS, nullptr},
    {"getSelectedLocations", getSelectedLocations, METH_VARARGS, nullptr},
    {"setManipulatedAttribute", setManipulatedAttribute, METH_VARARGS, nullptr},
    {"openManipulationGroup", withPath<&ViewerDelegateHostSuite::openManipulationGroup>,
     METH_VARARGS, nullptr},
    {"closeManipulationGroup", withPath<&ViewerDelegateHostSuite::closeManipulationGroup>,
     METH_VARARGS, nullptr},
    {"removeComponentByIndex", withIndex<&ViewerDelegateHostSuite::removeComponentByIndex>,
     METH_VARARGS, nullptr},
    {"removeViewportByIndex", withIndex<&ViewerDelegateHostSuite::removeViewportByIndex>,
     METH_VARARGS, nullptr},
    {"unregisterManipulator", unregisterManipulator, METH_VARARGS, nullptr},
    {"registerManipulators", registerManipulators, METH_NOARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PYTHONCOMPAT_MODULE(ScriptedPlugins) {
    if (!PyVlAttribute::importApi()) {
        return nullptr;
    }
    for (const VlPluginRecord& record : kRecords) {
        VlPluginSystem::registerPlugin(record);
    }
    Py_XDECREF(registerManipulators(nullptr, nullptr));
    PyObject* module = pythoncompat::createModule("ScriptedPlugins", functions,
                                                  "Plug-ins whose entries ask a Python function.");
    char standardName[] = "ScriptedPlugins.StandardError";
    char otherName[] = "ScriptedPlugins.OtherError";
    standardError = PyErr_NewException(standardName, nullptr, nullptr);
    otherError = PyErr_NewException(otherName, nullptr, nullptr);
    Py_INCREF(standardError);
    Py_INCREF(otherError);
    PyModule_AddObject(module, "StandardError", standardError);
    PyModule_AddObject(module, "OtherError", otherError);
    return module;
}
