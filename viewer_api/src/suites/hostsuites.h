#pragma once

namespace ViewerAPI {

/// Offers every host suite to plug-ins by its name and version. Called at module start-up, before
/// any plug-in makes an instance; calling it again changes nothing. [ui-thread]
void registerHostSuites();

} // namespace ViewerAPI
