#pragma once

#include "binding.h"
#include "optionmethods.h"

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// The type `ViewerDelegate`: the only wrapper that owns its host object, and the only type that
/// supports weak references. `host` and `callbacks` are null before the host object has been
/// constructed and once they have been released; a null `callbacks` has no channel. [ui-thread]
struct PyViewerDelegateObject {
    PyObject_HEAD VlViewerDelegateHostStruct* host; ///< owned
    PyObject* callbacks;                            ///< owned dict: channel name to callable
    PyObject* weakrefs;                             ///< head of the list of weak references

    /// False only for what `ViewerDelegate.__new__` makes: all others own their host object.
    bool checkAlive() const;
    /// The wrapper itself: a callback may drop what the caller holds.
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// The module function of that name: loads the plug-in and makes the delegate with its wrapper.
PyObject* createViewerDelegate(PyObject* module, PyObject* args);

/// Adds the type and its constants to the module.
void registerViewerDelegateType(PyObject* module);

} // namespace ViewerAPI
