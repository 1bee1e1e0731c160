#include "viewer_api/plugin/ViewportEvent.h"

#include "VlAttribute/GroupBuilder.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

// The group of an interaction event, read into a struct.
namespace {

using ViewerPlugin::ViewportEvent;
using VlAttribute::Attribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using Type = ViewportEvent::Type;
using Button = ViewportEvent::Button;

using Entries = std::vector<std::pair<const char*, Attribute>>;

std::optional<ViewportEvent> parse(const Entries& entries) {
    VlAttribute::GroupBuilder builder;
    for (const auto& [name, value] : entries) {
        builder.set(name, value);
    }
    return ViewportEvent::parse(builder.build());
}

StringAttribute text(const char* value) {
    return StringAttribute(value);
}

TEST(ViewportEvent, readsEveryType) {
    const struct {
        const char* name;
        Entries entries;
        ViewportEvent event;
    } rows[] = {
        {"press",
         {{"type", text("mousePress")},
          {"x", IntAttribute(3)},
          {"y", IntAttribute(-4)},
          {"button", text("left")},
          {"buttons", StringAttribute({"left", "right"})},
          {"modifiers", StringAttribute({"shift", "alt"})}},
         {.type = Type::MousePress,
          .x = 3,
          .y = -4,
          .button = Button::Left,
          .buttons = {.left = true, .right = true},
          .modifiers = {.shift = true, .alt = true}}},
        {"move without a button",
         {{"type", text("mouseMove")}, {"x", IntAttribute(1)}, {"y", IntAttribute(2)}},
         {.type = Type::MouseMove, .x = 1, .y = 2}},
        {"release",
         {{"type", text("mouseRelease")},
          {"x", IntAttribute(0)},
          {"y", IntAttribute(0)},
          {"button", text("middle")},
          {"buttons", StringAttribute({"right"})},
          {"modifiers", text("control")}},
         {.type = Type::MouseRelease,
          .button = Button::Middle,
          .buttons = {.right = true},
          .modifiers = {.control = true}}},
        {"wheel",
         {{"type", text("wheel")},
          {"x", IntAttribute(5)},
          {"y", IntAttribute(6)},
          {"delta", FloatAttribute(-0.5f)}},
         {.type = Type::Wheel, .x = 5, .y = 6, .delta = -0.5f}},
        {"key",
         {{"type", text("keyPress")}, {"key", text("f")}, {"modifiers", text("shift")}},
         {.type = Type::KeyPress, .modifiers = {.shift = true}, .key = "f"}},
        {"key's end",
         {{"type", text("keyRelease")}, {"key", text("Escape")}},
         {.type = Type::KeyRelease, .key = "Escape"}},
        {"names of a later version",
         {{"type", text("keyPress")},
          {"key", text("a")},
          {"modifiers", StringAttribute({"meta", "control"})},
          {"colour", text("red")}},
         {.type = Type::KeyPress, .modifiers = {.control = true}, .key = "a"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto event = parse(row.entries);
        ASSERT_TRUE(event);
        EXPECT_EQ(*event, row.event);
    }
}

TEST(ViewportEvent, refusesWhatIsNoEvent) {
    const IntAttribute one(1);
    const struct {
        const char* name;
        Entries entries;
    } rows[] = {
        {"nothing", {}},
        {"no type", {{"x", one}, {"y", one}, {"button", text("left")}}},
        {"another type", {{"type", text("gesture")}, {"x", one}, {"y", one}}},
        {"a type that is no text", {{"type", one}, {"x", one}, {"y", one}}},
        {"a press without a place", {{"type", text("mousePress")}, {"button", text("left")}}},
        {"a press at half a place",
         {{"type", text("mousePress")}, {"x", one}, {"button", text("left")}}},
        {"a press at a place of another kind",
         {{"type", text("mousePress")}, {"x", one}, {"y", text("1")}, {"button", text("left")}}},
        {"a press of no button", {{"type", text("mousePress")}, {"x", one}, {"y", one}}},
        {"a press of an unknown button",
         {{"type", text("mousePress")}, {"x", one}, {"y", one}, {"button", text("fifth")}}},
        {"a release of no button", {{"type", text("mouseRelease")}, {"x", one}, {"y", one}}},
        {"a wheel that does not turn", {{"type", text("wheel")}, {"x", one}, {"y", one}}},
        {"a wheel that turns by no number",
         {{"type", text("wheel")},
          {"x", one},
          {"y", one},
          {"delta", FloatAttribute(std::numeric_limits<float>::quiet_NaN())}}},
        {"a key without a name", {{"type", text("keyPress")}}},
        {"a key with an empty name", {{"type", text("keyPress")}, {"key", text("")}}},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(parse(row.entries)) << row.name;
    }
}

TEST(ViewportEvent, bringsWhatComesFromFarAwayNearEnoughToReckonWith) {
    constexpr int kFarthest = ViewportEvent::kFarthestPx;
    for (const auto& [given, read] : {std::pair(std::numeric_limits<int>::max(), kFarthest),
                                      {std::numeric_limits<int>::min(), -kFarthest},
                                      {kFarthest + 1, kFarthest},
                                      {-kFarthest, -kFarthest}}) {
        const auto event = parse(
            {{"type", text("mouseMove")}, {"x", IntAttribute(given)}, {"y", IntAttribute(-1)}});
        ASSERT_TRUE(event);
        EXPECT_EQ(event->x, read);
        EXPECT_EQ(event->y, -1);
    }
}

TEST(ViewportEvent, refusesANullGroup) {
    EXPECT_FALSE(ViewportEvent::parse(GroupAttribute()));
}

} // namespace
