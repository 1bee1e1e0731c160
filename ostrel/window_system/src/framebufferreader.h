#pragma once

#include "VlWindowSystem/Image.h"

/// The picture in the default framebuffer of the current context, whose size is given. Leaves the
/// GL state as it was.
[[nodiscard]] Image readDefaultFramebuffer(int width, int height);
