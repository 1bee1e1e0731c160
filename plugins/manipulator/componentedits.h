#pragma once

#include "manipulator/liveedits.h"
#include "manipulator/xformcomponent.h"
#include "viewer_api/plugin/ManipulatorHost.h"

#include <Imath/ImathMatrix.h>

#include <string>
#include <vector>

namespace Bundled {

/// A gesture that changes one component of the transform of each of a manipulator's locations; it
/// begins and ends as LiveEdits do. [ui-thread]
///
/// A location below another of the manipulator's goes along with that one and is left out, and so
/// is one that a scale of 0 has flattened: no value says there where a point of the world is.
class ComponentEdits {
public:
    struct Each {
        std::string path;
        XformComponent component;
        /// From world space to the space that the component's values are in.
        Imath::M44d worldToComponent;
    };

    ComponentEdits(ViewerPlugin::ManipulatorHost manipulator, const std::string& componentName);

    [[nodiscard]] const std::vector<Each>& get() const noexcept { return edits; }

    /// Shows the value of `newValues(const Each&)` for each location. False when none is left.
    template <typename NewValues>
    bool show(NewValues newValues) {
        std::vector<VlAttribute::Attribute> values;
        values.reserve(edits.size());
        for (const Each& edit : edits) {
            values.push_back(edit.component.attribute(newValues(edit)));
        }
        return live.show(values);
    }
    /// Keeps what is shown. Nothing can be shown any more.
    void finish() { live.finish(); }

private:
    const std::vector<Each> edits;
    LiveEdits live;
};

} // namespace Bundled
