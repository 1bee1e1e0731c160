#pragma once

#include "manipulator/picturespace.h"
#include "viewer_api/plugin/ManipulatorHandleHost.h"
#include "viewer_api/plugin/ManipulatorPlugin.h"
#include "viewer_api/plugin/ViewportEvent.h"

#include <Imath/ImathMatrix.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace Bundled {

/// A manipulator that shows handles around the middle of its locations, as large on the screen at
/// any distance, and turns drags of them into what a derived class makes of them.
///
/// A drag begins with the left button over the handle that is marked: whoever routes the events
/// marks what the pointer is over. With control held, it goes in steps. Escape takes back what it
/// did, and so does the loss of all its locations, or of the leave to edit them.
///
/// Option "axes" (string, "world"): along which axes the handles stand; "local" for those of the
/// first location, as it is turned. Option "snapStep" (float, 0): the step, in world units; 0 for
/// a round number that suits the gizmo's size. Option "readout" (doubles, read only): what the drag
/// has done so far; null without one.
class Gizmo : public ViewerPlugin::ManipulatorPlugin {
public:
    bool event(const GroupAttribute& event) override;
    void draw() override;
    void pickerDraw(std::uint64_t pickerId) override;
    void setOption(std::uint64_t optionId, const Attribute& value) override;
    Attribute getOption(std::uint64_t optionId) override;

    /// Whether it can edit a location: any that is one of the scene.
    static bool matches(const GroupAttribute& locationAttributes);

protected:
    enum class Motion {
        Axis,    ///< along the axis
        Plane,   ///< in the plane that the axis stands upright on
        Picture, ///< in the plane of the picture
    };
    struct Part {
        const char* name;
        const char* handlePlugin;
        Motion motion;
        /// 0, 1 or 2: which of the gizmo's axes the handle's x axis lies along.
        int axis;
    };
    /// Where the gizmo stands.
    struct Place {
        Imath::V3d centre;
        /// The directions of its axes, in rows; a rotation.
        Imath::M44d axes;
        /// Of its axes, in world units.
        double length = 0.0;

        [[nodiscard]] Imath::V3d axis(int index) const {
            return {axes[index][0], axes[index][1], axes[index][2]};
        }
    };
    struct Grasp {
        Part part;
        Place place;
        Ray ray;
        PictureSpace space;
    };

    /// The parts live as long as the library.
    Gizmo(ViewerPlugin::ManipulatorHost manipulatorHost, std::span<const Part> gizmoParts);

    /// A drag begins; false when there is nothing to drag.
    virtual bool beginDrag(const Grasp& grasp) = 0;
    /// The mouse points along this ray. `step` is 0 when it may go freely. False when nothing is
    /// left that could be changed: the drag then ends as if taken back.
    virtual bool drag(const Ray& ray, double step) = 0;
    /// What has been done is kept, or taken back.
    virtual void endDrag(bool isKept) = 0;
    [[nodiscard]] virtual Attribute getReadout() const = 0;

private:
    using Event = ViewerPlugin::ViewportEvent;

    [[nodiscard]] PictureSpace pictureSpace() const;
    [[nodiscard]] Place place(const PictureSpace& space) const;
    /// Whether a part can be dragged as it is seen now.
    [[nodiscard]] static bool isUsable(const Part& part, const Place& place,
                                       const PictureSpace& space);
    /// Moves the handles to where they stand now, and calls `use(handle host, index)` for those
    /// that are usable.
    template <typename Use>
    void eachHandle(Use use) const;
    [[nodiscard]] ViewerPlugin::ManipulatorHandleHost handle(std::size_t index) const;
    bool respond(const Event& event);
    bool press(const Event& event);
    void moveTo(const Event& event);
    void end(bool isKept);

    const std::uint64_t axesId;
    const std::uint64_t snapStepId;
    const std::uint64_t readoutId;
    const std::span<const Part> parts;
    bool isLocal = false;
    double snapStep = 0.0;
    /// The part that is being dragged, and the gizmo's length when that began.
    std::optional<std::size_t> engaged;
    double engagedLength = 0.0;
    /// Where the mouse was last.
    Imath::V2i last;
    bool isResponding = false;
};

} // namespace Bundled
