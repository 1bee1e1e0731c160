#pragma once

#include "viewer_api/plugin/ManipulatorHost.h"

#include <functional>
#include <string>
#include <vector>

namespace Bundled {

/// The values that a gesture shows on a manipulator's locations. They are kept, in one step of
/// undo, when the gesture is finished; one that ends without that brings back what was there when
/// it began. [ui-thread]
///
/// A location that the manipulator or the viewer has lost meanwhile, as it went or fits no longer,
/// has left the gesture: nothing more is shown on it, and nothing is kept of what was. It stays out
/// also when it comes back.
///
/// What listeners of a value raise comes out of the call that set it, after that has done all of
/// its work.
class LiveEdits {
public:
    using Attribute = VlAttribute::Attribute;

    struct Target {
        std::string path;
        /// Of the attribute, dotted. It may be yet to be made.
        std::string attributeName;
        /// What it is at the beginning, or, before it is made, what changes nothing.
        Attribute atRest;
    };

    /// Raises what the opening of a location's group raises, and leaves none open then.
    LiveEdits(ViewerPlugin::ManipulatorHost manipulator, const std::vector<Target>& targets);
    LiveEdits(const LiveEdits&) = delete;
    LiveEdits& operator=(const LiveEdits&) = delete;
    ~LiveEdits();

    /// Shows values, one for each target; null leaves that one as it is. False when no location is
    /// left.
    bool show(const std::vector<Attribute>& values);
    /// Keeps what is shown on the locations that are left; with none it brings back what was.
    /// Nothing can be shown any more.
    void finish();

private:
    struct Edit {
        Target target;
        /// What brings back the beginning: the attribute, or what is there of that which it is made
        /// in.
        std::string originalName;
        Attribute original;
        Attribute shown;
        bool isLost = false;
    };

    void open(const std::vector<Target>& targets);
    void closeGroups();
    /// Finds out which locations are lost by now, and whether any is left.
    bool lookForLost();
    void takeBack();
    void close(const std::function<void()>& last);

    const ViewerPlugin::ManipulatorHost host;
    /// Those whose groups are open, each once.
    std::vector<std::string> paths;
    std::vector<Edit> edits;
    bool isChanged = false;
    bool isOpen = true;
};

} // namespace Bundled
