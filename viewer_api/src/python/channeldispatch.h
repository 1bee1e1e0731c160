#pragma once

#include "VlAttribute/Attribute.h"

namespace ViewerAPI {

/// Fires a channel of the delegate whose wrapper is `hostedPythonObject`: calls what is registered
/// under its name with the attribute's Python form as the one argument.
///
/// The answer is the attribute that the callable returned, or one made of an int (an IntAttribute),
/// a float (a FloatAttribute) or a str (a StringAttribute). It is null when the callable returned
/// None or anything else, and when nothing is registered.
///
/// When the callable raises, throws std::runtime_error with the error's type, repr and traceback
/// for callers that know no Python, and leaves the error set for those that do. [ui-thread]
VlAttribute::Attribute dispatchToPython(void* hostedPythonObject, const char* channel,
                                        const VlAttribute::Attribute& value);

} // namespace ViewerAPI
