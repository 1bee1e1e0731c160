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

/// Neither entry gets anything that tells whose it is, so every plug-in has a table of its own.
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
        if (plugin.onGetTags)
            plugin.onGetTags();
        return plugin.tags.getRetainedHandle();
    }

    template <std::size_t slot>
    static ManipulatorPluginSuite makeTable() {
        ManipulatorPluginSuite table{};
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
    while (slots.at(slot))
        ++slot;
    const VlPluginRecord record = {
        VL_MANIPULATOR_PLUGIN_TYPE, name.c_str(), VL_MANIPULATOR_PLUGIN_API_VERSION,
        table == Table::Whole ? ManipulatorEntries::table(slot) : nullptr};
    if (!VlPluginSystem::registerPlugin(record))
        throw std::runtime_error("RecordingManipulator: can't register '" + name + "'");
    slots[slot] = this;
}

RecordingManipulator::~RecordingManipulator() {
    VlPluginSystem::unregisterPlugin(VL_MANIPULATOR_PLUGIN_TYPE, name,
                                     VL_MANIPULATOR_PLUGIN_API_VERSION);
    slots[slot] = nullptr;
}

} // namespace ViewerAPI::test
