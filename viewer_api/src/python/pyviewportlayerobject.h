#pragma once

#include "binding.h"
#include "optionmethods.h"

namespace ViewerAPI {

struct VlViewportLayerHostStruct;

/// A view of a layer: the type `ViewportLayer`. Two views of one layer are two objects. [ui-thread]
struct PyViewportLayerObject {
    PyObject_HEAD VlViewportLayerHostStruct* host; ///< borrowed from the viewport host
    HostWatch watch;

    bool checkAlive() const;
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// A new view. Null with an error set when memory runs out.
[[nodiscard]] PyObject* wrapLayer(VlViewportLayerHostStruct* host);

/// Adds the type to the module.
void registerViewportLayerType(PyObject* module);

} // namespace ViewerAPI
