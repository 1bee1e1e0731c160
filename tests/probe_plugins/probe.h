#pragma once

#include "VlAttribute/Attribute.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Plug-ins for tests, named "ProbeDelegate", "ProbeComponent", "ProbeViewport", "ProbeLayer",
/// "ProbeCamera", "ProbeManipulator" and "ProbeHandle". Each records the calls it gets and answers
/// as told, by options, which a handle has none of: rules reach it by its plug-in's name.
///
/// | option | |
/// |---|---|
/// | "log" | get: this instance's calls, a string each: the entry, then its arguments |
/// | "libraryLog" | get: the calls of all instances, each with the plug-in's name before it |
/// | "clearLog" | set (any value): empties both |
/// | "command" | set to a string (or several): rules for what follows, or calls to make at once |
/// | others | set: recorded and kept; get: recorded, and what was kept |
///
/// A command is `action@entry` or `action@Plugin.entry`, the latter for one kind of probe (also one
/// without an instance yet). It holds for every call of the entry until "clear", or with `#n` at
/// its end for n calls. The actions, each after the call was recorded:
///
///     throwStd:text@draw            throws std::runtime_error(text)
///     throwOther@setup              throws something that is no std::exception
///     returnNull@ProbeLayer.create  answers null
///     return:1@event                answers a number
///     returnAttribute:double:0 1 0 1 0 1@getBounds   answers an attribute, see `parseAttribute`
///     call:viewport.removeLayer layer@draw#1         calls the host, see `callHost`
///     call:delegate.getAttributes /root 0            without "@": calls the host at once
///     clear                                          drops all rules
///
/// A call of the host is recorded with its result as `-> viewport.getNumberOfLayers: 2`.
namespace probe {

enum class Kind { Delegate, Component, Viewport, Layer, Camera, Manipulator, Handle };

/// An instance of a plug-in.
struct Probe {
    Kind kind;
    void* host; ///< as given to `create`
    std::vector<std::string> log;
    std::map<std::uint64_t, VlAttribute::Attribute> options;
};

const char* nameOf(Kind kind);

/// What the rules say that an entry answers.
struct Answer {
    bool isNull = false;
    std::optional<int> number;
    VlAttribute::Attribute attribute;
};

/// The `create` entry of a kind: a new Probe, or null if told so.
void* create(Kind kind, void* host);
void destroy(void* instance);

/// Records a call of an entry that belongs to the kind and follows the rules, of which none may
/// call the host.
Answer calledOnKind(Kind kind, std::string_view entry, const std::string& arguments = "");
/// The same for a call of an instance.
Answer called(void* instance, std::string_view entry, const std::string& arguments = "");
/// The same for an entry that answers a number.
int answered(void* instance, std::string_view entry, const std::string& arguments, int otherwise);
/// The same for an entry that answers an attribute.
VlAttributeStruct* answered(void* instance, std::string_view entry, const std::string& arguments);

void setOption(void* instance, std::uint64_t id, VlAttributeStruct* value);
VlAttributeStruct* getOption(void* instance, std::uint64_t id);

/// Makes the call that a line tells, and answers its result as text. A line is
/// `object.entry arguments...`, with spaces between; object is `delegate` (version 3 of its suite),
/// `delegate2` (version 2), `component`, `viewport`, `layer`, `camera`, `manipulator` or `handle`:
/// the probe itself, or what it stands in. A viewport also has its first manipulator, a manipulator
/// its first handle, and any other as `handle:name`. Results: numbers, texts, attributes as text;
/// "found" or "null" for the three values that name an object; "done" for nothing.
/// Throws std::runtime_error when the probe has no such object or the object no such entry.
std::string callHost(const Probe& probe, const std::string& line);

/// `null`, `int:1 2`, `float:0.5`, `double:1`, `string:text with spaces`, and a group of such:
/// `group:label=string:some text;rank=int:1`.
VlAttribute::Attribute parseAttribute(const std::string& text);

} // namespace probe
