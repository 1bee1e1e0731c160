#pragma once

#include "plugininstance.h"

#include <string>

namespace ViewerAPI {

/// The entries that a plug-in's table has null, by their names, with ", " between; empty for a
/// complete table. Each entry counts, also one that might never be called, but for those that the
/// table's header says are never called. `suite` is the kind's table, not null. [any-thread]
[[nodiscard]] std::string getMissingEntries(PluginKind kind, const void* suite);

} // namespace ViewerAPI
