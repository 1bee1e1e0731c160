#include "support/fakehost.h"

#include "VlAttribute/StringAttribute.h"
#include "viewer_api/ManipulatorHandleHostSuite.h"
#include "viewer_api/ManipulatorHostSuite.h"
#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/ViewerDelegateComponentHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewportCameraHostSuite.h"
#include "viewer_api/ViewportHostSuite.h"
#include "viewer_api/ViewportLayerHostSuite.h"

#include <dlfcn.h>

#include <cstring>
#include <span>
#include <stdexcept>

namespace {

FakeDelegate& delegateOf(void* handle) {
    return *static_cast<FakeDelegate*>(handle);
}
FakeViewport& viewportOf(void* handle) {
    return *static_cast<FakeViewport*>(handle);
}
FakeLayer& layerOf(void* handle) {
    return *static_cast<FakeLayer*>(handle);
}
FakeCamera& cameraOf(void* handle) {
    return *static_cast<FakeCamera*>(handle);
}
FakeManipulator& manipulatorOf(void* handle) {
    return *static_cast<FakeManipulator*>(handle);
}

template <typename Object>
void writeTriple(Object* object, void** host, void** instance, const void** suite) {
    *host = object;
    *instance = object ? object->instance : nullptr;
    *suite = object ? object->suite : nullptr;
}

template <typename List>
auto* at(const List& list, std::uint32_t index) {
    return index < list.size() ? &*list[index] : nullptr;
}

ViewerDelegateHostSuite makeDelegateSuite() {
    ViewerDelegateHostSuite suite{};
    suite.getNumberOfViewports = [](void* host) {
        return static_cast<std::uint32_t>(delegateOf(host).viewports.size());
    };
    suite.getViewportByIndex = [](void* host, std::uint32_t index, void** viewport, void** instance,
                                  const void** table) {
        writeTriple(at(delegateOf(host).viewports, index), viewport, instance, table);
    };
    suite.getSelectedLocations = [](void* host) {
        return VlAttribute::StringAttribute(delegateOf(host).selection).detach();
    };
    suite.selectLocations = [](void* host, const char** paths, std::uint32_t count) {
        delegateOf(host).selection.assign(paths, paths + count);
        ++delegateOf(host).selectionsTold;
    };
    suite.computeMergedExtent = [](void* host, const char** paths, std::uint32_t count,
                                   const char*) {
        FakeDelegate& delegate = delegateOf(host);
        delegate.extentPaths.assign(paths, paths + count);
        return delegate.extent.empty()
                   ? nullptr
                   : VlAttribute::DoubleAttribute(std::span<const double>(delegate.extent))
                         .detach();
    };
    suite.getAttributes = [](void* host, const char*, int view) {
        return view == kVlViewerDelegateLookThrough
                   ? delegateOf(host).attributes.getRetainedHandle()
                   : nullptr;
    };
    suite.getWorldXform = [](void* host, const char*, int view) {
        const FakeDelegate& delegate = delegateOf(host);
        return (view == kVlViewerDelegateLookThrough ? delegate.worldXform : delegate.primaryXform)
            .getRetainedHandle();
    };
    return suite;
}

ViewportHostSuite makeViewportSuite() {
    ViewportHostSuite suite{};
    suite.getViewerDelegate = [](void* host, void** delegate, void** instance, const void** table) {
        writeTriple(viewportOf(host).delegate, delegate, instance, table);
    };
    suite.getActiveCamera = [](void* host, void** camera, void** instance, const void** table) {
        writeTriple(viewportOf(host).activeCamera, camera, instance, table);
    };
    suite.getNumberOfCameras = [](void* host) {
        return static_cast<std::uint32_t>(viewportOf(host).cameras.size());
    };
    suite.getCameraByIndex = [](void* host, std::uint32_t index, void** camera, void** instance,
                                const void** table) {
        writeTriple(at(viewportOf(host).cameras, index), camera, instance, table);
    };
    suite.getWidth = [](void* host) { return viewportOf(host).width; };
    suite.getHeight = [](void* host) { return viewportOf(host).height; };
    suite.setDirty = [](void* host, int dirty) { viewportOf(host).dirty = dirty != 0; };
    suite.getNumberOfLayers = [](void* host) {
        return static_cast<std::uint32_t>(viewportOf(host).layers.size());
    };
    suite.getLayerByIndex = [](void* host, std::uint32_t index, void** layer, void** instance,
                               const void** table) {
        writeTriple(at(viewportOf(host).layers, index), layer, instance, table);
    };
    // A test's own context stays current.
    suite.makeGLContextCurrent = [](void*) { return 1; };
    suite.getPickedObjects = [](void* host, int x, int y, int width, int height, int, float*) {
        FakeViewport& viewport = viewportOf(host);
        viewport.pickedRegion = {x, y, width, height};
        return viewport.picked.getRetainedHandle();
    };
    suite.getViewMatrix = [](void* host) -> const double* {
        FakeViewport& viewport = viewportOf(host);
        return viewport.activeCamera ? viewport.activeCamera->view.getValue()
                                     : viewport.identity.getValue();
    };
    suite.getProjectionMatrix = [](void* host) -> const double* {
        FakeViewport& viewport = viewportOf(host);
        return viewport.activeCamera ? viewport.activeCamera->projection.getValue()
                                     : viewport.identity.getValue();
    };
    return suite;
}

ViewportLayerHostSuite makeLayerSuite() {
    ViewportLayerHostSuite suite{};
    suite.getViewport = [](void* host, void** viewport, void** instance, const void** table) {
        writeTriple(layerOf(host).viewport, viewport, instance, table);
    };
    suite.draw = [](void* host) { layerOf(host).suite->draw(layerOf(host).instance); };
    suite.event = [](void* host, VlAttributeStruct* event) {
        const FakeLayer& layer = layerOf(host);
        return layer.suite->event(layer.instance,
                                  VlAttribute::Attribute::CreateAndRetain(event).detach());
    };
    suite.hover = [](void* host, int isHovering, int x, int y) {
        layerOf(host).suite->hover(layerOf(host).instance, isHovering, x, y);
    };
    return suite;
}

template <auto Member>
double get(void* host) {
    return cameraOf(host).*Member;
}

template <auto Member>
void set(void* host, double value) {
    cameraOf(host).*Member = value;
    cameraOf(host).tellPlugin();
}

ViewportCameraHostSuite makeCameraSuite() {
    ViewportCameraHostSuite suite{};
    suite.getViewMatrix = [](void* host) -> const double* {
        return cameraOf(host).view.getValue();
    };
    suite.setViewMatrix = [](void* host, const double* matrix) {
        std::memcpy(cameraOf(host).view.getValue(), matrix, 16 * sizeof(double));
    };
    suite.getProjectionMatrix = [](void* host) -> const double* {
        return cameraOf(host).projection.getValue();
    };
    suite.setProjectionMatrix = [](void* host, const double* matrix) {
        std::memcpy(cameraOf(host).projection.getValue(), matrix, 16 * sizeof(double));
        ++cameraOf(host).projectionsSet;
    };
    suite.getCenterOfInterest = get<&FakeCamera::centerOfInterest>;
    suite.setCenterOfInterest = set<&FakeCamera::centerOfInterest>;
    suite.getFOV = get<&FakeCamera::fov>;
    suite.setFOV = set<&FakeCamera::fov>;
    suite.getOrthographicWidth = get<&FakeCamera::orthographicWidth>;
    suite.setOrthographicWidth = set<&FakeCamera::orthographicWidth>;
    suite.getNearFar = [](void* host, double* nearPlane, double* farPlane) {
        *nearPlane = cameraOf(host).nearPlane;
        *farPlane = cameraOf(host).farPlane;
    };
    suite.setNearFar = [](void* host, double nearPlane, double farPlane) {
        cameraOf(host).nearPlane = nearPlane;
        cameraOf(host).farPlane = farPlane;
        cameraOf(host).tellPlugin();
    };
    suite.getScreenWindow = [](void* host, double* left, double* right, double* bottom,
                               double* top) {
        const FakeCamera& camera = cameraOf(host);
        *left = camera.left;
        *right = camera.right;
        *bottom = camera.bottom;
        *top = camera.top;
    };
    suite.setScreenWindow = [](void* host, double left, double right, double bottom, double top) {
        FakeCamera& camera = cameraOf(host);
        camera.left = left;
        camera.right = right;
        camera.bottom = bottom;
        camera.top = top;
        camera.tellPlugin();
    };
    suite.getViewport = [](void* host, void** viewport, void** instance, const void** table) {
        writeTriple(cameraOf(host).viewport, viewport, instance, table);
    };
    suite.isInteractionDisabled = [](void* host) -> int {
        return cameraOf(host).interactionDisabled;
    };
    suite.hasLocationPath = [](void* host) -> int { return !cameraOf(host).locationPath.empty(); };
    suite.getLocationPath = [](void* host) { return cameraOf(host).locationPath.c_str(); };
    suite.setLocationPath = [](void* host, const char* path) {
        cameraOf(host).locationPath = path;
    };
    return suite;
}

/// Ids are places in a list of names, shifted as the host's are.
std::vector<std::string>& optionNames() {
    static std::vector<std::string> names;
    return names;
}

OptionIdGeneratorHostSuite makeOptionSuite() {
    OptionIdGeneratorHostSuite suite{};
    suite.getOptionIdGenerator = []() -> void* { return &optionNames(); };
    suite.generateOptionIdByName = [](void*, const char* name) {
        std::size_t place = 0;
        while (place < optionNames().size() && optionNames()[place] != name) {
            ++place;
        }
        if (place == optionNames().size()) {
            optionNames().emplace_back(name);
        }
        return static_cast<std::uint64_t>(place + 1) << 16;
    };
    suite.lookUpOptionId = [](void*, std::uint64_t id) {
        const std::uint64_t place = (id >> 16) - 1;
        return place < optionNames().size() ? optionNames()[place].c_str() : "";
    };
    return suite;
}

ManipulatorHostSuite makeManipulatorSuite() {
    ManipulatorHostSuite suite{};
    suite.getViewport = [](void* host, void** viewport, void** instance, const void** table) {
        writeTriple(manipulatorOf(host).viewport, viewport, instance, table);
    };
    suite.getLocationPaths = [](void* host) {
        return VlAttribute::StringAttribute(manipulatorOf(host).paths).detach();
    };
    suite.isEditable = [](void*) { return 1; };
    suite.calculateXform = [](void*) -> VlAttributeStruct* { return nullptr; };
    suite.getValue = [](void*, const char*, const char*) -> VlAttributeStruct* { return nullptr; };
    suite.setValue = [](void*, const char*, const char*, VlAttributeStruct*, int) { return 1; };
    suite.addManipulatorHandle = [](void* host, const char*, const char*, void** handle,
                                    void** instance, const void** table) {
        auto& handles = manipulatorOf(host).handles;
        handles.push_back(std::make_unique<FakeHandle>());
        *handle = handles.back().get();
        *instance = nullptr;
        *table = nullptr;
    };
    suite.getManipulatorHandleByIndex = [](void* host, std::uint32_t index, void** handle,
                                           void** instance, const void** table) {
        *handle = at(manipulatorOf(host).handles, index);
        *instance = nullptr;
        *table = nullptr;
    };
    suite.openManipulationGroup = [](void* host, const char* path) {
        FakeManipulator& manipulator = manipulatorOf(host);
        if (manipulator.failingGroup == path) {
            throw std::runtime_error("no group for " + manipulator.failingGroup);
        }
        manipulator.openGroups.emplace_back(path);
    };
    suite.closeManipulationGroup = [](void* host, const char* path) {
        std::erase(manipulatorOf(host).openGroups, path);
    };
    return suite;
}

ManipulatorHandleHostSuite makeHandleSuite() {
    ManipulatorHandleHostSuite suite{};
    suite.setLocalXform = [](void*, VlAttributeStruct*) {};
    suite.isMarked = [](void* handle) -> int { return static_cast<FakeHandle*>(handle)->isMarked; };
    suite.setEngaged = [](void* handle, int engaged) {
        static_cast<FakeHandle*>(handle)->isEngaged = engaged != 0;
        return 1;
    };
    return suite;
}

const void* findHostSuite(const char* name, std::uint32_t version) {
    static const ViewerDelegateHostSuite delegateSuite = makeDelegateSuite();
    static const ViewportHostSuite viewportSuite = makeViewportSuite();
    static const ViewportLayerHostSuite layerSuite = makeLayerSuite();
    static const ViewportCameraHostSuite cameraSuite = makeCameraSuite();
    static const ViewerDelegateComponentHostSuite componentSuite{};
    static const ManipulatorHostSuite manipulatorSuite = makeManipulatorSuite();
    static const ManipulatorHandleHostSuite manipulatorHandleSuite = makeHandleSuite();
    static const OptionIdGeneratorHostSuite optionSuite = makeOptionSuite();
    static const struct {
        std::string name;
        std::uint32_t version;
        const void* suite;
    } suites[] = {
        {VL_VIEWER_DELEGATE_HOST_SUITE, VL_VIEWER_DELEGATE_HOST_SUITE_VERSION, &delegateSuite},
        {VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE, VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE_VERSION,
         &componentSuite},
        {VL_VIEWPORT_HOST_SUITE, VL_VIEWPORT_HOST_SUITE_VERSION, &viewportSuite},
        {VL_VIEWPORT_LAYER_HOST_SUITE, VL_VIEWPORT_LAYER_HOST_SUITE_VERSION, &layerSuite},
        {VL_VIEWPORT_CAMERA_HOST_SUITE, VL_VIEWPORT_CAMERA_HOST_SUITE_VERSION, &cameraSuite},
        {VL_MANIPULATOR_HOST_SUITE, VL_MANIPULATOR_HOST_SUITE_VERSION, &manipulatorSuite},
        {VL_MANIPULATOR_HANDLE_HOST_SUITE, VL_MANIPULATOR_HANDLE_HOST_SUITE_VERSION,
         &manipulatorHandleSuite},
        {VL_OPTION_ID_GENERATOR_HOST_SUITE, VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION,
         &optionSuite},
        {VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION, fakePluginHost()},
    };
    for (const auto& entry : suites) {
        if (entry.name == name && entry.version == version) {
            return entry.suite;
        }
    }
    return nullptr;
}

} // namespace

