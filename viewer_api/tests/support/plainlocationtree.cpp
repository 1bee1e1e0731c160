#include "support/plainlocationtree.h"

#include "VlScenelib/VlXFormUtil.h"

namespace ViewerAPI::test {

PlainLocationTree::PlainLocationTree(const Universe& theUniverse)
    : universe(theUniverse), locations(theUniverse.places.size()) {}

void PlainLocationTree::cook(int place, const VlAttribute::GroupAttribute& attributes,
                             const WorkingSetState& workingSet, bool isLeaf) {
    Location& location = at(place);
    location.exists = location.cooked = true;
    location.attributes = attributes;
    location.leaf = isLeaf;
    location.workingSet = workingSet;
    if (isWorkingSetMode && place == 0) {
        location.workingSet.hasData = true;
    }
}

void PlainLocationTree::pin(int place) {
    pins.insert(place);
    for (int each = place; each >= 0; each = placeOf(each).parent) {
        at(each).exists = true;
    }
}

void PlainLocationTree::hide(int place) {
    if (!placeOf(place).isProxy || !at(place).exists) {
        hidden.insert(place);
    }
}

void PlainLocationTree::unhide(int place) {
    if (!placeOf(place).isProxy || !at(place).exists) {
        hidden.erase(place);
    }
}

void PlainLocationTree::evaluate(const KnownView& known) {
    for (Location& location : locations) {
        location.pinnedBelow = 0;
    }
    for (const int pin : pins) {
        for (int each = placeOf(pin).parent; each >= 0; each = placeOf(each).parent) {
            ++at(each).pinnedBelow;
        }
    }
    for (std::size_t i = 0; i < locations.size(); ++i) {
        evaluateOne(static_cast<int>(i), known);
    }
}

void PlainLocationTree::evaluateOne(int place, const KnownView& known) {
    const Universe::Place& where = placeOf(place);
    const KnownView::Location* knownLocation = known.find(where.path);
    Location& location = at(place);
    const bool isPinned = pins.count(place) != 0;
    const bool isOpen = opened.count(place) != 0;
    location.collapsed = location.ancestorHidden = location.ancestorRemoved = false;
    location.pinned = isPinned;
    if (where.parent >= 0) {
        const Location& parent = at(where.parent);
        location.cooked = location.cooked && parent.cooked;
        location.collapsed =
            parent.collapsed || (!where.isProxy && opened.count(where.parent) == 0);
        location.ancestorHidden = parent.ancestorHidden || (hidden.count(where.parent) != 0 &&
                                                            !placeOf(where.parent).isProxy);
        location.ancestorRemoved =
            parent.ancestorRemoved || (known.find(placeOf(where.parent).path) && !parent.visible);
        if (where.isProxy) {
            location.pinned = isPinned || parent.pinned || parent.pinnedBelow != 0;
            location.workingSet = parent.workingSet;
            location.cooked = location.cooked && !location.ancestorRemoved;
        }
    }
    const bool hasData = location.workingSet.hasData;
    const bool isKnown = knownLocation && !location.ancestorRemoved;
    const bool isHidden = location.ancestorHidden || (hidden.count(place) != 0 && !where.isProxy);
    if (isWorkingSetMode) {
        location.visible = location.cooked && (hasData || isKnown);
        location.shownHidden = isHidden || (hasData ? !location.workingSet.included
                                                    : isKnown && knownLocation->hidden);
    } else {
        location.visible = location.cooked &&
                           (!location.collapsed || location.pinned || location.pinnedBelow != 0);
        location.shownHidden = isHidden;
    }
    if (where.isProxy) {
        location.shownLeaf = false;
    } else if (isWorkingSetMode) {
        location.shownLeaf =
            hasData ? location.leaf || location.workingSet.leaf : isKnown && knownLocation->leaf;
    } else {
        location.shownLeaf =
            location.leaf || (location.pinnedBelow == 0 && (!isOpen || location.collapsed));
    }
    const bool staysForItself = location.cooked || location.pinned || location.pinnedBelow != 0;
    const bool parentExists = where.parent < 0 || at(where.parent).exists;
    if (!staysForItself || !parentExists) {
        location.exists = location.cooked = false;
        location.workingSet = WorkingSetState();
    }
}

std::map<std::string, KnownView::Location> PlainLocationTree::expectedView() const {
    std::map<std::string, KnownView::Location> view;
    for (std::size_t i = 0; i < locations.size(); ++i) {
        const Location& location = locations[i];
        if (location.visible) {
            KnownView::Location& shown = view[universe.places[i].path];
            shown.attributes = location.attributes;
            const auto [matrix, isAbsolute] = VlScenelib::VlXFormUtil::CalcTransformMatrixAtTime(
                VlAttribute::GroupAttribute(location.attributes.getChildByName("xform")), 0.0F);
            shown.matrix = matrix;
            shown.absolute = isAbsolute;
            shown.hidden = location.shownHidden;
            shown.leaf = location.shownLeaf;
            shown.proxy = universe.places[i].isProxy;
        }
    }
    return view;
}

} // namespace ViewerAPI::test
