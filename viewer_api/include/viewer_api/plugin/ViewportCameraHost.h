#pragma once

#include "viewer_api/plugin/HostSuites.h"
#include "viewer_api/plugin/Triple.h"

#include <array>
#include <span>
#include <string>

namespace ViewerPlugin {

/// A camera's host object, typed: one method per entry of `ViewportCameraHostSuite`, which
/// documents them. A value as light as a pointer; it owns nothing. The constructor throws when the
/// host doesn't offer the suite. [ui-thread]
class ViewportCameraHost {
public:
    /// 16 doubles for row vectors.
    using MatrixView = std::span<const double, 16>;
    using Vector = std::array<double, 3>;

    struct NearFar {
        double nearPlane = 0.0;
        double farPlane = 0.0;
    };
    struct ScreenWindow {
        double left = 0.0;
        double right = 0.0;
        double bottom = 0.0;
        double top = 0.0;
    };

    explicit ViewportCameraHost(VlViewportCameraHandle host)
        : handle(host), suite(&requireHostSuite<ViewportCameraHostSuite>()) {}

    [[nodiscard]] VlViewportCameraHandle getHandle() const noexcept { return handle; }

    [[nodiscard]] MatrixView getViewMatrix() const {
        return MatrixView(suite->getViewMatrix(handle), 16);
    }
    void setViewMatrix(MatrixView matrix) const { suite->setViewMatrix(handle, matrix.data()); }
    [[nodiscard]] MatrixView getProjectionMatrix() const {
        return MatrixView(suite->getProjectionMatrix(handle), 16);
    }
    void setProjectionMatrix(MatrixView matrix) const {
        suite->setProjectionMatrix(handle, matrix.data());
    }
    [[nodiscard]] double getCenterOfInterest() const { return suite->getCenterOfInterest(handle); }
    void setCenterOfInterest(double distance) const {
        suite->setCenterOfInterest(handle, distance);
    }
    [[nodiscard]] double getFOV() const { return suite->getFOV(handle); }
    void setFOV(double degrees) const { suite->setFOV(handle, degrees); }
    [[nodiscard]] double getOrthographicWidth() const {
        return suite->getOrthographicWidth(handle);
    }
    void setOrthographicWidth(double width) const { suite->setOrthographicWidth(handle, width); }
    [[nodiscard]] NearFar getNearFar() const {
        NearFar planes;
        suite->getNearFar(handle, &planes.nearPlane, &planes.farPlane);
        return planes;
    }
    void setNearFar(const NearFar& planes) const {
        suite->setNearFar(handle, planes.nearPlane, planes.farPlane);
    }
    [[nodiscard]] ScreenWindow getScreenWindow() const {
        ScreenWindow window;
        suite->getScreenWindow(handle, &window.left, &window.right, &window.bottom, &window.top);
        return window;
    }
    void setScreenWindow(const ScreenWindow& window) const {
        suite->setScreenWindow(handle, window.left, window.right, window.bottom, window.top);
    }
    [[nodiscard]] Vector getOrigin() const { return vector(suite->getOrigin); }
    [[nodiscard]] Vector getDirection() const { return vector(suite->getDirection); }
    [[nodiscard]] Vector getUp() const { return vector(suite->getUp); }
    [[nodiscard]] Vector getLeft() const { return vector(suite->getLeft); }
    [[nodiscard]] Triple getViewport() const {
        Triple found;
        suite->getViewport(handle, &found.host, &found.instance, &found.suite);
        return found;
    }
    [[nodiscard]] bool hasLocationPath() const { return suite->hasLocationPath(handle) != 0; }
    /// "" when no location drives the camera.
    [[nodiscard]] std::string getLocationPath() const {
        const char* path = suite->getLocationPath(handle);
        return path ? path : "";
    }
    void setLocationPath(const std::string& path) const {
        suite->setLocationPath(handle, path.c_str());
    }
    [[nodiscard]] bool isInteractionDisabled() const {
        return suite->isInteractionDisabled(handle) != 0;
    }
    void disableInteraction(bool disabled) const { suite->disableInteraction(handle, disabled); }

private:
    Vector vector(void (*entry)(VlViewportCameraHandle, double*, double*, double*)) const {
        Vector result{};
        entry(handle, &result[0], &result[1], &result[2]);
        return result;
    }

    VlViewportCameraHandle handle;
    const ViewportCameraHostSuite* suite;
};

} // namespace ViewerPlugin
