#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <optional>

namespace Bundled {

/// The first number of an attribute, of whichever numeric kind; nothing without one.
std::optional<double> number(const VlAttribute::Attribute& attribute);

/// That of a child.
std::optional<double> number(const VlAttribute::GroupAttribute& group, const char* name);

} // namespace Bundled
