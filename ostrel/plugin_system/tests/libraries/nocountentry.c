/* Lacks vlGetNumberOfPlugins. */
#include "viewer_api/VlPlugin.h"

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
const VlPluginRecord* vlGetPlugin(int index) {
    (void)index;
    return 0;
}
