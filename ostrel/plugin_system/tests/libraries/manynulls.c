/* A hundred null records. */
#include "viewer_api/VlPlugin.h"

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return 100;
}
const VlPluginRecord* vlGetPlugin(int index) {
    (void)index;
    return 0;
}
