#include "textargument.h"

#include "VlLogging/LogSink.h"
#include "VlLogging/VlLoggerGlue.h"
#include "boundary.h"
#include "pythonmodule.h"
#include "pythonsink.h"

#include <optional>

namespace {

// Sets the error and gives nothing for a name that is none.
std::optional<LogLevel> levelOf(const char* name) {
    const auto level = logLevelFromName(name);
    if (!level) {
        PyErr_Format(PyExc_ValueError,
                     "unknown level '%.100s': it must be 'debug', 'info', 'warning', 'error' or "
                     "'off'",
                     name);
    }
    return level;
}

PyObject* setLevel(PyObject*, PyObject* args) {
    pythoncompat::TextArgument name;
    if (!pythoncompat::parseArguments(args, "s:setLevel", name)) {
        return nullptr;
    }
    const auto level = levelOf(name.get());
    if (!level) {
        return nullptr;
    }
    setLogLevel(*level);
    return pythoncompat::returnNone();
}

PyObject* getLevel(PyObject*, PyObject*) {
    return pythoncompat::newText(logLevelName(getLogLevel()));
}

PyObject* setSink(PyObject*, PyObject* args) {
    PyObject* callable = nullptr;
    if (!PyArg_ParseTuple(args, "O:setSink", &callable)) {
        return nullptr;
    }
    if (callable != Py_None && !PyCallable_Check(callable)) {
        PyErr_SetString(PyExc_TypeError, "the sink must be callable or None");
        return nullptr;
    }
    return guarded([&] {
        PythonSink::set(callable);
        return pythoncompat::returnNone();
    });
}

PyObject* getSink(PyObject*, PyObject*) {
    PyObject* const callable = PythonSink::get() ? PythonSink::get() : Py_None;
    Py_INCREF(callable);
    return callable;
}

PyObject* log(PyObject*, PyObject* args) {
    pythoncompat::TextArgument name;
    pythoncompat::TextArgument channel;
    pythoncompat::TextArgument text;
    pythoncompat::TextArgument source;
    int line = 0;
    if (!pythoncompat::parseArguments(args, "sss|si:log", name, channel, text, source, &line)) {
        return nullptr;
    }
    const auto level = levelOf(name.get());
    if (!level) {
        return nullptr;
    }
    return guarded([&] {
        VlLoggerGlue(channel.get()).log(*level, text.get(), source.get(), line);
        return pythoncompat::returnNone();
    });
}

const char documentation[] =
    "The log of the viewer and of all that stands around it.\n\n"
    "A line has a level (\"debug\", \"info\", \"warning\", \"error\"), a channel (who speaks), a "
    "text,\n"
    "and the source and line that it comes from. Lines go to stderr unless a sink is set.\n\n"
    "    import PyVlLogging\n"
    "    PyVlLogging.setLevel(\"debug\")\n"
    "    PyVlLogging.setSink(lambda level, channel, text, source, line: lines.append(text))";

PyMethodDef functions[] = {
    {"setLevel", setLevel, METH_VARARGS,
     "setLevel(name)\n\n"
     "Lets lines of this level and of graver ones pass; \"off\" lets none. \"warning\" at start."},
    {"getLevel", getLevel, METH_NOARGS, "getLevel() -> str\n\nThe level that setLevel set."},
    {"setSink", setSink, METH_VARARGS,
     "setSink(callable or None)\n\n"
     "Sends lines to callable(level, channel, text, source, line) instead of to stderr; None\n"
     "restores stderr. Lines of this thread arrive at once, those of the scene's own threads\n"
     "on the main thread, when that has waited for something or logs itself. If it raises, the "
     "error is printed, and the line goes\n"
     "to stderr; so do lines that it logs itself."},
    {"getSink", getSink, METH_NOARGS, "getSink() -> callable or None\n\nThe sink that was set."},
    {"log", log, METH_VARARGS,
     "log(level, channel, text, source=\"\", line=0)\n\n"
     "Logs a line, if its level passes."},
    {}};

} // namespace

PYTHONCOMPAT_MODULE(PyVlLogging) {
    PyObject* const module = pythoncompat::createModule("PyVlLogging", functions, documentation);
    // Other threads may log while the interpreter ends.
    Py_AtExit([] { PythonSink::abandon(); });
    return module;
}
