#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace VlScenelib {
class LocationData;
}

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;
struct VlViewportHostStruct;

/// What a delegate's viewports look through: locations, mostly cameras and lights, that may lie
/// where nothing is open. They are cooked on a client of their own, and the user interface hears
/// what becomes of each request by these channels:
///
///     __LOOKTHROUGH_LOCATION_CHANGE_REQUESTED   it waits for cooking
///     __LOOKTHROUGH_LOCATION_COOKED             the location's attributes are there, or new
///     __LOOKTHROUGH_LOCATION_CHANGED            what the viewport looks through is another now:
///                                               the request was resolved, or the viewport cleared
///     __LOOKTHROUGH_LOCATION_DOES_NOT_EXIST     the location does not exist, or not any more
///
/// Their value is a group of "viewport" (its name), "location" (the path) and "attrs" (the cooked
/// attributes, left out where there are none). A request for what does not exist stays open: it
/// resolves when the location comes to be.
///
/// News of one location goes to the viewports in the order in which the delegate has them. A
/// listener may ask anew, remove viewports or let the delegate go; what it raises passes through
/// and keeps the news from the viewports that come after. [ui-thread]
class LookThrough {
public:
    explicit LookThrough(VlViewerDelegateHostStruct& delegate) noexcept : delegate_(delegate) {}
    LookThrough(const LookThrough&) = delete;
    LookThrough& operator=(const LookThrough&) = delete;

    /// Ends what the viewport looked through, also when it is the same path. Null and "" leave it
    /// at that. Throws std::runtime_error for a path that does not begin with "/". Ignored for what
    /// is no viewport of the delegate, or not any more.
    void setLocation(VlViewportHostStruct* viewport, const char* path);

    /// Ends what the viewport looked through, and says nothing of it.
    void forgetViewport(const VlViewportHostStruct* viewport);

    /// The look-through client has news of a location. Viewports that look through something below
    /// it are told of that: it may have been moved.
    void onLocationEvent(const std::string& path, const VlScenelib::LocationData& data);

    /// The same for attributes with live values on top.
    void onAttributesMerged(const std::string& path, const VlAttribute::GroupAttribute& merged);

    /// Resolves the requests that found attributes of a location while the scene was about to
    /// change, which turned out not to change these: no event tells of that.
    void resolveUnchanged();
    /// Whether resolveUnchanged() would.
    [[nodiscard]] bool hasUnchanged() const;

    /// Tells of the attributes that were held back while the location's manipulation group was
    /// open, in the order in which viewports first had some. What a listener makes to be held back
    /// goes out as well; what comes after one that raises is dropped.
    void releaseDeferred(const std::string& path);

    /// What each viewport looks through; and those of them that wait, because the location has not
    /// been cooked or does not exist.
    std::map<const VlViewportHostStruct*, std::string> requestedLookThrough;
    std::map<const VlViewportHostStruct*, std::string> pendingLookThrough;

    /// Values of the channel that tells of attributes, each with its viewport's name.
    using DeferredEvents = std::vector<std::pair<std::string, VlAttribute::GroupAttribute>>;
    /// What is held back, by path.
    std::map<std::string, DeferredEvents, std::less<>> deferredLookThroughEvents;

private:
    struct Outcome;

    /// Null unless the viewport's request found attributes that were not current, and they are.
    [[nodiscard]] const std::string* findUnchanged(const VlViewportHostStruct* viewport) const;
    void reconcileLookThroughActive();
    void tell(const std::string& path, const Outcome& outcome);
    void resolve(const VlViewportHostStruct& viewport, const std::string& path,
                 const Outcome& outcome);
    void tellCooked(const VlViewportHostStruct& viewport, const std::string& path,
                    const VlAttribute::GroupAttribute& payload);
    void fire(const char* channel, const VlAttribute::GroupAttribute& payload);

    VlViewerDelegateHostStruct& delegate_;
    /// Those of the pending whose request found attributes that were not current.
    std::set<const VlViewportHostStruct*> stale_;
};

} // namespace ViewerAPI
