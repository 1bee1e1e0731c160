#include "support/recordingmanipulator.h"

#include "support/attributetext.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "viewer_api/ManipulatorPluginSuite.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;

namespace {

/// Some entries get nothing that tells whose they are, so every plug-in has a table of its own.
constexpr std::size_t kSlots = 4;
std::array<RecordingManipulator*, kSlots> slots{};

} // namespace

struct ManipulatorEntries {
    static int matches(std::size_t slot, VlAttributeStruct* location) {
        RecordingManipulator& plugin = *slots[slot];
        plugin.log.lines.push_back(plugin.name + " matches " + textOf(location));
        const GroupAttribute attributes(Attribute::CreateAndRetain(location));
        return plugin.onMatches ? plugin.onMatches(attributes) : 0;
    }

    static VlAttributeStruct* getTags(std::size_t slot) {
        RecordingManipulator& plugin = *slots[slot];
        plugin.log.lines.push_back(plugin.name + " getTags");
        if (plugin.onGetTags) {
            plugin.onGetTags();
        }
        return plugin.tags.getRetainedHandle();
    }

    static void* create(std::size_t slot, void* host) {
        RecordingManipulator& plugin = *slots[slot];
        plugin.host = host;
        plugin.called("create");
        if (plugin.refusesCreate) {
            return nullptr;
        }
        ++plugin.numberOfInstances;
        return &plugin;
    }
    static RecordingManipulator& from(void* instance) {
        return *static_cast<RecordingManipulator*>(instance);
    }
    static void destroy(void* instance) {
        --from(instance).numberOfInstances;
        from(instance).called("destroy");
    }
    static void setup(void* instance) { from(instance).called("setup"); }
    static int event(void* instance, VlAttributeStruct* event) {
        from(instance).called("event", textOf(event));
        return from(instance).handles;
    }
    static void draw(void* instance) { from(instance).called("draw"); }
    static void pickerDraw(void* instance, std::uint64_t pickerId) {
        from(instance).called("pickerDraw", std::to_string(pickerId));
    }
    static void setOption(void* instance, std::uint64_t id, VlAttributeStruct* value) {
        const Attribute owned = Attribute::CreateAndSteal(value);
        from(instance).options[id] = owned;
        from(instance).called("setOption", std::to_string(id) + " " + textOf(owned));
    }
    static VlAttributeStruct* getOption(void* instance, std::uint64_t id) {
        from(instance).called("getOption", std::to_string(id));
        return from(instance).options[id].getRetainedHandle();
    }

    template <std::size_t slot>
    static ManipulatorPluginSuite makeTable() {
        ManipulatorPluginSuite table{};
        table.create = [](void* host) { return create(slot, host); };
        table.destroy = destroy;
        table.setup = setup;
        table.event = event;
        table.draw = draw;
        table.pickerDraw = pickerDraw;
        table.setOption = setOption;
        table.getOption = getOption;
        table.matches = [](VlAttributeStruct* location) { return matches(slot, location); };
        table.getTags = [] { return getTags(slot); };
        return table;
    }

    template <std::size_t... slot>
    static auto makeTables(std::index_sequence<slot...>) {
        return std::array<ManipulatorPluginSuite, kSlots>{makeTable<slot>()...};
    }

    static const ManipulatorPluginSuite* table(std::size_t slot) {
        static const auto kTables = makeTables(std::make_index_sequence<kSlots>());
        return &kTables[slot];
    }
};

RecordingManipulator::RecordingManipulator(PluginLog& pluginLog, std::string pluginName,
                                           Table table)
    : log(pluginLog), name(std::move(pluginName)) {
    while (slots.at(slot)) {
        ++slot;
    }
    const VlPluginRecord record = {
        VL_MANIPULATOR_PLUGIN_TYPE, name.c_str(), VL_MANIPULATOR_PLUGIN_API_VERSION,
        table == Table::Whole ? ManipulatorEntries::table(slot) : nullptr};
    if (!VlPluginSystem::registerPlugin(record)) {
        throw std::runtime_error("RecordingManipulator: can't register '" + name + "'");
    }
    slots[slot] = this;
}

RecordingManipulator::~RecordingManipulator() {
    VlPluginSystem::unregisterPlugin(VL_MANIPULATOR_PLUGIN_TYPE, name,
                                     VL_MANIPULATOR_PLUGIN_API_VERSION);
    slots[slot] = nullptr;
}

void RecordingManipulator::called(std::string_view entry, const std::string& arguments) {
    log.lines.push_back(name + " " + std::string(entry) +
                        (arguments.empty() ? "" : " " + arguments));
    if (onCall) {
        onCall(entry);
    }
}

} // namespace ViewerAPI::test