void FakeCamera::tellPlugin() const {
    if (instance) {
        suite->setDirty(instance, CameraDirtyBits_DirtyParams);
    }
}

const VlPluginHost* fakePluginHost() {
    static const VlPluginHost host = {findHostSuite};
    return &host;
}

PluginFile::PluginFile(const std::string& name, const std::string& directory) {
    const std::string path = directory + "/" + name + ".so";
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        throw std::runtime_error(dlerror());
    }
    const auto entry = [library](auto& function, const char* symbol) {
        function =
            reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, symbol));
        if (!function) {
            throw std::runtime_error(dlerror());
        }
    };
    int (*setHost)(const VlPluginHost*) = nullptr;
    entry(count, "vlGetNumberOfPlugins");
    entry(get, "vlGetPlugin");
    entry(setHost, "vlSetPluginHost");
    if (setHost(fakePluginHost()) != 0) {
        throw std::runtime_error(path + " refuses the host.");
    }
}

int PluginFile::getNumberOfPlugins() const {
    return count();
}

const VlPluginRecord* PluginFile::getPlugin(int index) const {
    return get(index);
}

const void* PluginFile::findSuite(const std::string& typeName, const std::string& name) const {
    for (int i = 0; i < count(); ++i) {
        const VlPluginRecord* record = get(i);
        if (typeName == record->typeName && name == record->name) {
            return record->suite;
        }
    }
    return nullptr;
}
