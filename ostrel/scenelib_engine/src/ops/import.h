#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "Geometry.Import": a model from a file.
///
/// `filePath`: any format that the import library reads. Without it nothing is shown. The model
/// hangs under "/root/" and its file's name ("duck.dae" becomes "/root/duck_dae"); a file that
/// can't be read makes that location one of type "error". `name`, where told, stands in place of
/// the file's: so that models of one name can be merged.
///
/// `animation` (an int, 0 unless told) says which of the file's animations is shown; one that there
/// isn't, such as -1, shows the model at rest. `framesPerSecond` (a number, 24 unless told) turns
/// the current time into the animation's. Before its beginning and after its end it stands still.
///
/// `exclusiveTo`, where told, is written as `attributeEditor.exclusiveTo` on each of the model's
/// locations: the node that may edit them.
///
/// `proxies`, a group, where told, is written as `proxies` on the model's own location: what stands
/// for the model while a viewer shows nothing of what is below.
///
/// The file is read when the model's own location is cooked, once for all ops that show it, and
/// again when that location is cooked after the file has changed. It is read apart from cooks: the
/// model's location shows when that is done, with its hierarchy and bounds, other locations
/// meanwhile. The geometry of a mesh is made when its location is cooked. Only locations that move,
/// or whose bound does, read the time.
class Import final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
