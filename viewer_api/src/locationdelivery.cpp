#include "locationdelivery.h"

#include "raisedflag.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

#include "viewer_api/ViewerLocationEvent.h"

#include <utility>

namespace ViewerAPI {
namespace {

/// Borrows from the record.
ViewerLocationEvent toEvent(const LocationChange& change) {
    return {change.path.c_str(), change.attributes.getHandle(), change.matrix.getHandle(),
            change.getFlags()};
}

} // namespace

LocationDelivery::LocationDelivery(VlViewerDelegateHostStruct& delegate) : delegate_(delegate) {}

void LocationDelivery::flush(bool notifyFactories) {
    if (!notifyFactories) {
        isTakeDownWanted_ = true;
        for (Batch& batch : batches_) {
            if (batch.factories == Factories::Told) {
                batch.factories = Factories::PassedOver;
            }
        }
    }
    if (isKeptStill()) {
        isFlushWanted_ = true;
        return;
    }
    isFlushWanted_ = false;
    // Most pumps bring nothing.
    if (batches_.empty() && !isTakeDownWanted_ && !delegate_.locationTree.isDirty() &&
        !delegate_.sourceLocationTree.isDirty()) {
        return;
    }
    Batch& added = batches_.emplace_back();
    if (std::exchange(isTakeDownWanted_, false)) {
        added.factories = Factories::Emptied;
    }
    delegate_.locationTree.collect(added.changes);
    if (isDelivering_) {
        return;
    }
    while (!batches_.empty()) {
        {
            const RaisedFlag delivering(isDelivering_);
            deliver(batches_.front());
        }
        const bool hadChanges = !batches_.front().changes.empty();
        batches_.pop_front();
        if (hadChanges && !delegate_.isFrozenDueToManipulation()) {
            delegate_.callPythonCallback("__SELECTED_ENABLED_LOCATIONS_CHANGED", {});
        }
    }
}

void LocationDelivery::deliver(Batch& batch) {
    // The record's place is left before a plug-in hears of it, so that one that throws can't stop
    // what comes behind for ever.
    ComponentList::Snapshot components = delegate_.components.snapshot();
    while (batch.next < batch.changes.size()) {
        if (!delegate_.components.isCurrent(components)) {
            components = delegate_.components.snapshot();
        }
        deliverToPlugins(batch.changes[batch.next++], *components);
    }
    deliverToFactories(batch);
    if (!std::exchange(batch.hasCollectedSources, true)) {
        delegate_.sourceLocationTree.collect(batch.sourceChanges);
    }
    while (batch.nextSource < batch.sourceChanges.size()) {
        const ViewerLocationEvent event = toEvent(batch.sourceChanges[batch.nextSource++]);
        delegate_.suite->sourceLocationEvent(delegate_.instance, &event);
    }
}

void LocationDelivery::deliverToFactories(Batch& batch) {
    switch (std::exchange(batch.factories, Factories::PassedOver)) {
    case Factories::Told:
        delegate_.factories.applyChanges(batch.changes);
        break;
    case Factories::Emptied:
        delegate_.factories.clear();
        break;
    case Factories::PassedOver:
        break;
    }
}

void LocationDelivery::deliverToPlugins(const LocationChange& change,
                                        const std::vector<ComponentList::Component*>& components) {
    const ViewerLocationEvent event = toEvent(change);
    bool handled = false;
    for (auto place = components.rbegin(); place != components.rend(); ++place) {
        if (delegate_.components.contains(*place)) {
            handled = (*place)->locationEvent(event, handled) || handled;
        }
    }
    delegate_.suite->locationEvent(delegate_.instance, &event, handled ? 1 : 0);
}

} // namespace ViewerAPI
