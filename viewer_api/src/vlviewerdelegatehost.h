#pragma once

#include "componentlist.h"
#include "hostobject.h"
#include "livevalues.h"
#include "locationdelivery.h"
#include "locationtree.h"
#include "lookthrough.h"
#include "manipulationfreeze.h"
#include "sceneclients.h"
#include "sourcelocationtree.h"
#include "viewportlist.h"
#include "vlproxyfactorylist.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/SceneView.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ViewerAPI {

class ManipulatorBridge;

/// The host object of one ViewerDelegate plug-in and the root of a viewer: it owns the scene
/// clients, the location trees, the components and the viewports, and is the pump that brings the
/// scene to all of them.
///
/// Paths are full location paths, "/" between names. Lists of paths are `count` pointers to
/// zero-terminated text, borrowed for the call. `sceneView` is one of VlSceneView; an unknown one
/// reads as absent. Absent values are null attributes. Exceptions of plug-ins, and of the user
/// interface's callbacks, pass through. Everything is [ui-thread].
struct VlViewerDelegateHostStruct : public HostObject {
    /// Loads the plug-in, then makes runtime, clients and ops; the plug-in's create entry must not
    /// ask for anything of the scene. `hostedPythonObject` is what channels are fired at, borrowed
    /// for the delegate's life; it may be null. Throws std::runtime_error when a part of this is
    /// not to be had.
    VlViewerDelegateHostStruct(const std::string& pluginName, void* hostedPythonObject);

    /// Ends the components, then the viewports, then the plug-in instance, each by its destroy
    /// entry alone: cleanup entries are not called on this road.
    ~VlViewerDelegateHostStruct() override;

    /// How many delegates were begun and not ended, in the process. One whose construction failed
    /// counts for ever. [any-thread]
    [[nodiscard]] static std::int32_t getInstanceCount() noexcept;

    // Life of the plug-in

    void setup();
    /// Removes components, then viewports, from the last to the first; then tells the plug-in.
    void cleanup();
    /// Forwarded to the plug-in; events keep flowing.
    void freeze();
    void thaw();
    /// The plug-in gets a reference of its own to `value`, which may be null.
    void setOption(std::uint64_t optionId, const VlAttribute::Attribute& value);
    [[nodiscard]] VlAttribute::Attribute getOption(std::uint64_t optionId);
    /// Takes the whole scene down in the primary tree and tells the plug-ins; the factories drop
    /// all that they hold.
    void flushCaches();

    // Scene events

    /// The pump: catches up with the scene and tells the plug-ins what changed. Nothing moves
    /// between calls. While a manipulation holds events back, what the scene has to tell waits in
    /// the clients; what was changed here (live values, openness, pins, hiding) still goes out.
    /// What the factories make of it goes out in the same pump.
    void processLocationEvents();
    /// Sends what changed in the trees. A flush from within a plug-in's entry is delivered after
    /// the one under way; one from within getBounds or computeExtent after the walk that asks.
    /// Without `notifyFactories` the factories don't hear of it, nor of what is under way, and drop
    /// all that they hold after it.
    void flushLocationChanges(bool notifyFactories);
    /// Whether there is work whose outcome the next pumps will bring, tested in the order
    /// factories, runtime, clients, look-through, components, plug-in.
    [[nodiscard]] bool isProcessing();
    void setManipulationFreezePeriod(std::int64_t milliseconds);
    [[nodiscard]] bool isFrozenDueToManipulation() const;

    // What is viewed

    /// Views the op with this id; returns the commit id, -1 when it is viewed already. The
    /// application hears of it in either case.
    std::int64_t setViewOp(int opId);
    /// Null for none.
    void setVisibilityWorkingSet(const VlAttribute::GroupAttribute& workingSet);
    void setWorkingSetVisibilityEnabled(bool isEnabled);
    [[nodiscard]] bool getWorkingSetVisibilityEnabled() const;
    /// The op system args of the application, the frame among them, for what the factories cook.
    void setSystemArgs(const VlAttribute::GroupAttribute& args);
    /// Whether boxes, and proxies, are generated; both are at first. Takes effect at the next pump.
    /// The application hears "__BOUNDING_BOXES_CHANGED" or "__PROXY_GEOMETRY_CHANGED" with 0 or 1,
    /// also when nothing changed.
    void setBoundingBoxesEnabled(bool isEnabled);
    void setProxyGeometryEnabled(bool isEnabled);

