#pragma once

namespace Bundled {

/// Whether a context is current and its entry points are loaded; loads them the first time. Without
/// it no function of this folder may be called, and destructors leave GL alone. [ui-thread]
bool isGLReady();

/// Throws away errors that others left, so that those found later are one's own. [gl-current]
void clearGLErrors();

} // namespace Bundled
