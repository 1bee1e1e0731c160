#include "manipulator/componentedits.h"

#include "manipulator/matrices.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <cmath>
#include <string_view>
#include <unordered_set>

namespace Bundled {

namespace {

using VlAttribute::GroupAttribute;

bool isBelowAny(std::string_view path, const std::unordered_set<std::string_view>& ancestors) {
    for (auto slash = path.rfind('/'); slash != std::string_view::npos; slash = path.rfind('/')) {
        path = path.substr(0, slash);
        if (ancestors.contains(path)) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> topmostPaths(const VlAttribute::StringAttribute& paths) {
    const auto all = paths.getNearestSample(0.0f);
    const std::unordered_set<std::string_view> known(all.begin(), all.end());
    std::vector<std::string> topmost;
    for (const std::string_view path : all) {
        if (!isBelowAny(path, known)) {
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
