#pragma once

#include "VlAttribute/Attribute.h"

#include <functional>

namespace ViewerAPI {

/// Fires a named channel of a delegate's user interface with one attribute, which may be null, and
/// gives back one attribute, null when nobody listens. `hostedPythonObject` is what the delegate
/// was constructed with, borrowed. Throws std::runtime_error when the listener failed.
using ChannelDispatch = std::function<VlAttribute::Attribute(
    void* hostedPythonObject, const char* channel, const VlAttribute::Attribute& value)>;

/// Sets who dispatches channels; an empty function restores silence. [ui-thread]
void setChannelDispatch(ChannelDispatch dispatch);

/// Fires a channel through what is set; a null attribute when nothing is. [ui-thread]
VlAttribute::Attribute dispatchChannel(void* hostedPythonObject, const char* channel,
                                       const VlAttribute::Attribute& value);

} // namespace ViewerAPI
