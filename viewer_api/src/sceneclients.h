#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <boost/unordered_set.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VlScenelib {
class Client;
class LocationEvent;
class Op;
class ScenelibRuntime;
class Transaction;
} // namespace VlScenelib

namespace ViewerAPI {

/// What waited in the clients, each in its order of arrival.
struct SceneEvents {
    std::vector<VlScenelib::LocationEvent> primary;
    std::vector<VlScenelib::LocationEvent> pinned;
    std::vector<VlScenelib::LocationEvent> sources;
    std::vector<VlScenelib::LocationEvent> lookThrough;

    SceneEvents();
    ~SceneEvents();
    SceneEvents(SceneEvents&&) noexcept;
    SceneEvents& operator=(SceneEvents&&) noexcept;
};

/// A delegate's side of the scene: one runtime, four clients, and the ops that they view.
///
/// What is shown follows one of two modes. In expansion mode the primary client views `viewOp` and
/// cooks what is open, and the pinned client adds single locations. In working-set mode the primary
/// client views the end of a chain of two ops on top of `viewOp`, which resolve a group that names
/// the locations to show and prune the rest, with everything open; the pinned client rests and its
/// locations are kept for the way back. The other clients view `viewOp` in either mode. [ui-thread]
class SceneClients {
public:
    SceneClients();
    ~SceneClients();
    SceneClients(const SceneClients&) = delete;
    SceneClients& operator=(const SceneClients&) = delete;

    /// Makes runtime, clients and ops, and activates the root; the clients view nothing until the
    /// first setViewOp. Throws std::runtime_error when there is no runtime to be had.
    void create();

    /// Views another op; the commit id, or -1 without a commit when the op is viewed already. An
    /// unknown id makes the view empty.
    std::int64_t setViewOp(int opId);

    /// Points the clients at `viewOp` as the mode asks for; returns the commit id.
    std::int64_t applyViewOp();

    /// Sets the group that names what working-set mode shows: null for none. Commits, unless it
    /// equals the one that is set.
    void setVisibilityWorkingSet(const VlAttribute::GroupAttribute& workingSet);

    /// Switches the mode; must differ from the mode that is on. Pins move aside and back.
    void setWorkingSetVisibilityEnabled(bool isEnabled);

    /// Adds locations to, or takes them from, what the pinned client cooks; while working-set mode
    /// is on, from what it will cook afterwards.
    void pinLocations(const VlAttribute::StringAttribute& paths);
    void unpinLocations(const VlAttribute::StringAttribute& paths);

    /// Takes what waits in all clients, at most `eventLimit` of each (-1: all). In working-set mode
    /// what waits in the pinned client stays there.
    [[nodiscard]] SceneEvents fetchEvents(int eventLimit);

    /// Whether fetchEvents would give any.
    [[nodiscard]] bool hasEvents() const;

    std::shared_ptr<VlScenelib::ScenelibRuntime> runtime;
    std::shared_ptr<VlScenelib::Client> primaryClient;
    std::shared_ptr<VlScenelib::Client> pinnedClient;
    std::shared_ptr<VlScenelib::Client> sourcesClient;
    std::shared_ptr<VlScenelib::Client> lookThroughClient;
    /// What the clients view; the no-op until the first setViewOp, null after an unknown id.
    std::shared_ptr<VlScenelib::Op> viewOp;
    /// The chain of working-set mode: resolve, then prune.
    std::vector<std::shared_ptr<VlScenelib::Op>> workingSetOps;
    bool workingSetVisibilityEnabled = false;
    VlAttribute::GroupAttribute visibilityWorkingSet;
    std::shared_ptr<VlScenelib::Op> noOp;
    /// What the pinned client will cook again when working-set mode ends.
    boost::unordered_set<std::string> savedPinnedLocations;

private:
    void createRuntime();
    void createWorkingSetOps(VlScenelib::Transaction& transaction);
    void setResolveArgs(VlScenelib::Transaction& transaction);
};

} // namespace ViewerAPI
