#pragma once

#include "viewer_api/ManipulatorHandleHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlManipulatorHandleHostStruct, whose pointer its
/// entries take as host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ManipulatorHandleHostSuite* getManipulatorHandleHostSuite();

} // namespace ViewerAPI
