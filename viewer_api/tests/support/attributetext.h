#pragma once

#include "VlAttribute/Attribute.h"

#include <string>

namespace ViewerAPI::test {

/// An attribute as one line of text: a number or `"text"`, several values as `(1 2 3)`, a group as
/// `{name=value name=value}`, a null attribute as `null`. Of several samples the one nearest to 0.
std::string textOf(const VlAttribute::Attribute& attribute);

/// The same for the handle of a call, which stays the caller's.
std::string textOf(VlAttributeStruct* borrowed);

} // namespace ViewerAPI::test
