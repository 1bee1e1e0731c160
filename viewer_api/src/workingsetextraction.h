#pragma once

#include "workingsetstate.h"

#include "VlAttribute/GroupAttribute.h"

namespace ViewerAPI {

/// The group under which the resolve op writes its findings on each location.
inline constexpr const char* kWorkingSetsGroupName = "__viewerWorkingSets";

/// Takes the working set's findings out of cooked attributes. Attributes without any come back as
/// they are, with `state` untouched; this costs one look-up. Otherwise `state` gets what is told
/// there, and the attributes come back without the whole group, which plug-ins never see.
/// [any-thread]
[[nodiscard]] VlAttribute::GroupAttribute
extractWorkingSetState(VlAttribute::GroupAttribute attributes, WorkingSetState& state);

} // namespace ViewerAPI
