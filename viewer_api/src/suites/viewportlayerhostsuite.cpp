#include "viewportlayerhostsuite.h"

#include "triple.h"
#include "vlviewporthost.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/Attribute.h"

namespace ViewerAPI {

namespace {

VlViewportLayerHostStruct& layerOf(void* host) {
    return *static_cast<VlViewportLayerHostStruct*>(host);
}

void getViewport(void* host, void** viewportHost, void** instance, const void** suite) {
    writeTriple(layerOf(host).viewport, viewportHost, instance, suite);
}

// The caller keeps its reference; the layer's plug-in gets one of its own.
int event(void* host, VlAttributeStruct* eventData) {
    return layerOf(host).event(VlAttribute::Attribute::CreateAndRetain(eventData).detach());
}

void draw(void* host) {
    layerOf(host).draw();
}

void hover(void* host, int isHovering, int x, int y) {
    layerOf(host).hover(isHovering != 0, x, y);
}

uint64_t addPickableObject(void* host, VlAttributeStruct* object) {
    return layerOf(host).addPickableObject(VlAttribute::Attribute::CreateAndRetain(object));
}

VlAttributeStruct* getPickedObjects(void* host, int x, int y, int width, int height,
                                    int deepPicking, float* depth) {
    return layerOf(host).getPickedObjects({x, y, width, height}, deepPicking != 0, depth).detach();
}

constexpr ViewportLayerHostSuite kSuite = {
    .getViewport = getViewport,
    .event = event,
    .draw = draw,
    .hover = hover,
    .addPickableObject = addPickableObject,
    .getPickedObjects = getPickedObjects,
};

} // namespace

const ViewportLayerHostSuite* getViewportLayerHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
