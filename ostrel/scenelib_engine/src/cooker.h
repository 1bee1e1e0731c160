#pragma once

#include "cookrun.h"
#include "sharedcounter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

namespace VlScenelibEngine {

/// Cooks locations on demand, each once. What a cook reads from an input is cooked on the way, on
/// the same thread; a thread that needs what another is just cooking waits for it, which ends
/// because ops form no cycle.
///
/// All members: [any-thread], while the coordinator leaves the graph alone.
class Cooker {
public:
    /// `arrivalNotice` is called, on any thread, when something is there for which cooks wait.
    explicit Cooker(Awaited::Notice arrivalNotice)
        : notice(std::make_shared<const Awaited::Notice>(std::move(arrivalNotice))) {}

    struct Place {
        /// Resolved; null when there is no such location.
        CookNode* node = nullptr;
        /// How many of the names lead to locations that exist.
        std::size_t depth = 0;
    };

    /// Cooks from the op's root down to that location.
    [[nodiscard]] Place locate(GraphOp& op, const LocationNames& names);

    /// The cooked child of a resolved location (or of a TopNode) by name; null when it has none of
    /// the name.
    [[nodiscard]] CookNode* cookedChild(CookNode& parent, std::string_view name, std::size_t hint);

    /// Cooks the node if that has not been done. Its parent must be cooked. Throws CookWaits, as
    /// all members do that cook, when that has to wait; the node is then not cooked.
    void ensureCooked(GraphOp& op, CookNode& node, InputPlaces& places);

    /// Runs the node's cook without storing anything.
    [[nodiscard]] CookOutcome recook(GraphOp& op, CookNode& node);

    /// Stores what the outcome tells of reads, replacing what was there.
    static void storeReads(GraphOp& op, CookNode& node, CookOutcome& outcome);
    /// Stores the result in a node without one.
    static void storeResult(CookNode& node, CookOutcome& outcome);
    /// A number that no other result bears.
    [[nodiscard]] static std::uint64_t makeVersion() noexcept;

    /// One for all cooks, so that what many wait for, or one again and again, notifies once.
    [[nodiscard]] const std::shared_ptr<const Awaited::Notice>& getArrivalNotice() const noexcept {
        return notice;
    }

    [[nodiscard]] std::uint64_t getNumberOfCooks() const noexcept { return numberOfCooks.get(); }

private:
    std::shared_ptr<const Awaited::Notice> notice;
    /// Cooks that came to a result so far: what tests count.
    SharedCounter numberOfCooks;
};

} // namespace VlScenelibEngine
