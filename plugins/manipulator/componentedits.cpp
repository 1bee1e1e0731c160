#include "manipulator/componentedits.h"

#include "manipulator/matrices.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace Bundled {

namespace {

using ViewerPlugin::ViewerDelegateHost;
using VlAttribute::GroupAttribute;

bool isBelow(std::string_view path, std::string_view ancestor) {
    return path.size() > ancestor.size() && path[ancestor.size()] == '/' &&
           path.substr(0, ancestor.size()) == ancestor;
}

std::vector<std::string> topmostPaths(const VlAttribute::StringAttribute& paths) {
    const auto all = paths.getNearestSample(0.0f);
    std::vector<std::string> topmost;
    for (const std::string_view path : all) {
        if (std::none_of(all.begin(), all.end(),
                         [path](std::string_view other) { return isBelow(path, other); })) {
            topmost.emplace_back(path);
        }
    }
    return topmost;
}

/// The space of a component's values: its parent's, turned and sized by what stands before it.
std::optional<Imath::M44d> componentToWorld(const ViewerDelegateHost& delegate,
                                            const std::string& path,
                                            const XformComponent& component) {
    const auto matrix =
        component.exists()
            ? delegate.getPartialXform(path, component.group, component.name, {.component = false})
            : delegate.getWorldXform(path);
    if (!matrix) {
        return std::nullopt;
    }
    return toMatrix(matrix);
}

std::vector<ComponentEdits::Each> findEdits(const ViewerPlugin::ManipulatorHost& host,
                                            const std::string& componentName) {
    const ViewerDelegateHost delegate(
        ViewerPlugin::ViewportHost(host.getViewport().host).getViewerDelegate().host);
    std::vector<ComponentEdits::Each> edits;
    for (const std::string& path : topmostPaths(host.getLocationPaths())) {
        const auto component =
            XformComponent::find(GroupAttribute(host.getValue(path, "xform")), componentName);
        const auto toWorld = componentToWorld(delegate, path, component);
        if (toWorld && std::isnormal(toWorld->determinant())) {
            edits.push_back({path, component, toWorld->inverse()});
        }
    }
    return edits;
}

std::vector<LiveEdits::Target> targetsOf(const std::vector<ComponentEdits::Each>& edits) {
    std::vector<LiveEdits::Target> targets;
    for (const auto& [path, component, worldToComponent] : edits) {
        targets.push_back({path, component.attributeName(), component.attribute(component.values)});
    }
    return targets;
}

} // namespace

ComponentEdits::ComponentEdits(ViewerPlugin::ManipulatorHost manipulator,
                               const std::string& componentName)
    : edits(findEdits(manipulator, componentName)), live(manipulator, targetsOf(edits)) {}

} // namespace Bundled
