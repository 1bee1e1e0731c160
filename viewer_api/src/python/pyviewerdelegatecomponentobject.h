#pragma once

#include "binding.h"
#include "optionmethods.h"

namespace ViewerAPI {

struct VlViewerDelegateComponentHostStruct;

/// A view of a component: the type `ViewerDelegateComponent`. Two views of one component are two
/// objects. [ui-thread]
struct PyViewerDelegateComponentObject {
    PyObject_HEAD VlViewerDelegateComponentHostStruct* host; ///< borrowed from the delegate host
    HostWatch watch;

    bool checkAlive() const;
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// A new view. Null with an error set when memory runs out.
[[nodiscard]] PyObject* wrapComponent(VlViewerDelegateComponentHostStruct* host);

/// Adds the type to the module.
void registerViewerDelegateComponentType(PyObject* module);

} // namespace ViewerAPI
