/* A second viewport "Good", with another table, and one that is new. */
#include "viewer_api/VlPlugin.h"

static const int kSuite = 2;
static const VlPluginRecord kRecords[] = {
    {"ViewportPlugin", "Good", 2, &kSuite},
    {"ViewportPlugin", "Late", 2, &kSuite},
};

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return 2;
}
const VlPluginRecord* vlGetPlugin(int index) {
    return &kRecords[index];
}
