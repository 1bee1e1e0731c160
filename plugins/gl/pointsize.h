#pragma once

namespace Bundled {

/// How large points are drawn, in pixels; the same wherever they can be picked.
inline constexpr float kPointSizePx = 3.0f;

} // namespace Bundled
