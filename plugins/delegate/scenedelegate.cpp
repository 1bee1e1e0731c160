#include "delegate/scenedelegate.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/ViewportHost.h"

namespace Bundled {

void SceneDelegate::locationEvent(const ViewerLocationEvent& event, bool handledByComponent) {
    // A component that handles a location draws it as well; a removal ends what was drawn here
    // before it did.
    LocationUpdate update = LocationUpdate::fromEvent(event);
    if (handledByComponent && (event.flags & kVlLocationEventRemoved) == 0) {
        update.attributes = VlAttribute::GroupAttribute();
        update.flags |= kVlLocationEventAttributesChanged;
    }
    mirror.apply(update);
    askForPictures();
}

void SceneDelegate::locationsSelected(std::span<const char* const> paths) {
    mirror.setSelection(paths);
    askForPictures();
}

VlAttribute::Attribute SceneDelegate::getOption(std::uint64_t optionId) {
    if (optionId == locationsId) {
        return VlAttribute::StringAttribute(mirror.getLocationPaths());
    }
    return optionId == boundsId ? getDrawnBounds() : Attribute();
}

VlAttribute::DoubleAttribute SceneDelegate::getDrawnBounds() {
    mirror.update();
    const Imath::Box3d box = mirror.getBounds();
    if (box.isEmpty()) {
        return {};
    }
    return VlAttribute::DoubleAttribute(
        {box.min.x, box.max.x, box.min.y, box.max.y, box.min.z, box.max.z});
}

std::shared_ptr<GpuScene> SceneDelegate::shareGpuScene() {
    std::shared_ptr<GpuScene> shared = gpuScene.lock();
    if (!shared) {
        shared = std::make_shared<GpuScene>();
        gpuScene = shared;
        mirror.forgetUploads();
    }
    return shared;
}

void SceneDelegate::askForPictures() {
    if (!pictureIsCurrent) {
        return;
    }
    pictureIsCurrent = false;
    for (std::uint32_t i = 0; i < host.getNumberOfViewports(); ++i) {
        ViewerPlugin::ViewportHost(host.getViewportByIndex(i).host).setDirty(true);
    }
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::SceneDelegate, "SceneDelegate");
