#pragma once

#include "manipulator/componentedits.h"
#include "manipulator/drag.h"
#include "manipulator/grasp.h"

#include <memory>
#include <utility>

namespace Bundled {

/// A drag that edits components of transforms.
class ComponentDrag : public Drag {
public:
    void finish() override { edits.finish(); }

    /// The drag, or null where there is nothing that it can edit.
    static std::unique_ptr<Drag> unlessIdle(std::unique_ptr<ComponentDrag> drag) {
        return drag->edits.isEmpty() ? nullptr : std::move(drag);
    }

protected:
    ComponentDrag(const Grasp& begun, ViewerPlugin::ManipulatorHost manipulator,
                  XformComponents::Kind kind)
        : grasp(begun), edits(manipulator, kind) {}

    const Grasp grasp;
    ComponentEdits edits;
};

} // namespace Bundled
