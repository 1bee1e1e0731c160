#include "pyviewportlayerobject.h"

#include "attributearguments.h"
#include "optiondocs.h"
#include "vlviewporthost.h"
#include "vlviewportlayerhost.h"

#include "viewer_api/ViewportLayerPluginSuite.h"

namespace ViewerAPI {

bool PyViewportLayerObject::checkAlive() const {
    return checkWatch(watch, "layer");
}

PyReference PyViewportLayerObject::holdDelegate() const {
    return holdWrapperOf(host->viewport->viewerDelegate);
}

PluginOptions PyViewportLayerObject::pluginOptions() const {
    return {host->pluginHandle, host->pluginSuite->setOption, host->pluginSuite->getOption};
}

namespace {

using pythoncompat::returnBool;
using pythoncompat::returnNone;

using Record = PyViewportLayerObject;

PyObject* setup(Record& self) {
    self.host->setup();
    return returnNone();
}

PyObject* event(Record& self, PyObject* args) {
    PyObject* data = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "O", &data)) {
        return nullptr;
    }
    const VlAttribute::Attribute attribute = attributeOf(data);
    // A layer's plug-in owns the reference it gets, where a viewport's only borrows one.
    const bool isHandled = attribute.isValid() && self.host->event(attribute.getRetainedHandle());
    return returnBool(isHandled);
}

PyObject* draw(Record& self) {
    self.host->draw();
    return returnNone();
}

PyObject* freeze(Record& self) {
    self.host->pluginSuite->freeze(self.host->pluginHandle);
    return returnNone();
}

PyObject* thaw(Record& self) {
    self.host->pluginSuite->thaw(self.host->pluginHandle);
    return returnNone();
}

PyMethodDef methods[] = {
    method<&setup>("setup", "setup()\n\n"
                            "Sets the layer up. The GL context must be current. Does nothing on a "
                            "layer that is set up already."),
    method<&event>("event", "event(GroupAttribute eventData)\n\n"
                            "Passes a user interaction event to the plugin. Returns True if the "
                            "event has been handled, False otherwise."),
    method<&draw>("draw", "draw()\n\n"
                          "Draws the layer by its plugin. The GL context must be current."),
    method<&freeze>("freeze", "freeze()\n\n"
                              "Tells the plugin to freeze its activities while the layer is not "
                              "visible."),
    method<&thaw>("thaw", "thaw()\n\n"
                          "Tells the plugin to take up its activities again after freeze()."),
    method<&setOption<Record>>("setOption", docs::setOption),
    method<&setOptionByName<Record>>("setOptionByName", docs::setOptionByName),
    method<&getOption<Record>>("getOption", docs::getOption),
    method<&getOptionByName<Record>>("getOptionByName", docs::getOptionByName),
    {nullptr, nullptr, 0, nullptr},
};

constexpr char kHowToGetOne[] =
    "Please use the Viewport.addLayer() or Viewport.insertLayer() function to "
    "instantiate a ViewportLayer.";

PyTypeObject type =
    wrapperType<Record>("ViewerAPI_cmodule.ViewportLayer", "ViewportLayer plugin", methods,
                        deallocateWrapper<Record>, refuseConstruction<kHowToGetOne>);

} // namespace

PyObject* wrapLayer(VlViewportLayerHostStruct* host) {
    return reinterpret_cast<PyObject*>(newWrapper<Record>(type, host));
}

void registerViewportLayerType(PyObject* module) {
    registerType(module, type, "ViewportLayer");
}

} // namespace ViewerAPI
