#pragma once

#include "cooknode.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VlScenelibEngine {

/// What a client has asked for at one path. Exists only where something at or below it was asked.
struct RequestNode {
    std::map<std::string, std::unique_ptr<RequestNode>, std::less<>> children;
    std::size_t activeAtOrBelow = 0;
    bool isActive = false;
    bool isOpen = false;
    /// Became active and has not been reported since.
    bool awaitsAnswer = false;

    [[nodiscard]] RequestNode* find(std::string_view name) const;
    /// The child, made where there is none.
    RequestNode& obtain(std::string_view name);
    [[nodiscard]] bool isEmpty() const noexcept { return !isActive && !isOpen && children.empty(); }
};

/// The requests of one client, by path: which locations are active, which are open. They decide
/// alone, whatever exists, what the client would cook.
class RequestTree {
public:
    /// A step down the tree: what requests say of one location.
    struct Cursor {
        /// Null when nothing was asked at or below.
        const RequestNode* request = nullptr;
        /// It or an ancestor is active.
        bool isBelowActive = false;
        /// The client cooks it, if it exists.
        bool isWanted = false;
        /// The client cooks all its children.
        bool isExpanded = false;
    };

    /// Above the roots: where a walk begins.
    [[nodiscard]] Cursor begin() const noexcept { return {&top, false, true, false}; }
    [[nodiscard]] Cursor descend(const Cursor& parent, std::string_view name) const;

    /// Each answers whether it changed anything. Paths that are not well-formed can be active too:
    /// they name locations that never exist.
    bool setActive(std::string_view path, bool isActive);
    bool setOpen(std::string_view path, bool isOpen);
    bool setAllOpen(bool allOpen);

    [[nodiscard]] bool isActive(std::string_view path) const;
    /// Active paths at or below root (empty: all), siblings sorted by name; malformed ones last.
    [[nodiscard]] std::vector<std::string> getActive(std::string_view root) const;

    /// The request at a path; null when there is none.
    [[nodiscard]] RequestNode* find(const LocationNames& names) const;

    /// How many active paths await an answer; while there are none, nobody need look.
    std::size_t awaitingAnswers = 0;
    /// Malformed paths that are active, and whether each awaits its answer.
    std::map<std::string, bool, std::less<>> malformed;

private:
    void prune(const LocationNames& names);

    RequestNode top;
    bool isAllOpen = false;
};

} // namespace VlScenelibEngine
