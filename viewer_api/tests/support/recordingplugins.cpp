#include "support/recordingplugins.h"

#include "support/attributetext.h"
#include "support/flagstext.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {

using VlAttribute::Attribute;

namespace {

/// `create` gets nothing that tells whose it is, so every plug-in has a table of its own.
constexpr int kSlots = 8;
std::array<RecordingPlugin*, kSlots> slots{};

std::string lineOf(const RecordedEvent& event) {
    std::string line = event.path;
    const std::string flags = textOfFlags(event.flags);
    if (!flags.empty()) {
        line += " " + flags;
    }
    return event.isSource ? line : line + " handled=" + std::to_string(event.handled);
}

Attribute find(const std::map<std::string, Attribute>& answers, const char* path) {
    const auto found = answers.find(path);
    return found == answers.end() ? Attribute() : found->second;
}

} // namespace

std::vector<std::string> PluginLog::take(std::string_view entry) {
    std::vector<std::string> taken = take();
    std::erase_if(taken, [entry](const std::string& line) {
        const std::size_t begin = line.find(' ') + 1;
        return std::string_view(line).substr(begin, line.find(' ', begin) - begin) != entry;
    });
    return taken;
}

/// The entries of both tables; an instance is the RecordingPlugin.
struct RecordingEntries {
    static RecordingPlugin& from(void* instance) {
        return *static_cast<RecordingPlugin*>(instance);
    }

    template <int slot>
    static void* create(void* host) {
        RecordingPlugin& plugin = *slots[slot];
        plugin.host = host;
        plugin.called("create");
        if (plugin.refusesCreate) {
            return nullptr;
        }
        ++plugin.numberOfInstances;
        return &plugin;
    }
    static void destroy(void* instance) {
        --from(instance).numberOfInstances;
        from(instance).called("destroy");
    }
    static void record(void* instance, const char* entry, const ViewerLocationEvent* event,
                       int handled, bool isSource) {
        RecordingPlugin& plugin = from(instance);
        RecordedEvent recorded{event->locationPath,
                               Attribute::CreateAndRetain(event->attributes),
                               Attribute::CreateAndRetain(event->xform),
                               event->flags,
                               handled,
                               isSource};
        const std::string line = lineOf(recorded);
        plugin.events.push_back(std::move(recorded));
        plugin.called(entry, event->locationPath,
                      std::string_view(line).substr(std::string_view(event->locationPath).size()));
    }
    static void locationEvent(void* instance, const ViewerLocationEvent* event, int handled) {
        record(instance, "locationEvent", event, handled, false);
    }
    static int componentLocationEvent(void* instance, const ViewerLocationEvent* event,
                                      int handled) {
        record(instance, "locationEvent", event, handled, false);
        return from(instance).handles;
    }
    static void sourceLocationEvent(void* instance, const ViewerLocationEvent* event) {
        record(instance, "sourceLocationEvent", event, 0, true);
    }
    static void locationsSelected(void* instance, const char** paths, std::uint32_t count) {
        std::string text = "[";
        for (std::uint32_t i = 0; i < count; ++i) {
            text += (i == 0 ? "" : " ") + std::string(paths[i]);
        }
        from(instance).called("locationsSelected", text + "]");
    }
    static void setOption(void* instance, std::uint64_t optionId, VlAttributeStruct* value) {
        const Attribute owned = Attribute::CreateAndSteal(value);
        from(instance).options[optionId] = owned;
        from(instance).called("setOption", std::to_string(optionId), " " + textOf(owned));
    }
    static VlAttributeStruct* getOption(void* instance, std::uint64_t optionId) {
        RecordingPlugin& plugin = from(instance);
        plugin.called("getOption", std::to_string(optionId));
        const auto found = plugin.options.find(optionId);
        return found == plugin.options.end() ? nullptr : found->second.getRetainedHandle();
    }
    static void freeze(void* instance) { from(instance).called("freeze"); }
    static void thaw(void* instance) { from(instance).called("thaw"); }
    static void setup(void* instance) { from(instance).called("setup"); }
    static void cleanup(void* instance) { from(instance).called("cleanup"); }
    static int isProcessing(void* instance) {
        from(instance).called("isProcessing");
        return from(instance).processing;
    }
    static VlAttributeStruct* getBounds(void* instance, const char* path) {
        from(instance).called("getBounds", path);
        return find(from(instance).bounds, path).detach();
    }
    static VlAttributeStruct* computeExtent(void* instance, const char* path) {
        from(instance).called("computeExtent", path);
        return find(from(instance).extents, path).detach();
    }

