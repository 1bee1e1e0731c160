#pragma once

#include "callboth.h"
#include "componentlist.h"
#include "locationchange.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// Brings what changed in a delegate's two trees to its plug-ins.
///
/// Every flush makes one batch. Batches are delivered whole and in order: a flush from within a
/// plug-in's entry queues its batch behind the one under way. When a plug-in throws, the record
/// that it threw on counts as delivered; those behind it are delivered by the next flush.
/// [ui-thread]
class LocationDelivery {
public:
    explicit LocationDelivery(VlViewerDelegateHostStruct& delegate);
    LocationDelivery(const LocationDelivery&) = delete;
    LocationDelivery& operator=(const LocationDelivery&) = delete;

    /// Collects what changed in the primary tree and sends it to the components, last to first,
    /// and then to the delegate, record by record, and as a whole to the factories; then what
    /// changed in the sources tree to the delegate alone. If the primary tree had changes and no
    /// manipulation holds events back, the user interface hears
    /// "__SELECTED_ENABLED_LOCATIONS_CHANGED". Does nothing but remember the wish while the trees
    /// are kept still.
    ///
    /// Without `notifyFactories` the factories are told neither of this nor of what is under way,
    /// and drop all that they hold when plug-ins have heard of it: that is how a scene is taken
    /// down. In this order what comes back meanwhile is news to them, whoever brings it.
    void flush(bool notifyFactories);

    /// Whether everything that was to be flushed has been delivered.
    [[nodiscard]] bool isIdle() const noexcept { return batches_.empty() && !isFlushWanted_; }

    /// Keeps the trees' nodes in place while `walk` walks them and calls plug-ins on the way: no
    /// collection happens until the outermost such walk is over. The flush that it puts off is done
    /// then, also when the walk throws.
    template <class Walk>
    void keepStill(const Walk& walk) {
        ++walks_;
        callBoth(walk, [this] {
            if (--walks_ == 0 && isFlushWanted_) {
                flush(true);
            }
        });
    }

    /// Whether such a walk is under way.
    [[nodiscard]] bool isKeptStill() const noexcept { return walks_ > 0; }

private:
    enum class Factories { Told, PassedOver, Emptied };

    struct Batch {
        std::vector<LocationChange> changes;
        std::size_t next = 0;
        Factories factories = Factories::Told;
        bool hasCollectedSources = false;
        std::vector<LocationChange> sourceChanges;
        std::size_t nextSource = 0;
    };

    void deliver(Batch& batch);
    void deliverToFactories(Batch& batch);
    void deliverToPlugins(const LocationChange& change,
                          const std::vector<ComponentList::Component*>& components);

    VlViewerDelegateHostStruct& delegate_;
    std::deque<Batch> batches_;
    bool isDelivering_ = false;
    int walks_ = 0;
    bool isFlushWanted_ = false;
    bool isTakeDownWanted_ = false;
};

} // namespace ViewerAPI
