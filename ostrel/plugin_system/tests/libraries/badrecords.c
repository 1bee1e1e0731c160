/* One good record among bad ones. */
#include "viewer_api/VlPlugin.h"

static const int kSuite = 0;
static const VlPluginRecord kRecords[] = {
    {0, "NoType", 2, &kSuite},
    {"ViewportPlugin", 0, 2, &kSuite},
    {"ViewportPlugin", "", 2, &kSuite},
    {"ViewportPlugin", "WrongVersion", 99, &kSuite},
    {"ViewportPlugin", "WithoutSuite", 2, 0},
};

int vlSetPluginHost(const VlPluginHost* host) {
    (void)host;
    return 0;
}
int vlGetNumberOfPlugins(void) {
    return 6;
}
const VlPluginRecord* vlGetPlugin(int index) {
    return index == 5 ? 0 : &kRecords[index];
}
