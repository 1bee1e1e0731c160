#include "support/viewportplugins.h"

#include "vlviewportcamerahost.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <algorithm>
#include <stdexcept>

namespace ViewerAPI::test {

namespace {

constexpr uint32_t kApiVersion = 2;

ViewportPlugins* currentPlugins = nullptr;

using Instance = ViewportPlugins::Instance;

ViewportPlugins& plugins() {
    return ViewportPlugins::current();
}

Instance& of(void* instance) {
    return *static_cast<Instance*>(instance);
}

std::string numbers(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    return text;
}

void destroy(void* instance) {
    plugins().destroy(instance);
}

void setup(void* instance) {
    plugins().called(instance, "setup");
}
void cleanup(void* instance) {
    plugins().called(instance, "cleanup");
}
void draw(void* instance) {
    plugins().called(instance, "draw");
}
void freeze(void* instance) {
    plugins().called(instance, "freeze");
}
void thaw(void* instance) {
    plugins().called(instance, "thaw");
}

// A viewport's plug-in borrows the event, a layer's owns it.
int event(void* instance, VlAttributeStruct* data) {
    of(instance).lastAttribute = VlAttribute::Attribute::CreateAndRetain(data);
    return plugins().called(instance, "event");
}

int ownedEvent(void* instance, VlAttributeStruct* data) {
    of(instance).lastAttribute = VlAttribute::Attribute::CreateAndSteal(data);
    return plugins().called(instance, "event");
}

void resize(void* instance, int width, int height) {
    plugins().called(instance, "resize", numbers({width, height}));
}

void hover(void* instance, int isHovering, int x, int y) {
    plugins().called(instance, "hover", numbers({isHovering, x, y}));
}

void setOption(void* instance, uint64_t id, VlAttributeStruct* value) {
    of(instance).optionIds.push_back(id);
    of(instance).lastAttribute = VlAttribute::Attribute::CreateAndSteal(value);
    plugins().called(instance, "setOption");
}

VlAttributeStruct* getOption(void* instance, uint64_t id) {
    of(instance).optionIds.push_back(id);
    plugins().called(instance, "getOption");
    return plugins().attributeAnswer.getRetainedHandle();
}

void pickerDraw(void* instance, int x, int y, int width, int height, VlAttributeStruct* excluded) {
    of(instance).lastAttribute = VlAttribute::Attribute::CreateAndRetain(excluded);
    plugins().called(instance, "pickerDraw", numbers({x, y, width, height}));
}

int customPick(void* instance, int x, int y, int width, int height, int deepPicking,
               VlAttributeStruct** picked, float* depth) {
    const int answer =
        plugins().called(instance, "customPick", numbers({x, y, width, height, deepPicking}));
    if (answer) {
        *picked = plugins().attributeAnswer.getRetainedHandle();
        if (depth) {
            *depth = plugins().depthAnswer;
        }
    }
    return answer;
}

int usesPickingCache(void* instance) {
    return plugins().called(instance, "usesPickingCache");
}

int getCameraTypeID(void* instance) {
    return plugins().called(instance, "getCameraTypeID");
}

void setViewportDimensions(void* instance, int width, int height) {
    plugins().called(instance, "setViewportDimensions", numbers({width, height}));
}

void setupCamera(void* instance, VlAttributeStruct* data) {
    of(instance).lastAttribute = VlAttribute::Attribute::CreateAndSteal(data);
    plugins().called(instance, "setup");
}

VlAttributeStruct* asAttribute(void* instance) {
    plugins().called(instance, "asAttribute");
    return plugins().attributeAnswer.getRetainedHandle();
}

void setDirty(void* instance, int bits) {
    plugins().called(instance, "setDirty", numbers({bits}));
}

ViewportPluginSuite viewportSuite() {
    ViewportPluginSuite suite{};
    suite.create = [](void* host) { return plugins().create("viewport", host); };
    suite.destroy = destroy;
    suite.setup = setup;
    suite.cleanup = cleanup;
    suite.event = event;
    suite.draw = draw;
    suite.resize = resize;
    suite.hover = hover;
    suite.setOption = setOption;
    suite.getOption = getOption;
    suite.freeze = freeze;
    suite.thaw = thaw;
    suite.pickerDraw = pickerDraw;
    suite.customPick = customPick;
    return suite;
}

ViewportLayerPluginSuite layerSuite() {
    ViewportLayerPluginSuite suite{};
    suite.create = [](void* host) { return plugins().create("layer", host); };
    suite.destroy = destroy;
    suite.setup = setup;
    suite.cleanup = cleanup;
    suite.event = ownedEvent;
    suite.draw = draw;
    suite.resize = resize;
    suite.hover = hover;
    suite.freeze = freeze;
    suite.thaw = thaw;
    suite.setOption = setOption;
    suite.getOption = getOption;
    suite.pickerDraw = pickerDraw;
    suite.usesPickingCache = usesPickingCache;
    suite.customPick = customPick;
    return suite;
}

ViewportCameraPluginSuite cameraSuite() {
    ViewportCameraPluginSuite suite{};
    suite.create = [](void* host) { return plugins().create("camera", host); };
    suite.destroy = destroy;
    suite.getCameraTypeID = getCameraTypeID;
    suite.setViewportDimensions = setViewportDimensions;
    suite.setOption = setOption;
    suite.getOption = getOption;
    suite.setup = setupCamera;
    suite.asAttribute = asAttribute;
    suite.setDirty = setDirty;
    return suite;
}

template <class Suite>
const Suite* failing(Suite suite) {
    static Suite failingSuite;
    failingSuite = suite;
    failingSuite.create = [](void*) -> void* { return nullptr; };
    return &failingSuite;
}

} // namespace

ViewportPlugins::ViewportPlugins(CallJournal& journal) : journal_(journal) {
    if (currentPlugins) {
        throw std::logic_error("ViewportPlugins: there is one already");
    }
    currentPlugins = this;
    static const ViewportPluginSuite viewports = viewportSuite();
    static const ViewportLayerPluginSuite layers = layerSuite();
    static const ViewportCameraPluginSuite cameras = cameraSuite();
    registerPlugin("ViewportPlugin", "Recording", &viewports);
    registerPlugin("ViewportPlugin", "NullCreate", failing(viewports));
    registerPlugin("ViewportPlugin", "NoSuite", nullptr);
    registerPlugin("ViewportLayerPlugin", "Recording", &layers);
    registerPlugin("ViewportLayerPlugin", "NullCreate", failing(layers));
    registerPlugin("ViewportLayerPlugin", "NoSuite", nullptr);
    registerPlugin("ViewportLayerPlugin", "OnlyALayer", &layers);
    registerPlugin("ViewportCameraPlugin", "Recording", &cameras);
    registerPlugin("ViewportCameraPlugin", "NullCreate", failing(cameras));
    registerPlugin("ViewportCameraPlugin", "NoSuite", nullptr);
}

ViewportPlugins::~ViewportPlugins() {
    for (const auto& [typeName, name] : registered_) {
        VlPluginSystem::unregisterPlugin(typeName, name, kApiVersion);
    }
    currentPlugins = nullptr;
}

void ViewportPlugins::registerPlugin(const char* typeName, const char* name, const void* suite) {
    if (!VlPluginSystem::registerPlugin({typeName, name, kApiVersion, suite})) {
        throw std::logic_error(std::string("ViewportPlugins: not registered: ") + typeName + " " +
                               name);
    }
    registered_.emplace_back(typeName, name);
}

ViewportPlugins& ViewportPlugins::current() {
    return *currentPlugins;
}

ViewportPlugins::Instance& ViewportPlugins::instance(const std::string& name) {
    for (const auto& candidate : instances_) {
        if (candidate->name == name) {
            return *candidate;
        }
    }
    throw std::logic_error("ViewportPlugins: no instance " + name);
}

int ViewportPlugins::livingInstances() const {
    return static_cast<int>(std::ranges::count_if(
        instances_, [](const auto& candidate) { return !candidate->isDestroyed; }));
}

void ViewportPlugins::endCameras() {
    for (const auto& candidate : instances_) {
        if (!candidate->isDestroyed && candidate->name.starts_with("camera")) {
            HostObject::retire(static_cast<VlViewportCameraHostStruct*>(candidate->host));
        }
    }
}

void* ViewportPlugins::create(const char* kind, void* host) {
    const std::string name = kind + std::to_string(++counts_[kind]);
    Instance& made = *instances_.emplace_back(std::make_unique<Instance>());
    made.name = name;
    made.host = host;
    called(&made, "create");
    return &made;
}

void ViewportPlugins::destroy(void* instance) {
    // A second destroy of one instance shows in the journal by this word.
    called(instance, of(instance).isDestroyed ? "destroyAgain" : "destroy");
    of(instance).isDestroyed = true;
}

int ViewportPlugins::called(void* instance, const std::string& entry,
                            const std::string& arguments) {
    const std::string key = of(instance).name + "." + entry;
    journal_.add(arguments.empty() ? key : key + " " + arguments);
    if (const auto hook = hooks.find(key); hook != hooks.end()) {
        // The hook may take itself out.
        const auto run = hook->second;
        run(of(instance));
    }
    const auto answer = answers.find(key);
    return answer == answers.end() ? 0 : answer->second;
}

} // namespace ViewerAPI::test
