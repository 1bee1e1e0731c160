#include "support/recordinghandle.h"

#include "support/attributetext.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "viewer_api/ManipulatorHandlePluginSuite.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {

namespace {

/// `create` gets nothing that tells whose it is, so every plug-in has a table of its own.
constexpr std::size_t kSlots = 4;
std::array<RecordingHandle*, kSlots> slots{};

} // namespace

struct HandleEntries {
    static RecordingHandle& from(void* instance) {
        return *static_cast<RecordingHandle*>(instance);
    }
    static void* create(std::size_t slot, void* host) {
        RecordingHandle& plugin = *slots[slot];
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
    static int event(void* instance, VlAttributeStruct* event) {
        from(instance).called("event", textOf(event));
        return from(instance).handles;
    }
    static void draw(void* instance) { from(instance).called("draw"); }
    static void pickerDraw(void* instance, std::uint64_t pickerId) {
        from(instance).called("pickerDraw", std::to_string(pickerId));
    }
    static void notify(void* instance) { from(instance).called("notify"); }

    template <std::size_t slot>
    static ManipulatorHandlePluginSuite makeTable() {
        // The two reserved entries stay null: a call of them would not go unnoticed.
        ManipulatorHandlePluginSuite table{};
        table.create = [](void* host) { return create(slot, host); };
        table.destroy = destroy;
        table.event = event;
        table.draw = draw;
        table.pickerDraw = pickerDraw;
        table.notify = notify;
        return table;
    }

    template <std::size_t... slot>
    static auto makeTables(std::index_sequence<slot...>) {
        return std::array<ManipulatorHandlePluginSuite, kSlots>{makeTable<slot>()...};
    }

    static const ManipulatorHandlePluginSuite* table(std::size_t slot) {
        static const auto kTables = makeTables(std::make_index_sequence<kSlots>());
        return &kTables[slot];
    }
};

RecordingHandle::RecordingHandle(PluginLog& pluginLog, std::string pluginName, Table table)
    : log(pluginLog), name(std::move(pluginName)) {
    while (slots.at(slot)) {
        ++slot;
    }
    const VlPluginRecord record = {VL_MANIPULATOR_HANDLE_PLUGIN_TYPE, name.c_str(),
                                   VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION,
                                   table == Table::Whole ? HandleEntries::table(slot) : nullptr};
    if (!VlPluginSystem::registerPlugin(record)) {
        throw std::runtime_error("RecordingHandle: can't register '" + name + "'");
    }
    slots[slot] = this;
}

RecordingHandle::~RecordingHandle() {
    VlPluginSystem::unregisterPlugin(VL_MANIPULATOR_HANDLE_PLUGIN_TYPE, name,
                                     VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION);
    slots[slot] = nullptr;
}

void RecordingHandle::called(std::string_view entry, const std::string& arguments) {
    log.lines.push_back(name + " " + std::string(entry) +
                        (arguments.empty() ? "" : " " + arguments));
    if (onCall) {
        onCall(entry);
    }
}

} // namespace ViewerAPI::test
