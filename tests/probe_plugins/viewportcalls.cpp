#include "callbuilder.h"

#include "viewer_api/plugin/HostSuites.h"

namespace probe {

namespace {

struct Builder : CallBuilder {
    void direction(const char* name, void (*entry)(void*, double*, double*, double*)) {
        calls[name] = [entry](void* host, Arguments&) {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            entry(host, &x, &y, &z);
            return text(x) + " " + text(y) + " " + text(z);
        };
    }

    template <class Suite>
    void picking(const Suite& s) {
        calls["addPickableObject"] = [&s](void* host, Arguments& a) {
            return text(s.addPickableObject(host, parseAttribute(a.rest(0)).getHandle()));
        };
        // The result and, where it was written, the depth; a sixth word asks for none.
        calls["getPickedObjects"] = [&s](void* host, Arguments& a) {
            constexpr float kUnwritten = -1.0F;
            float depth = kUnwritten;
            const std::string picked = textOfResult(
                s.getPickedObjects(host, a.number(0), a.number(1), a.number(2), a.number(3),
                                   a.number(4), a.count(5) > 0 ? nullptr : &depth));
            return depth == kUnwritten ? picked : picked + " at depth " + text(depth);
        };
    }
};

} // namespace

const HostCalls& viewportCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ViewportHostSuite>();
        Builder b;
        b.query("getName", s.getName);
        b.object("getViewerDelegate", s.getViewerDelegate);
        b.object("getActiveCamera", s.getActiveCamera);
        b.object("addCamera", s.addCamera);
        b.object("getCameraByName", s.getCameraByName);
        b.object("getCameraByIndex", s.getCameraByIndex);
        b.action("removeCameraByName", s.removeCameraByName);
        b.action("removeCameraByIndex", s.removeCameraByIndex);
        b.query("getNumberOfCameras", s.getNumberOfCameras);
        b.query("getCameraName", s.getCameraName);
        b.query("getCameraIndex", s.getCameraIndex);
        b.action("draw", s.draw);
        b.query("getWidth", s.getWidth);
        b.query("getHeight", s.getHeight);
        b.query("isDirty", s.isDirty);
        b.action("setDirty", s.setDirty);
        b.object("addLayer", s.addLayer);
        b.object("getLayer", s.getLayer);
        b.object("getLayerByIndex", s.getLayerByIndex);
        b.action("removeLayer", s.removeLayer);
        b.action("removeLayerByIndex", s.removeLayerByIndex);
        b.query("getNumberOfLayers", s.getNumberOfLayers);
        b.query("getLayerName", s.getLayerName);
        b.query("getLayerIndex", s.getLayerIndex);
        b.query("getViewMatrix", s.getViewMatrix);
        b.query("getProjectionMatrix", s.getProjectionMatrix);
        b.query("getReserved", s.getReserved);
        b.action("deactivateManipulator", s.deactivateManipulator);
        b.action("deactivateAllManipulators", s.deactivateAllManipulators);
        b.query("getNumberOfActiveManipulators", s.getNumberOfActiveManipulators);
        b.object("getActiveManipulatorByIndex", s.getActiveManipulatorByIndex);
        b.object("getActiveManipulator", s.getActiveManipulator);
        // The paths are an attribute, as `parseAttribute` reads one.
        b.calls["activateManipulator"] = [&s](void* host, Arguments& a) {
            s.activateManipulator(host, a.text(0), parseAttribute(a.rest(1)).getHandle());
            return std::string("done");
        };
        b.query("makeGLContextCurrent", s.makeGLContextCurrent);
        b.query("doneGLContextCurrent", s.doneGLContextCurrent);
        b.query("isGLContextCurrent", s.isGLContextCurrent);
        b.action("setViewFrozen", s.setViewFrozen);
        b.query("isViewFrozen", s.isViewFrozen);
        b.action("setPanAndZoomActive", s.setPanAndZoomActive);
        b.query("isPanAndZoomActive", s.isPanAndZoomActive);
        b.query("initializeGLContext", s.initializeGLContext);
        b.action("enableCapability", s.enableCapability);
        b.action("disableCapability", s.disableCapability);
        b.picking(s);
        // Cameras are named by what getCameraByName finds; an unknown name passes null.
        const auto withCamera = [&s, &b](const char* name, void (*entry)(void*, void*)) {
            b.calls[name] = [&s, entry](void* host, Arguments& a) {
                FoundObject camera;
                s.getCameraByName(host, a.text(0), &camera.host, &camera.instance, &camera.suite);
                entry(host, camera.host);
                return std::string("done");
            };
        };
        withCamera("setActiveCamera", s.setActiveCamera);
        withCamera("removeCamera", s.removeCamera);
        b.calls["resize"] = [&s](void* host, Arguments& a) {
            s.resize(host, a.number(0), a.number(1));
            return std::string("done");
        };
        b.query("event", s.event);
        b.calls["insertLayer"] = [&s](void* host, Arguments& a) {
            FoundObject found;
            s.insertLayer(host, a.text(0), a.text(1), static_cast<std::uint32_t>(a.number(2)),
                          &found.host, &found.instance, &found.suite);
            return found.text();
        };
        return b.calls;
    }();
    return kCalls;
}

