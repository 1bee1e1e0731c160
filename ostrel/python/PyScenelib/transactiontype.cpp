#include "transactiontype.h"

#include "boundary.h"
#include "graphargs.h"
#include "pythonmodule.h"

#include <memory>
#include <string>
#include <vector>

using VlAttribute::GroupAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

const char createOpDocumentation[] =
    "createOp(opType, args=None, inputs=()) -> int\n\n"
    "Makes an op and returns its id. opType is one of getOpTypes(); the ops of another type\n"
    "give a location of type \"error\". args is a GroupAttribute that the type understands,\n"
    "inputs a sequence of op ids. Raises ValueError when an input does not exist.";
const char setOpArgsDocumentation[] =
    "setOpArgs(id, opType, args)\n\n"
    "Gives an op another type and other arguments (a GroupAttribute or None). Raises\n"
    "ValueError when there is no such op.";
const char setOpInputsDocumentation[] =
    "setOpInputs(id, ids)\n\n"
    "Replaces an op's inputs. Raises ValueError when one of the ops does not exist.";
const char recookLocationDocumentation[] =
    "recookLocation(id, path)\n\n"
    "Has a location of an op cooked again and reported to those who view it, also through other\n"
    "ops and also when nothing has changed there: only a report takes away a value that a\n"
    "viewer shows on top of a location. What the op has not cooked yet stands for that\n"
    "of its inputs. Raises ValueError when there is no such op.";

PyObject* recordCreateOp(Transaction& transaction, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"opType", "args", "inputs", nullptr};
    PyObject* typeObject = nullptr;
    PyObject* argsObject = Py_None;
    PyObject* inputsObject = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "O|OO:createOp", const_cast<char**>(names),
                                     &typeObject, &argsObject, &inputsObject)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        std::string opType;
        GroupAttribute opArgs;
        std::vector<int> inputs;
        if (!readOpType(typeObject, opType) || !readArgs(argsObject, opArgs) ||
            (inputsObject && !readOpIds(inputsObject, inputs))) {
            return nullptr;
        }
        return pythoncompat::newInt(transaction.createOp(opType, opArgs, inputs));
    });
}

PyObject* recordSetOpArgs(Transaction& transaction, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"id", "opType", "args", nullptr};
    PyObject* idObject = nullptr;
    PyObject* typeObject = nullptr;
    PyObject* argsObject = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OOO:setOpArgs", const_cast<char**>(names),
                                     &idObject, &typeObject, &argsObject)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        int opId = 0;
        std::string opType;
        GroupAttribute opArgs;
        if (!readOpId(idObject, opId) || !readOpType(typeObject, opType) ||
            !readArgs(argsObject, opArgs)) {
            return nullptr;
        }
        transaction.setOpArgs(opId, opType, opArgs);
        return pythoncompat::returnNone();
    });
}

PyObject* recordSetOpInputs(Transaction& transaction, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"id", "ids", nullptr};
    PyObject* idObject = nullptr;
    PyObject* inputsObject = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OO:setOpInputs", const_cast<char**>(names),
                                     &idObject, &inputsObject)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        int opId = 0;
        std::vector<int> inputs;
        if (!readOpId(idObject, opId) || !readOpIds(inputsObject, inputs)) {
            return nullptr;
        }
        transaction.setOpInputs(opId, inputs);
        return pythoncompat::returnNone();
    });
}

PyObject* recordRecookLocation(Transaction& transaction, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"id", "path", nullptr};
    PyObject* idObject = nullptr;
    PyObject* pathObject = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "OO:recookLocation", const_cast<char**>(names),
                                     &idObject, &pathObject)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        int opId = 0;
        std::string path;
        if (!readOpId(idObject, opId) || !readPath(pathObject, path)) {
            return nullptr;
        }
        transaction.recookLocation(opId, path);
        return pythoncompat::returnNone();
    });
}

namespace {

struct TransactionObject {
    PyObject_HEAD Transaction transaction;
};

Transaction& transactionOf(PyObject* self) {
    return reinterpret_cast<TransactionObject*>(self)->transaction;
}

PyObject* create(PyTypeObject* type, PyObject* args, PyObject* keywords) {
    static const char* names[] = {nullptr};
    if (!PyArg_ParseTupleAndKeywords(args, keywords, ":Transaction", const_cast<char**>(names))) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        Transaction transaction;
        PyObject* self = type->tp_alloc(type, 0);
        if (self) {
            std::construct_at(&transactionOf(self), std::move(transaction));
        }
        return self;
    });
}

void dealloc(PyObject* self) {
    std::destroy_at(&transactionOf(self));
    Py_TYPE(self)->tp_free(self);
}

PyObject* createOp(PyObject* self, PyObject* args, PyObject* keywords) {
    return recordCreateOp(transactionOf(self), args, keywords);
}

PyObject* setOpArgs(PyObject* self, PyObject* args, PyObject* keywords) {
    return recordSetOpArgs(transactionOf(self), args, keywords);
}

PyObject* setOpInputs(PyObject* self, PyObject* args, PyObject* keywords) {
    return recordSetOpInputs(transactionOf(self), args, keywords);
}

PyObject* recookLocation(PyObject* self, PyObject* args, PyObject* keywords) {
    return recordRecookLocation(transactionOf(self), args, keywords);
}

PyObject* commit(PyObject* self, PyObject*) {
    return guarded([&] { return PyLong_FromLongLong(transactionOf(self).commit()); });
}

PyMethodDef methods[] = {
    {"createOp", reinterpret_cast<PyCFunction>(createOp), METH_VARARGS | METH_KEYWORDS,
     createOpDocumentation},
    {"setOpArgs", reinterpret_cast<PyCFunction>(setOpArgs), METH_VARARGS | METH_KEYWORDS,
     setOpArgsDocumentation},
    {"setOpInputs", reinterpret_cast<PyCFunction>(setOpInputs), METH_VARARGS | METH_KEYWORDS,
     setOpInputsDocumentation},
    {"recookLocation", reinterpret_cast<PyCFunction>(recookLocation), METH_VARARGS | METH_KEYWORDS,
     recookLocationDocumentation},
    {"commit", commit, METH_NOARGS,
     "commit() -> int\n\n"
     "Applies what was recorded, in order, and empties the transaction. Returns the commit's\n"
     "id; ids grow. Raises ValueError, and applies nothing, when ops would form a cycle."},
    {}};

const char documentation[] =
    "Transaction()\n\n"
    "Edits of the op graph that are applied together, so that nothing is cooked in between.\n"
    "What createOp makes exists for others once it is committed.";

PyTypeObject transactionType =
    pythoncompat::makeType("PyScenelib.Transaction", sizeof(TransactionObject));

} // namespace

bool addTransactionType(PyObject* module) {
    transactionType.tp_dealloc = dealloc;
    transactionType.tp_methods = methods;
    transactionType.tp_new = create;
    transactionType.tp_doc = documentation;
    if (PyType_Ready(&transactionType) < 0) {
        return false;
    }
    Py_INCREF(&transactionType);
    return PyModule_AddObject(module, "Transaction",
                              reinterpret_cast<PyObject*>(&transactionType)) == 0;
}
