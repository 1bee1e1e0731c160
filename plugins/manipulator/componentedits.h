#pragma once

#include "manipulator/liveedits.h"
#include "manipulator/xformcomponents.h"
#include "viewer_api/plugin/ManipulatorHost.h"

#include <Imath/ImathMatrix.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace Bundled {

/// A gesture that changes components of one kind of the transform of each of a manipulator's
/// locations; it begins and ends as LiveEdits do. [ui-thread]
///
/// A location below another of the manipulator's goes along with that one and is left out, and so
/// is one that a scale of 0 has flattened: no value says there where a point of the world is.
class ComponentEdits {
public:
    struct Each {
        std::string path;
        XformComponents components;
        /// From world space to the space that the components' values are in.
        Imath::M44d worldToComponents;
    };

    ComponentEdits(ViewerPlugin::ManipulatorHost manipulator, XformComponents::Kind kind);

    [[nodiscard]] bool isEmpty() const noexcept { return edits.empty(); }

    /// Shows the values of `newValues(const Each&)` for each location; one with a value that is not
    /// finite goes on showing what it does. False when none is left.
    template <typename NewValues>
    bool show(NewValues newValues) {
        std::vector<VlAttribute::Attribute> values;
        for (const Each& edit : edits) {
            const std::vector<double> wanted = newValues(edit);
            const bool isUsable = std::all_of(wanted.begin(), wanted.end(),
                                              [](double value) { return std::isfinite(value); });
            for (auto& [name, value] : edit.components.settings(wanted)) {
                values.push_back(isUsable ? std::move(value) : VlAttribute::Attribute());
            }
        }
        return live.show(values);
    }
    /// Keeps what is shown. Nothing can be shown any more.
    void finish() { live.finish(); }

    /// The space that a location's components are in, seen from the world: its parent's, turned and
    /// sized by what stands before them. Nothing for a location that is not there.
    static std::optional<Imath::M44d> componentsToWorld(ViewerPlugin::ManipulatorHost manipulator,
                                                        const std::string& path,
                                                        const XformComponents& components);

private:
    const std::vector<Each> edits;
    LiveEdits live;
};

} // namespace Bundled