const HostCalls& layerCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ViewportLayerHostSuite>();
        Builder b;
        b.object("getViewport", s.getViewport);
        b.action("draw", s.draw);
        b.picking(s);
        b.query("event", s.event);
        b.calls["hover"] = [&s](void* host, Arguments& a) {
            s.hover(host, a.number(0), a.number(1), a.number(2));
            return std::string("done");
        };
        return b.calls;
    }();
    return kCalls;
}

const HostCalls& cameraCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ViewportCameraHostSuite>();
        Builder b;
        b.query("getViewMatrix", s.getViewMatrix);
        b.query("getProjectionMatrix", s.getProjectionMatrix);
        b.query("getCenterOfInterest", s.getCenterOfInterest);
        b.action("setCenterOfInterest", s.setCenterOfInterest);
        b.query("getFOV", s.getFOV);
        b.action("setFOV", s.setFOV);
        b.query("getOrthographicWidth", s.getOrthographicWidth);
        b.action("setOrthographicWidth", s.setOrthographicWidth);
        b.direction("getOrigin", s.getOrigin);
        b.direction("getDirection", s.getDirection);
        b.direction("getUp", s.getUp);
        b.direction("getLeft", s.getLeft);
        b.object("getViewport", s.getViewport);
        b.query("hasLocationPath", s.hasLocationPath);
        b.query("getLocationPath", s.getLocationPath);
        b.action("setLocationPath", s.setLocationPath);
        b.query("isInteractionDisabled", s.isInteractionDisabled);
        b.action("disableInteraction", s.disableInteraction);
        const auto matrix = [&b](const char* name, void (*entry)(void*, const double*)) {
            b.calls[name] = [entry](void* host, Arguments& a) {
                double values[16];
                for (std::size_t i = 0; i < 16; ++i) {
                    values[i] = a.real(i);
                }
                entry(host, values);
                return std::string("done");
            };
        };
        matrix("setViewMatrix", s.setViewMatrix);
        matrix("setProjectionMatrix", s.setProjectionMatrix);
        b.calls["getNearFar"] = [&s](void* host, Arguments&) {
            double nearPlane = 0.0;
            double farPlane = 0.0;
            s.getNearFar(host, &nearPlane, &farPlane);
            return Builder::text(nearPlane) + " " + Builder::text(farPlane);
        };
        b.calls["setNearFar"] = [&s](void* host, Arguments& a) {
            s.setNearFar(host, a.real(0), a.real(1));
            return std::string("done");
        };
        b.calls["getScreenWindow"] = [&s](void* host, Arguments&) {
            double w[4] = {};
            s.getScreenWindow(host, &w[0], &w[1], &w[2], &w[3]);
            return Builder::text(w[0]) + " " + Builder::text(w[1]) + " " + Builder::text(w[2]) +
                   " " + Builder::text(w[3]);
        };
        b.calls["setScreenWindow"] = [&s](void* host, Arguments& a) {
            s.setScreenWindow(host, a.real(0), a.real(1), a.real(2), a.real(3));
            return std::string("done");
        };
        return b.calls;
    }();
    return kCalls;
}

} // namespace probe