    // State of locations. Each works on the client first and on the tree second, also for
    // locations that are not there yet. A list with a null path in it changes nothing.

    void openLocations(const char* const* paths, std::uint32_t count);
    void closeLocations(const char* const* paths, std::uint32_t count);
    void pinLocations(const char* const* paths, std::uint32_t count);
    void unpinLocations(const char* const* paths, std::uint32_t count);
    void activateSourceLocations(const char* const* paths, std::uint32_t count);
    void deactivateSourceLocations(const char* const* paths, std::uint32_t count);
    /// A generated location can't be hidden.
    void hideLocations(const char* const* paths, std::uint32_t count);
    void unhideLocations(const char* const* paths, std::uint32_t count);
    void unhideAllLocations();
    [[nodiscard]] VlAttribute::StringAttribute getHiddenLocations() const;

    // Selection, which the application owns

    /// The application's selection has changed: components hear of it last to first, then the
    /// plug-in.
    void setSelectedLocations(const char* const* paths, std::uint32_t count);
    /// Asks the application to select by the channel "__SELECT_LOCATIONS".
    void selectLocation(const char* path);
    void selectLocations(const char* const* paths, std::uint32_t count);
    /// Asks the application by the channel "__GET_SELECTED_LOCATIONS"; null when it gives none.
    [[nodiscard]] VlAttribute::StringAttribute getSelectedLocations();

    // Attributes

    /// The attributes that plug-ins were told of, live values on top; null when they were told of
    /// no such location. The look-through view answers with what its client has cached.
    [[nodiscard]] VlAttribute::GroupAttribute getAttributes(std::string_view path,
                                                            int sceneView) const;
    /// The same without live values.
    [[nodiscard]] VlAttribute::GroupAttribute getCookedAttributes(std::string_view path,
                                                                  int sceneView) const;
    /// Only the live values, by name; null when there are none, and always in the sources view.
    [[nodiscard]] VlAttribute::GroupAttribute getLiveAttributes(std::string_view path,
                                                                int sceneView) const;
    /// Sets an attribute as a manipulator does: shown at once, and passed on to the application.
    /// The name may be dotted. Scene events are held back until some time after a final value.
    /// False when the value is null or nothing is known of the location: livevalues.h tells the
    /// rules.
    bool setManipulatedAttribute(const std::string& path, const std::string& name,
                                 const VlAttribute::Attribute& value, bool isFinal);
    /// From now on plug-ins don't hear of each value that is set on the location, until its close.
    void openManipulationGroup(const std::string& path);
    void closeManipulationGroup(const std::string& path);
    /// Paths below this one that plug-ins were told of, in breadth-first order.
    [[nodiscard]] VlAttribute::StringAttribute
    getDescendantLocations(const std::string& path) const;

    /// The tags of the manipulators that match at least one of these locations, by what
    /// `getAttributes` tells of them in the primary view: manipulator name to group of tags. Paths
    /// that plug-ins were not told of match nothing. Null for a list with a null path in it.
    [[nodiscard]] VlAttribute::GroupAttribute
    getCompatibleManipulatorsInfo(const char* const* paths, std::uint32_t count);

    // Transforms and bounds: scenetransforms.h and scenebounds.h tell the rules

    [[nodiscard]] VlAttribute::DoubleAttribute getLocalXform(std::string_view path,
                                                             bool& isAbsolute, int sceneView) const;
    [[nodiscard]] VlAttribute::DoubleAttribute getWorldXform(std::string_view path,
                                                             int sceneView) const;
    [[nodiscard]] VlAttribute::DoubleAttribute getParentXform(std::string_view path,
                                                              int sceneView) const;
    [[nodiscard]] VlAttribute::DoubleAttribute
    getPartialXform(const std::string& path, const std::string& groupName,
                    const std::string& componentName, bool includeComponent, int sceneView,
                    bool includeParentXform, bool includeGroupsBefore,
                    bool includeGroupsAfter) const;
    [[nodiscard]] VlAttribute::DoubleAttribute getBounds(const std::string& path);
    [[nodiscard]] VlAttribute::DoubleAttribute computeExtent(const std::string& path);
    /// `excludePath` may be empty.
    [[nodiscard]] VlAttribute::DoubleAttribute computeMergedExtent(const char* const* paths,
                                                                   std::uint32_t count,
                                                                   const std::string& excludePath);

    // Components and viewports: componentlist.h and viewportlist.h tell the rules

