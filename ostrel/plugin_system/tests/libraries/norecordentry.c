/* Lacks vlGetPlugin. */
#include "viewer_api/VlPlugin.h"

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return 0;
}
