#include "pythonmodule.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "VlScenelibEngine/OpType.h"
#include "VlScenelibEngine/ScenelibEngine.h"
#include "boundary.h"
#include "transactiontype.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace {

namespace ApplicationGraph = VlScenelibEngine::ApplicationGraph;

/// One edit, applied at once.
template <typename Record>
PyObject* edit(Record record, PyObject* args, PyObject* keywords) {
    return guarded([&]() -> PyObject* {
        ApplicationGraph::Transaction transaction;
        Reference result(record(transaction, args, keywords));
        if (result) {
            transaction.commit();
        }
        return result.release();
    });
}

PyObject* createOp(PyObject*, PyObject* args, PyObject* keywords) {
    return edit(recordCreateOp, args, keywords);
}

PyObject* setOpArgs(PyObject*, PyObject* args, PyObject* keywords) {
    return edit(recordSetOpArgs, args, keywords);
}

PyObject* setOpInputs(PyObject*, PyObject* args, PyObject* keywords) {
    return edit(recordSetOpInputs, args, keywords);
}

PyObject* recookLocation(PyObject*, PyObject* args, PyObject* keywords) {
    return edit(recordRecookLocation, args, keywords);
}

PyObject* waitUntilIdle(PyObject*, PyObject* args) {
    double timeout = 0;
    if (!PyArg_ParseTuple(args, "d:waitUntilIdle", &timeout)) {
        return nullptr;
    }
    if (std::isnan(timeout)) {
        PyErr_SetString(PyExc_ValueError, "waitUntilIdle: the timeout is not a number");
        return nullptr;
    }
    // Longer than anybody waits, and short enough for every clock.
    constexpr double kLongest = 1e8;
    const std::chrono::duration<double> limit(std::min(std::max(timeout, 0.0), kLongest));
    return guarded([&] {
        bool isIdle = false;
        Py_BEGIN_ALLOW_THREADS;
        isIdle = ApplicationGraph::waitUntilIdle(limit);
        Py_END_ALLOW_THREADS;
        return PyBool_FromLong(isIdle);
    });
}

PyObject* isCommitCooked(PyObject*, PyObject* args) {
    long long commitId = 0;
    if (!PyArg_ParseTuple(args, "L:isCommitCooked", &commitId)) {
        return nullptr;
    }
    return guarded([&] { return PyBool_FromLong(ApplicationGraph::isCommitCooked(commitId)); });
}

PyObject* countLocationsToCome(PyObject*, PyObject*) {
    return guarded([] { return PyLong_FromSize_t(ApplicationGraph::countLocationsToCome()); });
}

PyObject* getOpTypes(PyObject*, PyObject*) {
    return guarded([]() -> PyObject* {
        Reference list(PyList_New(0));
        for (const std::string& name : VlScenelibEngine::getOpTypeNames()) {
            const Reference text(list ? pythoncompat::newText(name) : nullptr);
            if (!text || PyList_Append(list.get(), text.get()) != 0) {
                return nullptr;
            }
        }
        return list.release();
    });
}

PyObject* flushCaches(PyObject*, PyObject*) {
    return guarded([] {
        ApplicationGraph::flushCaches();
        return pythoncompat::returnNone();
    });
}

const char documentation[] =
    "The application's op graph, from which viewers get their scenes.\n\n"
    "An op turns its inputs' locations into its own. Ops have ids; a delegate views one of\n"
    "them. Edits take effect at once, and what they change is cooked in the background:\n\n"
    "    import PyScenelib, ViewerAPI\n"
    "    from PyVlAttribute import GroupAttribute, StringAttribute\n"
    "    model = PyScenelib.createOp(\"Geometry.Import\", GroupAttribute(\n"
    "        (\"filePath\", StringAttribute(\"duck.dae\"))))\n"
    "    scene = PyScenelib.createOp(\"Scene.Merge\", inputs=[model])\n"
    "    delegate.setViewOp(scene)\n\n"
    "Importing this module puts the scene engine in place, which a viewer delegate needs.";

PyMethodDef functions[] = {
    {"createOp", reinterpret_cast<PyCFunction>(createOp), METH_VARARGS | METH_KEYWORDS,
     createOpDocumentation},
    {"setOpArgs", reinterpret_cast<PyCFunction>(setOpArgs), METH_VARARGS | METH_KEYWORDS,
     setOpArgsDocumentation},
    {"setOpInputs", reinterpret_cast<PyCFunction>(setOpInputs), METH_VARARGS | METH_KEYWORDS,
     setOpInputsDocumentation},
    {"recookLocation", reinterpret_cast<PyCFunction>(recookLocation), METH_VARARGS | METH_KEYWORDS,
     recookLocationDocumentation},
    {"waitUntilIdle", waitUntilIdle, METH_VARARGS,
     "waitUntilIdle(timeoutSeconds) -> bool\n\n"
     "Waits until everything asked for is cooked and can be fetched. False when that takes\n"
     "longer; 0 only asks. Other Python threads run meanwhile."},
    {"isCommitCooked", isCommitCooked, METH_VARARGS,
     "isCommitCooked(commitId) -> bool\n\n"
     "Whether all that a commit affects has been cooked again: no event that a viewer fetches\n"
     "from now on is older than the commit. Other cooking may still be under way. False for\n"
     "an id that no commit has had yet."},
    {"countLocationsToCome", countLocationsToCome, METH_NOARGS,
     "countLocationsToCome() -> int\n\n"
     "How many locations viewers want that are not there yet, as far as they are known: they\n"
     "are to be cooked, or wait for a file that is being read. What is below them comes on\n"
     "top, so that the number grows and shrinks; 0 when nothing is left to do. Locations\n"
     "that are there and are cooked again for an edit don't count, unless it replaced what is\n"
     "above them. All viewers of the process count, and a location for each of their clients\n"
     "that wants it."},
    {"getOpTypes", getOpTypes, METH_NOARGS,
     "getOpTypes() -> list of str\n\nThe names of the op types that are registered."},
    {"flushCaches", flushCaches, METH_NOARGS,
     "flushCaches()\n\n"
     "Drops what is memoised: every cooked location is cooked and reported again, files are\n"
     "read again."},
    {}};

} // namespace

PYTHONCOMPAT_MODULE(PyScenelib) {
    if (!PyVlAttribute::importApi()) {
        return nullptr;
    }
    const bool isRegistered = guarded(
        [] {
            VlScenelibEngine::registerScenelibEngine();
            return true;
        },
        false);
    if (!isRegistered) {
        return nullptr;
    }
    PyObject* module = pythoncompat::createModule("PyScenelib", functions, documentation);
    if (module && !addTransactionType(module)) {
        pythoncompat::abandonModule(module);
        return nullptr;
    }
    return module;
}
