#pragma once

#include "manipulator/handlepainter.h"
#include "manipulator/picturespace.h"
#include "viewer_api/plugin/ViewportHost.h"

#include "VlAttribute/Attribute.h"

#include <string_view>

namespace Bundled {

/// What the mouse does with a gizmo's handle, from the press to the release. One that ends without
/// being finished takes back what it did. [ui-thread]
class Drag {
public:
    Drag() = default;
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;
    virtual ~Drag() = default;

    /// The mouse points along this ray. `step` is 0 when it may go freely. False when nothing is
    /// left that could be changed: the drag then ends as if taken back.
    virtual bool moveTo(const Ray& ray, double step) = 0;
    /// What has been done is kept.
    virtual void finish() = 0;
    /// What has been done so far, in doubles; not null. Three are along the gizmo's axes.
    [[nodiscard]] virtual VlAttribute::Attribute getReadout() const = 0;
    /// What is written behind each of these numbers; see text.h.
    [[nodiscard]] virtual std::string_view unit() const { return ""; }
    /// What shows of it beside the handles. [gl-current]
    virtual void draw(HandlePainter& /*painter*/,
                      const ViewerPlugin::ViewportHost& /*viewport*/) const {}
};

} // namespace Bundled
