#pragma once

#include "plainscene.h"

/// What "WorkingSet.MultipleOnePassResolve" and "WorkingSet.Prune" make of a scene, found for each
/// location by itself, from the paths of the sets.
[[nodiscard]] PlainScene resolveWorkingSetsPlainly(const VlAttribute::GroupAttribute& args,
                                                   const PlainScene& input);
[[nodiscard]] PlainScene pruneWorkingSetsPlainly(const VlAttribute::GroupAttribute& args,
                                                 const PlainScene& input);