    template <int slot>
    static VlPluginRecord record(RecordingPlugin::Kind kind, const char* name) {
        static const ViewerDelegatePluginSuite kDelegate = {&create<slot>,
                                                            &destroy,
                                                            &locationEvent,
                                                            &sourceLocationEvent,
                                                            &locationsSelected,
                                                            &setOption,
                                                            &getOption,
                                                            &freeze,
                                                            &thaw,
                                                            &setup,
                                                            &cleanup,
                                                            &isProcessing,
                                                            &getBounds,
                                                            &computeExtent};
        static const ViewerDelegateComponentPluginSuite kComponent = {&create<slot>,
                                                                      &destroy,
                                                                      &componentLocationEvent,
                                                                      &locationsSelected,
                                                                      &setOption,
                                                                      &getOption,
                                                                      &setup,
                                                                      &cleanup,
                                                                      &isProcessing,
                                                                      &getBounds,
                                                                      &computeExtent};
        if (kind == RecordingPlugin::Kind::Delegate) {
            return {VL_VIEWER_DELEGATE_PLUGIN_TYPE, name, VL_VIEWER_DELEGATE_PLUGIN_API_VERSION,
                    &kDelegate};
        }
        return {VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE, name,
                VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION, &kComponent};
    }

    template <int... slot>
    static VlPluginRecord record(RecordingPlugin::Kind kind, const char* name, int which,
                                 std::integer_sequence<int, slot...>) {
        VlPluginRecord result{};
        ((slot == which ? void(result = record<slot>(kind, name)) : void()), ...);
        return result;
    }

    static VlPluginRecord record(RecordingPlugin::Kind kind, const char* name, int which) {
        return record(kind, name, which, std::make_integer_sequence<int, kSlots>());
    }
};

RecordingPlugin::RecordingPlugin(PluginLog& pluginLog, Kind pluginKind, std::string pluginName)
    : log(pluginLog), kind(pluginKind), name(std::move(pluginName)) {
    while (slots.at(static_cast<std::size_t>(slot))) {
        ++slot;
    }
    if (!VlPluginSystem::registerPlugin(RecordingEntries::record(kind, name.c_str(), slot))) {
        throw std::runtime_error("RecordingPlugin: can't register '" + name + "'");
    }
    slots[static_cast<std::size_t>(slot)] = this;
}

RecordingPlugin::~RecordingPlugin() {
    const VlPluginRecord record = RecordingEntries::record(kind, name.c_str(), slot);
    VlPluginSystem::unregisterPlugin(record.typeName, record.name, record.apiVersion);
    slots[static_cast<std::size_t>(slot)] = nullptr;
}

void RecordingPlugin::called(std::string_view entry, std::string_view subject,
                             std::string_view rest) {
    std::string line = name + " " + std::string(entry);
    if (!subject.empty()) {
        line += " " + std::string(subject);
    }
    log.lines.push_back(line + std::string(rest));
    if (onCall) {
        onCall(entry, subject);
    }
}

std::vector<std::string> RecordingPlugin::takeEventLines() {
    std::vector<std::string> lines;
    for (const RecordedEvent& event : std::exchange(events, {})) {
        lines.push_back(lineOf(event));
    }
    return lines;
}

} // namespace ViewerAPI::test
