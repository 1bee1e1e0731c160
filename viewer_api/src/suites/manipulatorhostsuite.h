#pragma once

#include "viewer_api/ManipulatorHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlManipulatorHostStruct, whose pointer its entries take
/// as host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ManipulatorHostSuite* getManipulatorHostSuite();

} // namespace ViewerAPI
