#pragma once

#include "binding.h"
#include "optionmethods.h"

#include <string>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;
struct VlViewportHostStruct;

/// A view of a viewport: the type `Viewport`. It points back at its delegate weakly, so that a
/// viewport that is kept does not keep the whole viewer. [ui-thread]
struct PyViewportObject {
    PyObject_HEAD VlViewportHostStruct* host; ///< borrowed from the delegate host
    PyObject* delegateRef; ///< owned weak reference to the `ViewerDelegate` wrapper
    HostWatch watch;

    bool checkAlive() const;
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// A new view of a viewport of the delegate that `delegateWrapper` stands for. Null with an error
/// set when memory runs out.
[[nodiscard]] PyObject* wrapViewport(VlViewportHostStruct* host, PyObject* delegateWrapper);

/// Makes a viewport, adds it to the delegate and gives a view of it. Throws when its plug-in can't
/// be loaded; null with an error set when memory runs out.
[[nodiscard]] PyObject* createViewport(const std::string& pluginName, const std::string& name,
                                       VlViewerDelegateHostStruct* delegate,
                                       PyObject* delegateWrapper);

/// The view that was handed in as an argument. The object's type is not looked at: it must be a
/// view of a viewport.
[[nodiscard]] const PyViewportObject& viewportArgument(PyObject* object);

/// Adds the type to the module.
void registerViewportType(PyObject* module);

} // namespace ViewerAPI
