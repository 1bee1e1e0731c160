#include "pickoracle.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Floats carry 24 bits, and so does the depth buffer; depths that are nearer than this to each
// other can be told either way.
constexpr double kDepthTolerance = 2e-5;

constexpr double kAside[][2] = {{0, 0},   {-1, 0}, {1, 0},  {0, -1}, {0, 1},
                                {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};

Imath::V3d toWorld(const Imath::M44d& clipToWorld, double x, double y, double z) {
    Imath::V3d world;
    clipToWorld.multVecMatrix(
        Imath::V3d(2.0 * x / PickScene::kWidth - 1.0, 1.0 - 2.0 * y / PickScene::kHeight, z),
        world);
    return world;
}

} // namespace

PickOracle::PickOracle(std::vector<Box> boxes, const Imath::M44d& worldToClip)
    : boxes_(std::move(boxes)), worldToClip_(worldToClip), clipToWorld_(worldToClip.inverse()) {
    for (const Box& box : boxes_) {
        worldToBox_.push_back(box.world.inverse());
    }
}

std::vector<PickOracle::Hit> PickOracle::hits(double x, double y) const {
    const Imath::V3d near = toWorld(clipToWorld_, x, y, -1.0);
    const Imath::V3d far = toWorld(clipToWorld_, x, y, 1.0);
    std::vector<Hit> found;
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        const Imath::V3d from = near * worldToBox_[i];
        const Imath::V3d along = far * worldToBox_[i] - from;
        double enter = -std::numeric_limits<double>::infinity();
        double leave = std::numeric_limits<double>::infinity();
        for (int axis = 0; axis < 3; ++axis) {
            const double a = (-0.5 - from[axis]) / along[axis];
            const double b = (0.5 - from[axis]) / along[axis];
            enter = std::max(enter, std::min(a, b));
            leave = std::min(leave, std::max(a, b));
        }
        if (!(enter <= leave)) {
            continue;
        }
        for (const double t : {enter, leave}) {
            if (t >= 0.0 && t <= 1.0) {
                Imath::V3d clip;
                worldToClip_.multVecMatrix(near + (far - near) * t, clip);
                found.push_back({static_cast<int>(i), clip.z});
            }
        }
    }
    std::sort(found.begin(), found.end(),
              [](const Hit& a, const Hit& b) { return a.depth < b.depth; });
    return found;
}

std::optional<int> PickOracle::shown(int x, int y) const {
    std::optional<int> all;
    for (const auto& aside : kAside) {
        const std::vector<Hit> here = hits(x + 0.5 + aside[0], y + 0.5 + aside[1]);
        for (const Hit& hit : here) {
            // Also where a surface is cut by the near or the far plane.
            const bool isCut = std::abs(hit.depth) > 1.0 - kDepthTolerance;
            const bool isNearTie =
                hit.box != here.front().box && hit.depth - here.front().depth < kDepthTolerance;
            if (isCut || isNearTie) {
                return std::nullopt;
            }
        }
        const int box = here.empty() ? -1 : here.front().box;
        if (all && *all != box) {
            return std::nullopt;
        }
        all = box;
    }
    // What is as small as a pixel may lie between the samples.
    constexpr double kSmallPx = 4.0;
    for (std::size_t box = 0; box < boxes_.size(); ++box) {
        const auto area = areaOf(static_cast<int>(box));
        if (area && static_cast<int>(box) != *all && area->size().x < kSmallPx &&
            area->size().y < kSmallPx && canReach(static_cast<int>(box), x, y, 1, 1)) {
            return std::nullopt;
        }
    }
    return all;
}

bool PickOracle::isSurelyBehind(int box, int x, int y) const {
    return std::all_of(std::begin(kAside), std::end(kAside), [&](const auto& aside) {
        const std::vector<Hit> here = hits(x + 0.5 + aside[0], y + 0.5 + aside[1]);
        return std::any_of(here.begin(), here.end(), [&](const Hit& hit) {
            return hit.box == box && std::abs(hit.depth) < 1.0 - kDepthTolerance;
        });
    });
}

std::optional<Imath::Box2d> PickOracle::areaOf(int box) const {
    Imath::Box2d area;
    for (int corner = 0; corner < 8; ++corner) {
        const Imath::V3d local((corner & 1) != 0 ? 0.5 : -0.5, (corner & 2) != 0 ? 0.5 : -0.5,
                               (corner & 4) != 0 ? 0.5 : -0.5);
        const Imath::V3d p = local * boxes_[static_cast<std::size_t>(box)].world;
        const Imath::M44d& m = worldToClip_;
        if (p.x * m[0][3] + p.y * m[1][3] + p.z * m[2][3] + m[3][3] <= 0.0) {
            return std::nullopt;
        }
        Imath::V3d clip;
        m.multVecMatrix(p, clip);
        area.extendBy(
            {(clip.x + 1.0) / 2.0 * PickScene::kWidth, (1.0 - clip.y) / 2.0 * PickScene::kHeight});
    }
    return area;
}

bool PickOracle::canReach(int box, int x, int y, int width, int height) const {
    const Imath::Box2d region(Imath::V2d(x - 1, y - 1), Imath::V2d(x + width + 1, y + height + 1));
    const auto area = areaOf(box);
    return !area || area->intersects(region);
}
