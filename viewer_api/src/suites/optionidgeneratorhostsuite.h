#pragma once

#include "viewer_api/OptionIdGeneratorHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach the process's option id generator. The same pointer every
/// time, valid for the process's life.
[[nodiscard]] const OptionIdGeneratorHostSuite* getOptionIdGeneratorHostSuite();

} // namespace ViewerAPI
