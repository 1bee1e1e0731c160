#pragma once

#include "VlWindowSystem/WindowSystem.h"
#include "egldisplay.h"

#include <cstdint>
#include <optional>

/// The format of the display that fits the attribute list best, for a window of that visual or for
/// an off-screen surface; 0 when none does or the list has a name or value that isn't known.
[[nodiscard]] int choosePixelFormat(const EglDisplay& display, std::optional<std::uint32_t> visual,
                                    const int* attributes);

/// Describes a format in range, in the layout that the type of the descriptor's name has elsewhere.
[[nodiscard]] PixelFormatDescriptor describePixelFormat(const EglDisplay& display, int format);