    VlViewerDelegateComponentHostStruct* addComponent(const std::string& pluginName,
                                                      const std::string& name) {
        return components.addComponent(pluginName, name);
    }
    VlViewerDelegateComponentHostStruct*
    insertComponent(const std::string& pluginName, const std::string& name, std::uint32_t index) {
        return components.insertComponent(pluginName, name, index);
    }
    [[nodiscard]] VlViewerDelegateComponentHostStruct* getComponent(const std::string& name) const {
        return components.getComponent(name);
    }
    [[nodiscard]] VlViewerDelegateComponentHostStruct*
    getComponentByIndex(std::uint32_t index) const {
        return components.getComponentByIndex(index);
    }
    [[nodiscard]] std::int32_t getComponentIndex(const std::string& name) const {
        return components.getComponentIndex(name);
    }
    [[nodiscard]] const char* getComponentName(std::uint32_t index) const {
        return components.getComponentName(index);
    }
    [[nodiscard]] std::uint32_t getNumberOfComponents() const {
        return components.getNumberOfComponents();
    }
    void removeComponent(const std::string& name) { components.removeComponent(name); }
    void removeComponentByIndex(std::uint32_t index) { components.removeComponentByIndex(index); }

    /// The delegate owns the viewport from now on.
    void addViewport(VlViewportHostStruct* viewport, const std::string& name) {
        viewports.addViewport(viewport, name);
    }
    [[nodiscard]] VlViewportHostStruct* getViewport(const std::string& name) const {
        return viewports.getViewport(name);
    }
    [[nodiscard]] VlViewportHostStruct* getViewportByIndex(std::uint32_t index) const {
        return viewports.getViewportByIndex(index);
    }
    [[nodiscard]] const char* getViewportName(std::uint32_t index) const {
        return viewports.getViewportName(index);
    }
    [[nodiscard]] std::uint32_t getNumberOfViewports() const {
        return viewports.getNumberOfViewports();
    }
    void removeViewport(const std::string& name) { viewports.removeViewport(name); }
    void removeViewportByIndex(std::uint32_t index) { viewports.removeViewportByIndex(index); }

    /// Has the viewport look through a location: lookthrough.h tells the rules.
    void setLookThroughLocation(VlViewportHostStruct* viewport, const char* path) {
        lookThrough.setLocation(viewport, path);
    }

    // Upward calls

    /// Fires a channel of the user interface with a value, which may be null; its answer, null
    /// when nobody listens; a null name is nobody's. Throws std::runtime_error when the listener
    /// failed.
    VlAttribute::Attribute callPythonCallback(const char* name,
                                              const VlAttribute::Attribute& value);

    // Fields. Those declared last end first, runtime and clients last of all.

    const ViewerDelegatePluginSuite* suite = nullptr;
    void* instance = nullptr;
    SceneClients scene;
    /// How many events of each client one pump takes; -1 for all.
    std::int32_t eventLimit = -1;
    void* hostedPythonObject;
    VlProxyFactoryList factories;
    ComponentList components;
    ViewportList viewports{*this};
    LookThrough lookThrough{*this};
    LiveValues liveValues{*this};
    std::unique_ptr<ManipulatorBridge> bridge; ///< never null
    ManipulationFreeze manipulationFreeze;
    /// How often live values whose data has arrived are looked for, in milliseconds.
    std::int64_t cleanupIntervalMs = 1000;
    std::int64_t lastCleanup = 0; ///< nanoseconds of steadyNow
    VlAttribute::DoubleAttribute identityXform;
    LocationTree locationTree;
    SourceLocationTree sourceLocationTree;

private:
    /// While everything that they may still ask for is there: a plug-in may have added components
    /// in its create entry, also when the construction fails afterwards.
    void endPlugins();
    void fetchAndHandleEvents();
    void handlePrimaryEvents(std::vector<VlScenelib::LocationEvent>& events);
    [[nodiscard]] bool hasActiveManipulators() const;
    void tellManipulators(const std::string& path, const VlAttribute::GroupAttribute& attributes);
    void handleSourceEvents(std::vector<VlScenelib::LocationEvent>& events);
    void handleLookThroughEvents(std::vector<VlScenelib::LocationEvent>& events);
    void applyFactoryProducts();

    LocationDelivery delivery_{*this};
    bool isHandlingEvents_ = false;
    bool isCollectingProducts_ = false;
};

} // namespace ViewerAPI
