#pragma once

#include "scene/drawoptions.h"
#include "viewer_api/plugin/PickRegion.h"
#include "viewer_api/plugin/ViewportHost.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <functional>

namespace Bundled {

class SceneDelegate;

/// Registers an object with whoever is being picked.
using AddPickableObject = std::function<std::uint64_t(const VlAttribute::Attribute& object)>;

/// Draws what can be picked of a delegate's scene into the bound picking surface: each location is
/// an object, a StringAttribute of its path, and is hit where this display mode shows it; with
/// `cullBackFaces` polygons that are seen from behind are not. Leaves out what `excluded` (id to
/// object) holds, and draws nothing outside the region. [gl-current]
void drawPickableLocations(SceneDelegate& delegate, const ViewerPlugin::ViewportHost& viewport,
                           DisplayMode displayMode, bool cullBackFaces,
                           const ViewerPlugin::PickRegion& region,
                           const VlAttribute::GroupAttribute& excluded,
                           const AddPickableObject& add);

} // namespace Bundled
