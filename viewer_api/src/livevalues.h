#pragma once

#include "pathset.h"

#include "VlAttribute/GroupAttribute.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace VlScenelib {
class Client;
}

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// What manipulators have set on top of one location in one view.
struct LiveEntry {
    /// The cooked attributes at the first touch; never null.
    VlAttribute::GroupAttribute base;
    /// Attribute name, which may be dotted, to value.
    std::map<std::string, VlAttribute::Attribute> overrides;

    /// The overrides alone, in the map's order.
    [[nodiscard]] VlAttribute::GroupAttribute getOverrides() const;
    /// The base with the overrides on top, in the map's order.
    [[nodiscard]] VlAttribute::GroupAttribute merge() const;
};

/// Live entries by location path.
using LiveAttributes = std::map<std::string, LiveEntry, std::less<>>;

/// The values that manipulators have set and the scene has not cooked yet. They show at once: in
/// the primary view they are merged into the tree, so that plug-ins hear of them at the next flush;
/// in the look-through view they stand beside what the client has cached. The bridge carries the
/// same values to the application, and a cooked location supersedes them.
///
/// The bridge, plug-ins and the listeners of channels may come back into the delegate from within
/// any call of this. [ui-thread]
class LiveValues {
public:
    explicit LiveValues(VlViewerDelegateHostStruct& delegate) noexcept : delegate_(delegate) {}
    LiveValues(const LiveValues&) = delete;
    LiveValues& operator=(const LiveValues&) = delete;

    /// Passes a value on to the application and puts it on top of the location in both views, or
    /// in the one that knows the location. False when the value is null or neither view knows the
    /// location; the freeze is then as it was. Throws std::runtime_error for a name that no
    /// attribute can have, before anybody hears of the value. What a listener of the look-through
    /// raises comes out when the value is guarded by the freeze and plug-ins have heard of it.
    bool setAttribute(const std::string& path, const std::string& name,
                      const VlAttribute::Attribute& value, bool isFinal);

    /// While a location's group is open, values set on it are not flushed one by one. Groups don't
    /// nest: the first close ends them all.
    void openGroup(const std::string& path);
    /// Sends what the group held back: to the listeners of the look-through, then to plug-ins,
    /// which hear also when a listener fails. The group ends also when either fails.
    void closeGroup(const std::string& path);
    [[nodiscard]] bool isManipulated(const std::string& path) const {
        return manipulatedLocations.contains(path);
    }

    /// Null when nothing is set on the location, in a view without live values, or in an unknown
    /// one. Valid until the next change.
    [[nodiscard]] const LiveEntry* findEntry(std::string_view path, int sceneView) const;

    /// The scene has told of the location, or nothing is known of it: its values go, after the
    /// bridge has heard so. The merged look-through attributes wait for the look-through client.
    void forget(const std::string& path);
    /// The look-through client has told of the location.
    void forgetLookThrough(const std::string& path);
    /// Drops the values whose locations have been cooked with the manipulation's commit, telling
    /// the bridge of each first. What shows stays, values and all: either the event is on its way,
    /// cooked since events were fetched, and what stood before would show for a moment between; or
    /// there is none, as the scene took nothing of the values. An application that is to show its
    /// own then has the location told again; one that never took any keeps its edits in the viewer.
    void forgetCurrent();

    LiveAttributes liveAttributes;
    LiveAttributes lookThroughLiveAttributes;
    std::map<std::string, VlAttribute::GroupAttribute, std::less<>> lookThroughMergedAttributes;
    PathSet manipulatedLocations; ///< whose manipulation group is open

private:
    bool setPrimary(const std::string& path, const std::string& name,
                    const VlAttribute::Attribute& value);
    /// What the view shows now; null when it doesn't know the location.
    VlAttribute::GroupAttribute setLookThrough(const std::string& path, const std::string& name,
                                               const VlAttribute::Attribute& value);
    void forgetCurrent(LiveAttributes& live, const VlScenelib::Client& client);

    VlViewerDelegateHostStruct& delegate_;
};

} // namespace ViewerAPI
