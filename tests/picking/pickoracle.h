#pragma once

#include "pickscene.h"

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

#include <optional>
#include <vector>

/// What a picture of boxes shows, by plain arithmetic: rays through pixels against boxes.
class PickOracle {
public:
    PickOracle(std::vector<Box> boxes, const Imath::M44d& worldToClip);

    /// The surfaces that a ray through a place of the picture (pixels, from the top left) meets
    /// between the near and the far plane, nearest first.
    struct Hit {
        int box = 0;
        double depth = 0.0; ///< of clip space, -1 to 1
    };
    [[nodiscard]] std::vector<Hit> hits(double x, double y) const;

    /// What the pixel shows: the box's number, or -1 for nothing. Nothing is answered where a
    /// sample a little aside decides otherwise: at an outline, or where two surfaces meet.
    [[nodiscard]] std::optional<int> shown(int x, int y) const;

    /// Whether a box's surface passes behind the whole pixel and what is around it.
    [[nodiscard]] bool isSurelyBehind(int box, int x, int y) const;
    /// Whether anything of a box can reach the region, or a pixel around it.
    [[nodiscard]] bool canReach(int box, int x, int y, int width, int height) const;

    [[nodiscard]] const std::vector<Box>& getBoxes() const { return boxes_; }

private:
    /// The pixels around a box; nothing for one that reaches behind the camera.
    [[nodiscard]] std::optional<Imath::Box2d> areaOf(int box) const;

    std::vector<Box> boxes_;
    Imath::M44d worldToClip_;
    Imath::M44d clipToWorld_;
    std::vector<Imath::M44d> worldToBox_;
};
