#pragma once

#include "VlWindowSystem/Image.h"

/// Brings the picture in the default framebuffer of the current context, whose size is given, to
/// `image`, in its memory where that is large enough. Leaves the GL state as it was.
void readDefaultFramebuffer(int width, int height, Image& image);
