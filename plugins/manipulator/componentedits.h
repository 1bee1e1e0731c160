#pragma once

#include "manipulator/xformcomponent.h"
#include "viewer_api/plugin/ManipulatorHost.h"

#include <Imath/ImathMatrix.h>

#include <cstddef>
#include <string>
#include <vector>

namespace Bundled {

/// A gesture that changes one component of each of a manipulator's locations. Values show at once;
/// they are kept, in one step of undo, when the gesture is finished. One that ends without that
/// brings the values back that it began with. [ui-thread]
///
/// A location below another of the manipulator's goes along with that one and is left out, and so
/// is one that a scale of 0 has flattened: no value says there where a point of the world is.
class ComponentEdits {
public:
    struct Each {
        std::string path;
        /// The whole transform at the beginning; may be null.
        VlAttribute::GroupAttribute xform;
        XformComponent component;
        /// From world space to the space that the component's values are in.
        Imath::M44d worldToComponent;
    };

    ComponentEdits(ViewerPlugin::ManipulatorHost manipulator, const std::string& componentName);
    ComponentEdits(const ComponentEdits&) = delete;
    ComponentEdits& operator=(const ComponentEdits&) = delete;
    ~ComponentEdits();

    [[nodiscard]] const std::vector<Each>& get() const noexcept { return edits; }

    /// Shows the value of `newValues(const Each&)` for each location.
    template <typename NewValues>
    void show(NewValues newValues) {
        for (std::size_t i = 0; i < edits.size(); ++i) {
            current[i] = newValues(edits[i]);
        }
        isChanged = true;
        write(false);
    }
    /// Keeps what is shown. Nothing can be shown any more.
    void finish();

private:
    void write(bool isFinal);
    void restore();
    void close();

    const ViewerPlugin::ManipulatorHost host;
    std::vector<Each> edits;
    std::vector<std::vector<double>> current;
    bool isChanged = false;
    bool isOpen = true;
};

} // namespace Bundled
