/* Needs a function that nobody defines. */
#include "viewer_api/VlPlugin.h"

int vlNobodyDefinesThis(void);

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return vlNobodyDefinesThis();
}
int vlGetNumberOfPlugins(void) {
    return 0;
}
const VlPluginRecord* vlGetPlugin(int index) {
    (void)index;
    return 0;
}
