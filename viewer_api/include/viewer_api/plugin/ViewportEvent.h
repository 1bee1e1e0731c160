#pragma once

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace ViewerPlugin {

/// What the user did in a viewport's window: the content of the group that reaches the `event`
/// entries of viewports, layers and manipulators. docs/events.md describes the group.
struct ViewportEvent {
    enum class Type { MousePress, MouseMove, MouseRelease, Wheel, KeyPress, KeyRelease };
    enum class Button { None, Left, Middle, Right };
    struct Buttons {
        bool left = false;
        bool middle = false;
        bool right = false;

        friend bool operator==(const Buttons&, const Buttons&) = default;
    };
    struct Modifiers {
        bool shift = false;
        bool control = false;
        bool alt = false;

        friend bool operator==(const Modifiers&, const Modifiers&) = default;
    };

    Type type = Type::MouseMove;
    /// The farthest that a place is from the window's left and top: what comes from farther away is
    /// brought there, so that ways can be reckoned in integers.
    static constexpr int kFarthestPx = 1 << 20;

    /// Pixels from the left and top of the window; negative and beyond its size while a button is
    /// held outside. Of mouse and wheel.
    int x = 0;
    int y = 0;
    /// The button that was pressed or released.
    Button button = Button::None;
    /// Those that are held after the event. Of mouse and wheel.
    Buttons buttons{};
    /// Those that are held.
    Modifiers modifiers{};
    /// Notches of the wheel, positive away from the user; fine wheels give fractions.
    float delta = 0.0f;
    /// The name of the key that was pressed or released.
    std::string key{};

    friend bool operator==(const ViewportEvent&, const ViewportEvent&) = default;

    /// Nothing for a group of an unknown type, or that lacks what its type needs: both may come
    /// from an application with events of its own.
    static std::optional<ViewportEvent> parse(const VlAttribute::GroupAttribute& group) {
        ViewportEvent event;
        const std::string type = text(group, "type");
        if (type == "mousePress") {
            event.type = Type::MousePress;
        } else if (type == "mouseMove") {
            event.type = Type::MouseMove;
        } else if (type == "mouseRelease") {
            event.type = Type::MouseRelease;
        } else if (type == "wheel") {
            event.type = Type::Wheel;
        } else if (type == "keyPress") {
            event.type = Type::KeyPress;
        } else if (type == "keyRelease") {
            event.type = Type::KeyRelease;
        } else {
            return std::nullopt;
        }
        event.modifiers = {contains(group, "modifiers", "shift"),
                           contains(group, "modifiers", "control"),
                           contains(group, "modifiers", "alt")};
        const bool isUsable = event.isKey() ? event.readKey(group) : event.readPointer(group);
        return isUsable ? std::optional(event) : std::nullopt;
    }

    [[nodiscard]] bool isKey() const noexcept {
        return type == Type::KeyPress || type == Type::KeyRelease;
    }

private:
    static std::string text(const VlAttribute::GroupAttribute& group, const char* name) {
        return VlAttribute::StringAttribute(group.getChildByName(name)).getValue();
    }

    static bool contains(const VlAttribute::GroupAttribute& group, const char* name,
                         std::string_view wanted) {
        const VlAttribute::StringAttribute list(group.getChildByName(name));
        for (const std::string_view each : list.getNearestSample(0.0f)) {
            if (each == wanted) {
                return true;
            }
        }
        return false;
    }

    bool readKey(const VlAttribute::GroupAttribute& group) {
        key = text(group, "key");
        return !key.empty();
    }

    bool readPointer(const VlAttribute::GroupAttribute& group) {
        const VlAttribute::IntAttribute left(group.getChildByName("x"));
        const VlAttribute::IntAttribute top(group.getChildByName("y"));
        if (left.getNumberOfValues() == 0 || top.getNumberOfValues() == 0) {
            return false;
        }
        x = std::clamp(left.getValue(0), -kFarthestPx, kFarthestPx);
        y = std::clamp(top.getValue(0), -kFarthestPx, kFarthestPx);
        buttons = {contains(group, "buttons", "left"), contains(group, "buttons", "middle"),
                   contains(group, "buttons", "right")};
        if (type == Type::Wheel) {
            const VlAttribute::FloatAttribute notches(group.getChildByName("delta"));
            delta = notches.getValue(0.0f);
            return notches.getNumberOfValues() > 0 && std::isfinite(delta);
        }
        const std::string name = text(group, "button");
        button = name == "left"     ? Button::Left
                 : name == "middle" ? Button::Middle
                 : name == "right"  ? Button::Right
                                    : Button::None;
        return type == Type::MouseMove || button != Button::None;
    }
};

} // namespace ViewerPlugin
