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

} // namespace

ComponentEdits::ComponentEdits(ViewerPlugin::ManipulatorHost manipulator,
                               const std::string& componentName)
    : host(manipulator) {
    const ViewerDelegateHost delegate(
        ViewerPlugin::ViewportHost(host.getViewport().host).getViewerDelegate().host);
    for (const std::string& path : topmostPaths(host.getLocationPaths())) {
        const GroupAttribute xform(host.getValue(path, "xform"));
        const auto component = XformComponent::find(xform, componentName);
        const auto toWorld = componentToWorld(delegate, path, component);
        if (toWorld && std::isnormal(toWorld->determinant())) {
            edits.push_back({path, xform, component, toWorld->inverse()});
            current.push_back(component.values);
        }
    }
    for (const Each& edit : edits) {
        host.openManipulationGroup(edit.path);
    }
}

ComponentEdits::~ComponentEdits() {
    try {
        restore();
    } catch (...) {
        // The application, which is told of the end, may fail; there is nobody to tell it to.
    }
}

void ComponentEdits::write(bool isFinal) {
    for (std::size_t i = 0; i < edits.size(); ++i) {
        const XformComponent& component = edits[i].component;
        host.setValue(edits[i].path, component.attributeName(), component.attribute(current[i]),
                      isFinal);
    }
}

void ComponentEdits::finish() {
    if (isOpen && isChanged) {
        write(true);
    }
    close();
}

void ComponentEdits::restore() {
    if (isOpen && isChanged) {
        for (std::size_t i = 0; i < edits.size(); ++i) {
            current[i] = edits[i].component.values;
        }
        // Only a final value ends what the first one began. Where a group was made it is the whole
        // transform that was there, so that the group is not kept.
        write(false);
        for (const Each& edit : edits) {
            if (edit.component.exists() || !edit.xform) {
                const XformComponent& component = edit.component;
                host.setValue(edit.path, component.attributeName(),
                              component.attribute(component.values), true);
            } else {
                host.setValue(edit.path, "xform", edit.xform, true);
            }
        }
    }
    close();
}

void ComponentEdits::close() {
    if (!isOpen) {
        return;
    }
    isOpen = false;
    for (const Each& edit : edits) {
        host.closeManipulationGroup(edit.path);
    }
}

} // namespace Bundled
