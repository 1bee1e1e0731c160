#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <optional>

namespace Bundled {

/// The first number of a child, of whichever numeric kind; nothing without one.
std::optional<double> number(const VlAttribute::GroupAttribute& group, const char* name);

} // namespace Bundled
