#include "manipulator/componentedits.h"

#include "manipulator/matrices.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Bundled {

namespace {

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

std::vector<ComponentEdits::Each> findEdits(const ViewerPlugin::ManipulatorHost& host,
                                            XformComponents::Kind kind) {
    std::vector<ComponentEdits::Each> edits;
    for (const std::string& path : topmostPaths(host.getLocationPaths())) {
        const auto components =
            XformComponents::find(GroupAttribute(host.getValue(path, "xform")), kind);
        const auto toWorld = ComponentEdits::componentsToWorld(host, path, components);
        if (toWorld && std::isnormal(toWorld->determinant())) {
            edits.push_back({path, components, toWorld->inverse()});
        }
    }
    return edits;
}

std::vector<LiveEdits::Target> targetsOf(const std::vector<ComponentEdits::Each>& edits) {
    std::vector<LiveEdits::Target> targets;
    for (const auto& [path, components, worldToComponents] : edits) {
        for (const auto& [name, atRest] : components.settings(components.values)) {
            targets.push_back({path, name, atRest});
        }
    }
    return targets;
}

} // namespace

std::optional<Imath::M44d>
ComponentEdits::componentsToWorld(ViewerPlugin::ManipulatorHost manipulator,
                                  const std::string& path, const XformComponents& components) {
    const ViewerPlugin::ViewerDelegateHost delegate(
        ViewerPlugin::ViewportHost(manipulator.getViewport().host).getViewerDelegate().host);
    const auto matrix = components.exists() ? delegate.getPartialXform(path, components.group,
                                                                       components.names.front(),
                                                                       {.component = false})
                                            : delegate.getWorldXform(path);
    if (!matrix) {
        return std::nullopt;
    }
    return toMatrix(matrix);
}

ComponentEdits::ComponentEdits(ViewerPlugin::ManipulatorHost manipulator,
                               XformComponents::Kind kind)
    : edits(findEdits(manipulator, kind)), live(manipulator, targetsOf(edits)) {}

} // namespace Bundled
