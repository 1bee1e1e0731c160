#pragma once

#include <cstdint>
#include <memory>
#include <optional>

// The X headers define macros named like everyday words, so only this class's source has them.
struct _XDisplay;

/// A connection of our own to the X server. X errors of its requests are caught by the traps
/// around them, and the loss of the server ends the connection, not the process.
class XConnection {
public:
    /// Connects to the server that DISPLAY names; null when there is none.
    static std::unique_ptr<XConnection> open();

    /// Closes the connection: not while an EGL display stands on it.
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] _XDisplay* getDisplay() const noexcept { return display; }

    /// The id of the visual of a window that can be drawn to; nothing when there is no such window.
    [[nodiscard]] std::optional<std::uint32_t> windowVisual(std::intptr_t windowId);

    /// True when both visuals lay out a pixel's colours in the same way, so that what is drawn for
    /// the one shows in a window of the other. Servers list many such, and toolkits take any.
    [[nodiscard]] bool areAlike(std::uint32_t visual, std::uint32_t other) noexcept;

    /// True when there is such a window. Within an attempt only.
    [[nodiscard]] bool hasWindow(std::intptr_t windowId);

    /// Runs the action and waits until the server has done what it asked for. True when the action
    /// says so and no X error came of it. Not to be nested.
    template <class Action>
    bool attempt(Action&& action) {
        if (!beginTrap()) {
            return false;
        }
        const bool isDone = action();
        return endTrap() && isDone;
    }

private:
    explicit XConnection(_XDisplay* xDisplay);

    bool beginTrap();
    bool endTrap();

    _XDisplay* display;
    bool isLost = false;
};
