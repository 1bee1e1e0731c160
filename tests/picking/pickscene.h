#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace ViewerAPI {
struct VlViewerDelegateHostStruct;
struct VlViewportHostStruct;
struct VlViewportLayerHostStruct;
} // namespace ViewerAPI

/// A unit cube around the origin, brought to its place by a matrix for row vectors.
struct Box {
    std::string path;
    Imath::M44d world;
};

struct PickCamera {
    Imath::V3d eye;
    Imath::V3d target;
    double near = 0.1;
    double far = 1000.0;
};

/// Boxes in the real scene engine, shown by the bundled plug-ins in an off-screen viewport with a
/// layer that draws ids when asked and one that keeps them. [gl]
class PickScene {
public:
    static constexpr int kWidth = 160;
    static constexpr int kHeight = 120;

    PickScene(const std::vector<Box>& boxes, const PickCamera& camera);
    ~PickScene();
    PickScene(const PickScene&) = delete;
    PickScene& operator=(const PickScene&) = delete;

    /// Whether this machine can draw at all.
    [[nodiscard]] bool canDraw() const;

    using Paths = std::set<std::string>;
    [[nodiscard]] Paths pickViewport(int x, int y, int width, int height, bool isDeep = false);
    /// From the ids that the last `draw` left.
    [[nodiscard]] Paths pickCache(int x, int y, int width, int height);
    void draw();
    /// Pixels of the window that are not as a pick clears them; and whether drawing in it is cut
    /// down to a part.
    [[nodiscard]] int countShownPixels() const;
    [[nodiscard]] bool isConfined() const;

    [[nodiscard]] Imath::M44d worldToClip() const;

private:
    std::unique_ptr<ViewerAPI::VlViewerDelegateHostStruct> delegate_;
    ViewerAPI::VlViewportHostStruct* viewport_ = nullptr; // the delegate's
    ViewerAPI::VlViewportLayerHostStruct* cache_ = nullptr;
};
