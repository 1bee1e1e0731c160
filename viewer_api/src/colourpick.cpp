#include "colourpick.h"

#include "VlAttribute/GroupBuilder.h"

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

namespace {

constexpr int kMostPasses = 100;

// The end of a pick. Its clears come after the surface is unbound and fall on the framebuffer that
// was bound before, as a rule the window's. They have to stay there: a pick leaves the window's
// buffers cleared until the next draw, whatever the plug-in's drawing of ids did to them.
class PickEnd {
public:
    explicit PickEnd(VlViewportPicker& picker) : picker_(picker) {}
    ~PickEnd() { picker_.clear(true); }
    PickEnd(const PickEnd&) = delete;
    PickEnd& operator=(const PickEnd&) = delete;

private:
    VlViewportPicker& picker_;
};

bool hasChildren(const GroupAttribute& group) {
    return group.isValid() && group.getNumberOfChildren() > 0;
}

} // namespace

void PickingPlugin::pickerDraw(const PixelRegion& region, const GroupAttribute& excluded) const {
    pickerDrawEntry(instance, region.x, region.y, region.width, region.height,
                    excluded.getHandle());
}

std::optional<GroupAttribute> PickingPlugin::customPick(const PixelRegion& region, bool deepPicking,
                                                        float* depthOut) const {
    VlAttributeStruct* picked = nullptr;
    if (!customPickEntry(instance, region.x, region.y, region.width, region.height,
                         deepPicking ? 1 : 0, &picked, depthOut)) {
        return std::nullopt;
    }
    return GroupAttribute(Attribute::CreateAndSteal(picked));
}

GroupAttribute pickByColour(VlViewportPicker& picker, const PickingPlugin& plugin,
                            const PixelRegion& region, bool deepPicking, float* depthOut) {
    if (picker.isInUse) {
        return {};
    }
    const PickEnd end(picker);
    const BoundPicker bound(picker);
    GroupAttribute accumulated = GroupAttribute::Empty();
    for (int pass = 0; pass < (deepPicking ? kMostPasses : 1); ++pass) {
        picker.clear(false);
        plugin.pickerDraw(region, accumulated);
        GroupAttribute found = picker.pick(region, depthOut);
        if (!hasChildren(found)) {
            break;
        }
        if (pass == 0) {
            accumulated = std::move(found);
        } else {
            accumulated = GroupBuilder().update(accumulated).update(found).build();
        }
    }
    return accumulated;
}

GroupAttribute readCachedPick(VlViewportPicker& picker, const PixelRegion& region,
                              float* depthOut) {
    if (picker.isInUse) {
        return {};
    }
    const BoundPicker bound(picker);
    const GroupAttribute found = picker.pick(region, depthOut);
    return hasChildren(found) ? found : GroupAttribute::Empty();
}

} // namespace ViewerAPI
