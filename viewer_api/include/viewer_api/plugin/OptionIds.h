#pragma once

#include "viewer_api/plugin/HostSuites.h"

#include <cstdint>

namespace ViewerPlugin {

/// The id of an option's name: keep it, the hash is not free. Throws when the host offers no
/// option ids. [ui-thread]
inline std::uint64_t optionId(const char* name) {
    const auto& suite = requireHostSuite<OptionIdGeneratorHostSuite>();
    return suite.generateOptionIdByName(suite.getOptionIdGenerator(), name);
}

/// The name of an id, "" for one that nobody generated. [ui-thread]
inline const char* optionName(std::uint64_t id) {
    const auto& suite = requireHostSuite<OptionIdGeneratorHostSuite>();
    return suite.lookUpOptionId(suite.getOptionIdGenerator(), id);
}

} // namespace ViewerPlugin
