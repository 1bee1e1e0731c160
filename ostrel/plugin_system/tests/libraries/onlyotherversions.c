/* All it has is of versions that the viewer doesn't speak. */
#include "viewer_api/VlPlugin.h"

static const int kSuite = 0;
static const VlPluginRecord kRecords[] = {
    {"ViewerDelegatePlugin", "OldDelegate", 2, &kSuite},
};

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return 1;
}
const VlPluginRecord* vlGetPlugin(int index) {
    return &kRecords[index];
}
