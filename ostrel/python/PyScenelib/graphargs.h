#pragma once

#include "pythoncompat.h"

#include "VlAttribute/GroupAttribute.h"

#include <string>
#include <vector>

// The arguments that edits of the op graph take, as Python gives them. Each reader answers false
// with a Python error set.

/// An op type's name.
bool readOpType(PyObject* object, std::string& opType);
/// A location's path.
bool readPath(PyObject* object, std::string& path);
/// A GroupAttribute, or None for none.
bool readArgs(PyObject* object, VlAttribute::GroupAttribute& args);
/// An op's id.
bool readOpId(PyObject* object, int& opId);
/// A sequence of ids.
bool readOpIds(PyObject* object, std::vector<int>& opIds);
