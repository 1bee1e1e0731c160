/* Built for a host of the next version. */
#include "viewer_api/VlPlugin.h"

int vlSetPluginHost(const VlPluginHost* host) {
    return host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION + 1) ? 0 : 1;
}
int vlGetNumberOfPlugins(void) {
    return 1;
}
const VlPluginRecord* vlGetPlugin(int index) {
    static const int suite = 0;
    static const VlPluginRecord record = {"ViewportPlugin", "NextVersion", 2, &suite};
    (void)index;
    return &record;
}
