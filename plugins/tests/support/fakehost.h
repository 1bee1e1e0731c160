#pragma once

#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"
#include "viewer_api/VlPlugin.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <Imath/ImathMatrix.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

/// A host for plug-ins under test: it keeps what a real one keeps of viewports, layers and cameras,
/// without a scene, a window or Python. Entries that no bundled plug-in uses are null.

struct FakeViewport;

struct FakeDelegate {
    std::vector<FakeViewport*> viewports;
    /// What the application keeps, and what it answers for the extent of any locations.
    std::vector<std::string> selection;
    int selectionsTold = 0;
    std::vector<double> extent;
    std::vector<std::string> extentPaths;
    /// Of every location in the look-through view.
    VlAttribute::GroupAttribute attributes;
    VlAttribute::DoubleAttribute worldXform;
    /// Of every location in the primary view.
    VlAttribute::DoubleAttribute primaryXform;
    const ViewerDelegatePluginSuite* suite = nullptr;
    void* instance = nullptr;
};

struct FakeLayer {
    FakeViewport* viewport = nullptr;
    const ViewportLayerPluginSuite* suite = nullptr;
    void* instance = nullptr;
};

struct FakeCamera {
    FakeViewport* viewport = nullptr;
    const ViewportCameraPluginSuite* suite = nullptr;
    void* instance = nullptr;
    Imath::M44d view;
    Imath::M44d projection;
    double centerOfInterest = 20.0;
    double fov = 45.0;
    double orthographicWidth = 30.0;
    double nearPlane = 0.1;
    double farPlane = 100000.0;
    double left = -1.0;
    double right = 1.0;
    double bottom = -1.0;
    double top = 1.0;
    std::string locationPath;
    bool interactionDisabled = false;
    int projectionsSet = 0;

    /// As the host does after every change of a parameter.
    void tellPlugin() const;
};

struct FakeViewport {
    FakeDelegate* delegate = nullptr;
    const ViewportPluginSuite* suite = nullptr;
    void* instance = nullptr;
    int width = 0;
    int height = 0;
    bool dirty = false;
    /// What picks find, and the last region that was picked: x, y, width, height.
    VlAttribute::GroupAttribute picked;
    std::array<int, 4> pickedRegion{};
    std::vector<std::unique_ptr<FakeLayer>> layers;
    std::vector<std::unique_ptr<FakeCamera>> cameras;
    FakeCamera* activeCamera = nullptr;
    Imath::M44d identity;
};

struct FakeHandle {
    bool isMarked = false;
    bool isEngaged = false;
};

/// An editable manipulator in the middle of the world.
struct FakeManipulator {
    FakeViewport* viewport = nullptr;
    std::vector<std::string> paths;
    std::vector<std::unique_ptr<FakeHandle>> handles;
    /// The manipulation groups that are open, and the location whose can't be opened.
    std::vector<std::string> openGroups;
    std::string failingGroup;
};

/// The plug-in host that libraries get.
const VlPluginHost* fakePluginHost();

/// A plug-in library of this build, opened and given the fake host; stays open. Throws
/// std::runtime_error when it can't be.
class PluginFile {
public:
    explicit PluginFile(const std::string& name,
                        const std::string& directory = OSTREL_PLUGIN_DIRECTORY);

    [[nodiscard]] int getNumberOfPlugins() const;
    [[nodiscard]] const VlPluginRecord* getPlugin(int index) const;
    /// Null when the library has no such plug-in.
    [[nodiscard]] const void* findSuite(const std::string& typeName, const std::string& name) const;

private:
    int (*count)() = nullptr;
    const VlPluginRecord* (*get)(int) = nullptr;
};
