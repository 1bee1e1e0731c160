/* Lacks vlSetPluginHost. */
#include "viewer_api/VlPlugin.h"

int vlGetNumberOfPlugins(void) {
    return 0;
}
const VlPluginRecord* vlGetPlugin(int index) {
    (void)index;
    return 0;
}
