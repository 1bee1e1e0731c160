#pragma once

#include "coinpictures.h"

#include <Inventor/SoPath.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/actions/SoHandleEventAction.h>
#include <Inventor/actions/SoRayPickAction.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoExtSelection.h>

/// W5 in Coin, which intersects the scene on the processor. What of it is seen through a region,
/// SoExtSelection finds out by drawing, for which it gets no context from Xvfb: passed over.
namespace bench {

class CoinPicks {
public:
    CoinPicks() {
        selection_->lassoType = SoExtSelection::RECTANGLE;
        selection_->lassoPolicy = SoExtSelection::PART;
        selection_->lassoMode = SoExtSelection::ALL_SHAPES;
        selection_->policy = SoSelection::SHIFT;
        selection_->setLassoFilterCallback(count, &found_, FALSE);
        selection_->addChild(CoinCubes(makeSoCube(), SoSeparator::OFF).getRoot());
        scene_.lookFrom(CubesScene::kViewpoint);
        SoGetBoundingBoxAction boxes(region_); // which narrow down where to look
        boxes.apply(scene_.getRoot());
    }

    long nearest(const PickSquare& square) {
        ray_.setNormalizedPoint(
            SbVec2f((square.left + 0.5F) / kPictureWidth, (square.bottom + 0.5F) / kPictureHeight));
        ray_.apply(scene_.getRoot());
        return ray_.getPickedPoint() ? 1 : 0;
    }

    /// By the gesture that draws a rectangle.
    long through(const PickSquare& square) {
        found_ = 0;
        const SbVec2s corner(static_cast<short>(square.left), static_cast<short>(square.bottom));
        const SbVec2s opposite(static_cast<short>(square.right() - 1),
                               static_cast<short>(square.top() - 1));
        SoMouseButtonEvent button;
        button.setButton(SoMouseButtonEvent::BUTTON1);
        button.setState(SoButtonEvent::DOWN);
        send(button, corner);
        SoLocation2Event move;
        send(move, opposite);
        button.setState(SoButtonEvent::UP);
        send(button, opposite);
        return found_;
    }

private:
    static SoPath* count(void* found, const SoPath* /*path*/) {
        ++*static_cast<long*>(found);
        return nullptr; // nothing is selected
    }
    void send(SoEvent& event, const SbVec2s& place) {
        event.setPosition(place);
        event.setTime(SbTime::getTimeOfDay());
        events_.setEvent(&event);
        events_.apply(scene_.getRoot());
    }

    long found_ = 0;
    SoExtSelection* selection_ = new SoExtSelection; // the scene's
    CoinView scene_{selection_};
    SbViewportRegion region_{kPictureWidth, kPictureHeight};
    SoRayPickAction ray_{region_};
    SoHandleEventAction events_{region_};
};

inline void measureCoinPicks() {
    CoinPicks picks;
    measurePicks("pixel", "ray", 1, [&](const PickSquare& at) { return picks.nearest(at); });
    measurePicks("64x64_deep", "rectangle", 64,
                 [&](const PickSquare& at) { return picks.through(at); });
}

} // namespace bench
