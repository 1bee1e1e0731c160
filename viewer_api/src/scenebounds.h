#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <string>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// Whether an attribute counts as bounds: doubles, exactly 6 values in each sample.
[[nodiscard]] bool isBounds(const VlAttribute::DoubleAttribute& attribute);

/// The box around the points of a location, from `geometry.point.P` (x, y, z) or else
/// `geometry.point.Pw` (x, y, z, w), at time 0. Null without points, or when their values don't
/// make whole points. [any-thread]
///
/// Two traits are kept because scenes have been framed by them for long: the coordinates of a Pw
/// are multiplied by w, and each maximum starts at the smallest positive double, so a cloud that
/// lies wholly below zero on an axis reaches up to there.
[[nodiscard]] VlAttribute::DoubleAttribute
pointExtent(const VlAttribute::GroupAttribute& attributes);

/// Boxes of locations in the primary view, 6 doubles: xmin, xmax, ymin, ymax, zmin, zmax. Plug-ins
/// take part by their getBounds and computeExtent entries. [ui-thread]
class SceneBounds {
public:
    explicit SceneBounds(VlViewerDelegateHostStruct& delegate) : delegate_(delegate) {}

    /// The box that stands for a location and all below it, in local space: its `bound` attribute,
    /// else the delegate plug-in's answer, else that of the first component, from the last to the
    /// first, that has one. Null when nobody does.
    [[nodiscard]] VlAttribute::DoubleAttribute getBounds(const std::string& path) const;
    /// The same of a location whose attributes are at hand.
    [[nodiscard]] VlAttribute::DoubleAttribute
    getBounds(const VlAttribute::GroupAttribute& attributes, const char* path) const;

    /// The box of what a location itself shows, in local space: the merged answers of its points,
    /// the delegate plug-in and all components. Null when nobody has one.
    [[nodiscard]] VlAttribute::DoubleAttribute computeExtent(const std::string& path) const;
    /// The same of a location whose pointExtent() is at hand.
    [[nodiscard]] VlAttribute::DoubleAttribute
    computeExtent(VlAttribute::DoubleAttribute pointExtent, const char* path) const;

    /// The box in world space of these locations and what is shown below them: hidden locations and
    /// the one at `excludePath` are left out with all below them, and a location that has bounds
    /// stands for what is below it. Plug-ins are asked from the last location to the first. A null
    /// path is passed over. Null when nothing has a box. No location may go meanwhile.
    ///
    /// What locations' boxes come to is kept for the next question (MergedExtentWalk), whose cost
    /// then is that of the locations without a `bound`, and of what changed.
    [[nodiscard]] VlAttribute::DoubleAttribute
    computeMergedExtent(const char* const* paths, std::uint32_t count,
                        const std::string& excludePath) const;

private:
    VlViewerDelegateHostStruct& delegate_;
};

} // namespace ViewerAPI
