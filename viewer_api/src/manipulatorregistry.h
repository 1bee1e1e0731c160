#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ManipulatorPluginSuite.h"

#include <span>
#include <string_view>

namespace ViewerAPI {

// Which manipulators there are, and which of them fit a selection, before any instance is made. The
// plug-in manager's list is walked at every question and nothing is kept. Exceptions of plug-ins
// pass through. [ui-thread]

/// The table of a manipulator's plug-in, null when it has none. Throws std::runtime_error when
/// there is no such plug-in.
[[nodiscard]] const ManipulatorPluginSuite* loadManipulatorSuite(std::string_view pluginName);

/// The tags of every manipulator: plug-in name to group of tags, in the plug-in manager's order. A
/// plug-in without a table is passed over, and so is one that answers no group.
[[nodiscard]] VlAttribute::GroupAttribute getRegisteredManipulatorsInfo();

/// The same of the manipulators that match at least one of these locations, each given by its
/// attributes. A plug-in is asked up to its first match.
[[nodiscard]] VlAttribute::GroupAttribute
getCompatibleManipulatorsInfo(std::span<const VlAttribute::GroupAttribute> locations);

} // namespace ViewerAPI
