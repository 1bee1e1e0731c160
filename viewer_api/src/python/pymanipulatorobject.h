#pragma once

#include "binding.h"
#include "optionmethods.h"

namespace ViewerAPI {

struct VlManipulatorHostStruct;

/// A view of an active manipulator: the type `Manipulator`. It ends for Python when the manipulator
/// leaves its viewport, whatever still holds it. [ui-thread]
struct PyManipulatorObject {
    PyObject_HEAD VlManipulatorHostStruct* host; ///< borrowed from the viewport host
    PyObject* viewport;                          ///< owned: the `Viewport` wrapper it came from
    HostWatch watch;

    bool checkAlive() const;
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// A new view of a manipulator of the viewport that `viewportWrapper` stands for. Null with an
/// error set when memory runs out.
[[nodiscard]] PyObject* wrapManipulator(VlManipulatorHostStruct* host, PyObject* viewportWrapper);

/// Adds the type to the module.
void registerManipulatorType(PyObject* module);

} // namespace ViewerAPI
