#pragma once

#include "pythoncompat.h"

#include "VlScenelibEngine/ScenelibEngine.h"

/// Adds the type Transaction to the module. False with a Python error set on failure.
bool addTransactionType(PyObject* module);

/// The edits, as a transaction's methods parse and record them: also what the module's own
/// functions do with a transaction of their own. Null with a Python error set on failure.
PyObject* recordCreateOp(VlScenelibEngine::ApplicationGraph::Transaction& transaction,
                         PyObject* args, PyObject* keywords);
PyObject* recordSetOpArgs(VlScenelibEngine::ApplicationGraph::Transaction& transaction,
                          PyObject* args, PyObject* keywords);
PyObject* recordSetOpInputs(VlScenelibEngine::ApplicationGraph::Transaction& transaction,
                            PyObject* args, PyObject* keywords);
PyObject* recordRecookLocation(VlScenelibEngine::ApplicationGraph::Transaction& transaction,
                               PyObject* args, PyObject* keywords);

/// What help() says of the edits, wherever they stand.
extern const char createOpDocumentation[];
extern const char setOpArgsDocumentation[];
extern const char setOpInputsDocumentation[];
extern const char recookLocationDocumentation[];
