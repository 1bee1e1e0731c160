#include "layer/picking.h"

#include "delegate/scenedelegate.h"
#include "gl/scissorguard.h"

#include "VlAttribute/StringAttribute.h"

#include <string>
#include <unordered_set>

namespace Bundled {

namespace {

/// Points and lines reach this far beyond their places.
constexpr double kReachPx = 3.0;

std::unordered_set<std::string_view> pathsOf(const VlAttribute::GroupAttribute& objects,
                                             std::vector<VlAttribute::StringAttribute>& keep) {
    std::unordered_set<std::string_view> paths;
    for (std::int64_t i = 0; i < objects.getNumberOfChildren(); ++i) {
        keep.emplace_back(objects.getChildByIndex(i));
        for (const auto path : keep.back().getNearestSample(0.0f)) {
            paths.insert(path);
        }
    }
    return paths;
}

} // namespace

void drawPickableLocations(SceneDelegate& delegate, const ViewerPlugin::ViewportHost& viewport,
                           DisplayMode displayMode, bool cullBackFaces,
                           const ViewerPlugin::PickRegion& region,
                           const VlAttribute::GroupAttribute& excluded,
                           const AddPickableObject& add) {
    const int width = viewport.getWidth();
    const int height = viewport.getHeight();
    if (width <= 0 || height <= 0 || region.width <= 0 || region.height <= 0) {
        return;
    }
    Frame frame;
    frame.worldToView = Frame::matrix(viewport.getViewMatrix().data());
    frame.viewToClip = Frame::matrix(viewport.getProjectionMatrix().data());
    frame.displayMode = displayMode;
    frame.cullBackFaces = cullBackFaces;
    const auto across = [width](double x) { return 2.0 * x / width - 1.0; };
    const auto up = [height](double y) { return 1.0 - 2.0 * y / height; };
    const double left = region.x;
    const double top = region.y;
    const Frustum part(frame.worldToClip(), across(left - kReachPx),
                       across(left + region.width + kReachPx), up(top + region.height + kReachPx),
                       up(top - kReachPx));
    std::vector<VlAttribute::StringAttribute> keep;
    const auto leftOut = pathsOf(excluded, keep);
    const SceneMirror& mirror = delegate.getMirror();
    const ScissorGuard scissor;
    scissor.cutTo(region, height);
    delegate.shareGpuScene()->drawIds(delegate.getMirror(), frame, part,
                                      [&](std::uint32_t node) -> std::uint64_t {
                                          const std::string path = mirror.getPath(node);
                                          if (!leftOut.empty() && leftOut.contains(path)) {
                                              return IdPass::kLeftOut;
                                          }
                                          return add(VlAttribute::StringAttribute(path));
                                      });
}

} // namespace Bundled
