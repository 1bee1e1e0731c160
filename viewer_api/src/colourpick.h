#pragma once

#include "raisedflag.h"
#include "vlviewportpicker.h"

#include "VlAttribute/GroupAttribute.h"

#include <optional>

namespace ViewerAPI {

/// The picking entries of a Viewport or ViewportLayer plug-in, which are the same in both tables.
struct PickingPlugin {
    /// From the host object of either kind.
    template <class Host>
    explicit PickingPlugin(const Host& host)
        : instance(host.pluginHandle), pickerDrawEntry(host.pluginSuite->pickerDraw),
          customPickEntry(host.pluginSuite->customPick) {}

    /// Has the plug-in draw ids into what is bound, leaving out the excluded objects.
    void pickerDraw(const PixelRegion& region, const VlAttribute::GroupAttribute& excluded) const;
    /// What the plug-in picked by itself, which may be null; nothing when it leaves that to the
    /// host. `depthOut` is the plug-in's to write.
    [[nodiscard]] std::optional<VlAttribute::GroupAttribute>
    customPick(const PixelRegion& region, bool deepPicking, float* depthOut) const;

private:
    void* instance;
    void (*pickerDrawEntry)(void*, int, int, int, int, VlAttributeStruct*);
    int (*customPickEntry)(void*, int, int, int, int, int, VlAttributeStruct**, float*);
};

/// Keeps a picker bound, and marked as in use, while it lives.
class BoundPicker {
public:
    explicit BoundPicker(VlViewportPicker& picker) : picker_(picker), isInUse_(picker.isInUse) {
        picker.bind();
    }
    ~BoundPicker() { picker_.unbind(); }
    BoundPicker(const BoundPicker&) = delete;
    BoundPicker& operator=(const BoundPicker&) = delete;

private:
    VlViewportPicker& picker_;
    RaisedFlag isInUse_;
};

/// Picks by colour: the plug-in registers and draws its objects, the region is read back. Deep
/// picking repeats that without what was found before, which uncovers what lies behind, until
/// nothing new is found, at most 100 times; `depthOut` then has the depth of the last pass.
/// Objects are dropped at the end, also when the plug-in throws. Null, and nothing done, when the
/// plug-in asks for it while it draws into the same picker: one surface holds one picture.
/// [gl-current]
[[nodiscard]] VlAttribute::GroupAttribute pickByColour(VlViewportPicker& picker,
                                                       const PickingPlugin& plugin,
                                                       const PixelRegion& region, bool deepPicking,
                                                       float* depthOut);

/// Reads the picture and the objects that a picker has, and leaves both. Null while it is drawn.
/// [gl-current]
[[nodiscard]] VlAttribute::GroupAttribute
readCachedPick(VlViewportPicker& picker, const PixelRegion& region, float* depthOut);

} // namespace ViewerAPI
