#pragma once

#include "support/knownview.h"
#include "support/universe.h"
#include "workingsetstate.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// The rules of the primary view, evaluated from scratch for every location of a universe: what
/// LocationTree's incremental answer is compared with. Knows no dirtiness and no order.
class PlainLocationTree {
public:
    /// A location's own state, and what follows for it in the view.
    struct Location {
        bool exists = false; ///< in the tree, cooked or not
        bool cooked = false;
        bool leaf = false;
        VlAttribute::GroupAttribute attributes;
        WorkingSetState workingSet;

        // Set by `evaluate`.
        bool collapsed = false;
        bool pinned = false;
        int pinnedBelow = 0;
        bool ancestorHidden = false;
        bool ancestorRemoved = false;
        bool visible = false;
        bool shownHidden = false;
        bool shownLeaf = false;
    };

    explicit PlainLocationTree(const Universe& universe);

    void cook(int place, const VlAttribute::GroupAttribute& attributes,
              const WorkingSetState& workingSet, bool isLeaf);
    void remove(int place) { at(place).cooked = false; }
    void pin(int place);
    void unpin(int place) { pins.erase(place); }
    void hide(int place);
    void unhide(int place);

    /// Settles what a collection settles. A location of which the working set has not told keeps
    /// what the plug-ins know of it.
    void evaluate(const KnownView& known);

    /// What plug-ins must know now.
    [[nodiscard]] std::map<std::string, KnownView::Location> expectedView() const;

    Location& at(int place) { return locations[static_cast<std::size_t>(place)]; }
    [[nodiscard]] const Location& at(int place) const {
        return locations[static_cast<std::size_t>(place)];
    }

    std::set<int> opened; ///< ordinary locations, existing or not
    std::set<int> pins;
    std::set<int> hidden;
    bool isWorkingSetMode = false;

private:
    [[nodiscard]] const Universe::Place& placeOf(int place) const {
        return universe.places[static_cast<std::size_t>(place)];
    }
    void evaluateOne(int place, const KnownView& known);

    const Universe& universe;
    std::vector<Location> locations;
};

} // namespace ViewerAPI::test
