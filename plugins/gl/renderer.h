#pragma once

namespace Bundled {

/// Whether pictures are computed on the processor: there, pixels and samples cost far more than on
/// a graphics card, and small draws less. [gl-current]
[[nodiscard]] bool isSoftwareRenderer();

} // namespace Bundled
