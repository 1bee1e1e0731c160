#include "textargument.h"

#include "VlPluginSystem/PluginManager.h"
#include "VlPluginSystem/VlPluginSystem.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

PyObject* loadLibrary(PyObject*, PyObject* args) {
    pythoncompat::TextArgument path;
    if (!pythoncompat::parseArguments(args, "s:loadLibrary", path)) {
        return nullptr;
    }
    return guarded([&] { return pythoncompat::newInt(VlPluginSystem::loadLibrary(path.get())); });
}

PyObject* loadDirectory(PyObject*, PyObject* args) {
    pythoncompat::TextArgument path;
    if (!pythoncompat::parseArguments(args, "s:loadDirectory", path)) {
        return nullptr;
    }
    return guarded([&] { return pythoncompat::newInt(VlPluginSystem::loadDirectory(path.get())); });
}

PyObject* getPluginNames(PyObject*, PyObject* args) {
    pythoncompat::TextArgument typeName;
    long long apiVersion = 0;
    if (!pythoncompat::parseArguments(args, "sL:getPluginNames", typeName, &apiVersion)) {
        return nullptr;
    }
    if (apiVersion < 0 || apiVersion > std::numeric_limits<std::uint32_t>::max()) {
        PyErr_SetString(PyExc_OverflowError, "apiVersion must fit 32 unsigned bits");
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        std::vector<std::string> names;
        PluginManager::getPluginNames(typeName.get(), names,
                                      static_cast<std::uint32_t>(apiVersion));
        Reference list(PyList_New(0));
        for (const std::string& name : names) {
            const Reference text(list ? pythoncompat::newText(name) : nullptr);
            if (!text || PyList_Append(list.get(), text.get()) != 0) {
                return nullptr;
            }
        }
        return list.release();
    });
}

const char documentation[] =
    "Loads plug-in libraries into the process, where the viewer finds their plug-ins.\n\n"
    "    import PyVlPluginSystem\n"
    "    PyVlPluginSystem.loadDirectory(\"plugins\")\n"
    "    PyVlPluginSystem.getPluginNames(\"ViewportLayerPlugin\", 2)   # ['MeshLayer', ...]\n\n"
    "A library that can't be loaded is no error: it is skipped, and a log line says why\n"
    "(see PyVlLogging). Plug-ins stay until the process ends.";

PyMethodDef functions[] = {
    {"loadLibrary", loadLibrary, METH_VARARGS,
     "loadLibrary(path) -> int\n\n"
     "Loads one plug-in library and returns the number of plug-ins that it brought: 0 when it\n"
     "was skipped. A library that is loaded already isn't loaded again, and counts as before.\n"
     "Of two plug-ins of the same kind, name and version the first stays."},
    {"loadDirectory", loadDirectory, METH_VARARGS,
     "loadDirectory(path) -> int\n\n"
     "Loads every file of the folder whose name ends in \".so\", in the order of their names, and\n"
     "returns the number of plug-ins."},
    {"getPluginNames", getPluginNames, METH_VARARGS,
     "getPluginNames(typeName, apiVersion) -> list of str\n\n"
     "The names of the plug-ins of a kind (\"ViewerDelegatePlugin\", \"ViewportPlugin\", ...) at\n"
     "exactly that version, in the order in which they were loaded."},
    {}};

} // namespace

PYTHONCOMPAT_MODULE(PyVlPluginSystem) {
    return pythoncompat::createModule("PyVlPluginSystem", functions, documentation);
}
