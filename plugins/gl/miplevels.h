#pragma once

#include "gl/picturefile.h"

namespace Bundled {

/// The next mip level of an sRGB picture: half as wide and half as high, rounded down but at least
/// 1 each. A pixel is the mean of those it stands for, in linear light; alpha is linear already. Of
/// an odd width or height the last column or row is left out. The picture must not be empty.
/// [any-thread]
Picture nextMipLevel(const Picture& picture);

} // namespace Bundled
