#include "attributearguments.h"
#include "binding.h"
#include "channeldispatch.h"
#include "pymanipulatorbridge.h"
#include "pymanipulatorobject.h"
#include "pyviewerdelegatecomponentobject.h"
#include "pyviewerdelegateobject.h"
#include "pyviewportcameraobject.h"
#include "pyviewportlayerobject.h"
#include "pyviewportobject.h"
#include "textargument.h"

#include "optionidgeneratorclient.h"
#include "pythonchannel.h"
#include "suites/hostsuites.h"
#include "suites/optionidgeneratorhostsuite.h"
#include "vlviewerdelegatehost.h"

#include "PyVlAttribute/PyVlAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "viewer_api/ViewportLayerPluginSuite.h"

#include <memory>

namespace ViewerAPI {
namespace {

using pythoncompat::parseArguments;
using pythoncompat::TextArgument;

PyObject* getDiagnosticInfo(PyObject* /*module*/, PyObject* /*args*/) {
    return withExceptionBoundary([]() {
        return newPyAttribute(VlAttribute::GroupAttribute{
            {"ViewerDelegateInstanceCount",
             VlAttribute::IntAttribute(VlViewerDelegateHostStruct::getInstanceCount())}});
    });
}

PyObject* generateOptionId(PyObject* /*module*/, PyObject* args) {
    return withExceptionBoundary([args]() -> PyObject* {
        TextArgument name;
        if (!parseArguments(args, "s", name)) {
            return nullptr;
        }
        return PyLong_FromUnsignedLongLong(OptionIdGeneratorClient::module().generate(name.get()));
    });
}

PyObject* lookUpOptionId(PyObject* /*module*/, PyObject* args) {
    return withExceptionBoundary([args]() -> PyObject* {
        unsigned long long optionId = 0;
        if (!PyArg_ParseTuple(args, "K", &optionId)) {
            return nullptr;
        }
        const char* name = OptionIdGeneratorClient::module().lookUp(optionId);
        return name ? pythoncompat::newText(name) : pythoncompat::returnNone();
    });
}

PyMethodDef functions[] = {
    {"GetDiagnosticInfo", getDiagnosticInfo, METH_NOARGS,
     "GetDiagnosticInfo() -> GroupAttribute\n\n"
     "Returns figures about the state of the module. \"ViewerDelegateInstanceCount\" is the number "
     "of ViewerDelegates that exist."},
    {"CreateViewerDelegate", createViewerDelegate, METH_VARARGS,
     "CreateViewerDelegate(str pluginName) -> ViewerDelegate\n\n"
     "Instantiates a ViewerDelegate plugin. It lives as long as the returned object."},
    {"GenerateOptionId", generateOptionId, METH_VARARGS,
     "GenerateOptionId(str name) -> long\n\n"
     "Returns the id under which an option of this name is set and read. A name always has the "
     "same id."},
    {"LookUpOptionId", lookUpOptionId, METH_VARARGS,
     "LookUpOptionId(long optionId) -> str\n\n"
     "Returns the name that an option id was generated from, or the empty string if it was not "
     "generated in this process."},
    {nullptr, nullptr, 0, nullptr},
};

// The order of these steps is what others rely on: a plug-in that is loaded by the module's import
// finds all suites, and an option can be named as soon as there is a function to name it.
PyObject* start() {
    if (!PyVlAttribute::importApi()) {
        return nullptr;
    }
    registerHostSuites();
    OptionIdGeneratorClient::module().setSuite(getOptionIdGeneratorHostSuite());
    setChannelDispatch(dispatchToPython);
    setManipulatorBridgeFactory([]() { return std::make_unique<PyManipulatorBridge>(); });

    PyObject* module = pythoncompat::createModule(
        "ViewerAPI_cmodule", functions,
        "Viewer API module. Contains the classes ViewerDelegate, Viewport, ViewportLayer and "
        "ViewportCamera.");
    if (!module) {
        return nullptr;
    }
    PyModule_AddIntConstant(module, "kViewportLayerPluginVersion",
                            VL_VIEWPORT_LAYER_PLUGIN_API_VERSION);
    registerManipulatorType(module);
    registerViewerDelegateType(module);
    registerViewerDelegateComponentType(module);
    registerViewportType(module);
    registerViewportLayerType(module);
    registerViewportCameraType(module);
    return module;
}

} // namespace
} // namespace ViewerAPI

PYTHONCOMPAT_MODULE(ViewerAPI_cmodule) {
    return ViewerAPI::withExceptionBoundary(ViewerAPI::start);
}
