#pragma once

#include "binding.h"
#include "optionmethods.h"

namespace ViewerAPI {

struct VlViewportCameraHostStruct;

/// A view of a camera: the type `ViewportCamera`. Two views of one camera are two objects. A
/// camera, and so its views' use, may outlast its viewport. [ui-thread]
struct PyViewportCameraObject {
    PyObject_HEAD VlViewportCameraHostStruct* host; ///< borrowed from the viewport host
    HostWatch watch;

    bool checkAlive() const;
    PyReference holdDelegate() const;
    PluginOptions pluginOptions() const;
};

/// A new view. Null with an error set when memory runs out.
[[nodiscard]] PyObject* wrapCamera(VlViewportCameraHostStruct* host);

/// The host object behind a view that was handed in as an argument. The object's type is not
/// looked at: it must be a view of a camera.
[[nodiscard]] const PyViewportCameraObject& cameraArgument(PyObject* object);

/// Adds the type and its constants to the module.
void registerViewportCameraType(PyObject* module);

} // namespace ViewerAPI
