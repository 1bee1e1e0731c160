/* Claims fewer plug-ins than none. */
#include "viewer_api/VlPlugin.h"

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return -1;
}
const VlPluginRecord* vlGetPlugin(int index) {
    (void)index;
    return 0;
}
