#pragma once

#include "gl/gpuscene.h"
#include "scene/scenemirror.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegatePlugin.h"

#include <cstdint>
#include <memory>

namespace Bundled {

/// "SceneDelegate": mirrors what it is told for the layers of this library to draw. It opens no
/// location by itself, and knows no bounds that the host could not compute.
///
/// Options, read only. "locations" (strings): the paths of all that it was told of, parents before
/// children. "bounds" (6 doubles): the box in world space around all that is there to be drawn;
/// null when nothing is. Unlike the host's extents it goes by geometry alone, and follows every
/// move of it, also below locations whose `bound` does not.
///
/// Layers find it through their viewport's delegate (`pluginCast<SceneDelegate>`), from the second
/// of their calls on: while a viewport is made, its delegate may not be there yet.
class SceneDelegate final : public ViewerPlugin::ViewerDelegatePlugin {
public:
    using ViewerDelegatePlugin::ViewerDelegatePlugin;

    void locationEvent(const ViewerLocationEvent& event, bool handledByComponent) override;
    void locationsSelected(std::span<const char* const> paths) override;
    Attribute getOption(std::uint64_t optionId) override;

    /// What was told so far. The caller may `update` it.
    SceneMirror& getMirror() { return mirror; }
    /// The mirror in the graphics card's memory, made for the first and ended with the last holder:
    /// layers hold it between setup and cleanup, so that it ends with the context current.
    std::shared_ptr<GpuScene> shareGpuScene();
    /// A layer drew the mirror's present state: the next change asks for a new picture.
    void noteDrawn() { pictureIsCurrent = true; }

private:
    void askForPictures();

    VlAttribute::DoubleAttribute getDrawnBounds();

    const std::uint64_t locationsId = ViewerPlugin::optionId("locations");
    const std::uint64_t boundsId = ViewerPlugin::optionId("bounds");
    SceneMirror mirror;
    std::weak_ptr<GpuScene> gpuScene;
    bool pictureIsCurrent = true;
};

} // namespace Bundled
