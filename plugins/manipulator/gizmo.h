#pragma once

#include "manipulator/drag.h"
#include "manipulator/grasp.h"
#include "viewer_api/plugin/ManipulatorHandleHost.h"
#include "viewer_api/plugin/ManipulatorPlugin.h"
#include "viewer_api/plugin/ViewportEvent.h"

#include <Imath/ImathMatrix.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace Bundled {

/// A manipulator that shows handles, usually around the middle of its locations, as large on the
/// screen at any distance, and has a derived class make a `Drag` of what the mouse does with them.
///
/// A drag begins with the left button over the handle that is marked: whoever routes the events
/// marks what the pointer is over. With control held, it goes in steps. Escape takes back what it
/// did, and so does the loss of all its locations, or of the leave to edit them.
///
/// Option "axes" (string, "world"): along which axes the handles stand; "local" for those of the
/// first location, as it is turned; not before a drag that is going on has ended. Option "snapStep"
/// (a number, 0): the step, in the unit of the readout; the usual one where that is not positive,
/// or not finite. Option "readout" (doubles, read only): what the drag has done so far, which is
/// also written beside the pointer; null without one.
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
    /// The parts live as long as the library.
    Gizmo(ViewerPlugin::ManipulatorHost manipulatorHost, std::span<const GizmoPart> gizmoParts);

    /// A drag begins; null when there is nothing to drag.
    virtual std::unique_ptr<Drag> beginDrag(const Grasp& grasp) = 0;
    /// Where the gizmo stands in the world: in the middle of the locations.
    [[nodiscard]] virtual Imath::V3d centre() const;
    /// The directions of the gizmo's axes, of length 1, in rows: as the option says.
    [[nodiscard]] virtual Imath::M44d axes() const;
    /// The step that suits a gizmo of this length, in the unit of the readout: a round part of it.
    [[nodiscard]] virtual double usualStep(double length) const;

    /// Of the manipulator's locations the first; "" without one.
    [[nodiscard]] std::string firstLocation() const;
    /// Where the first location stands and how it is turned; the identity without one.
    [[nodiscard]] Imath::M44d firstPose() const;

private:
    using Event = ViewerPlugin::ViewportEvent;

    [[nodiscard]] GizmoPlace place(const PictureSpace& space) const;
    /// How far a part is there as it is seen: presence.h.
    [[nodiscard]] static double presence(const GizmoPart& part, const GizmoPlace& place,
                                         const PictureSpace& space);
    /// Moves the handles to where they stand now, and calls `use(handle host, index)` for each.
    template <typename Use>
    void eachHandle(Use use) const;
    [[nodiscard]] ViewerPlugin::ManipulatorHandleHost handle(std::size_t index) const;
    void drawReadout(HandlePainter& painter) const;
    bool respond(const Event& event);
    bool press(const Event& event);
    void moveTo(const Event& event);
    void end(bool isKept);

    const std::uint64_t axesId;
    const std::uint64_t snapStepId;
    const std::uint64_t readoutId;
    const std::span<const GizmoPart> parts;
    bool isLocal = false;
    double snapStep = 0.0;
    std::unique_ptr<Drag> current;
    /// The part that is being dragged, and the gizmo's length and option "axes" when that began.
    std::size_t engaged = 0;
    double engagedLength = 0.0;
    bool isEngagedLocal = false;
    /// Where the mouse was last.
    Imath::V2i last;
    bool isResponding = false;
};

} // namespace Bundled
