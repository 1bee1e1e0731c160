/* Two plug-ins, one of a kind of its own. Tells through a suite of the test's what it is asked. */
#include "viewer_api/VlPlugin.h"

static const int kSuite = 1;
static const VlPluginRecord kRecords[] = {
    {"ViewportPlugin", "Good", 2, &kSuite},
    {"ExamplePlugin", "GoodExample", 7, &kSuite},
};

/* What the test offers as "TestProbe" 1: counts the calls. */
typedef struct TestProbe {
    int hostCalls;
} TestProbe;

int vlSetPluginHost(const VlPluginHost* host) {
    TestProbe* probe = (TestProbe*)host->getSuite("TestProbe", 1);
    if (probe) {
        ++probe->hostCalls;
    }
    return host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION) == host ? 0 : 1;
}
int vlGetNumberOfPlugins(void) {
    return 2;
}
const VlPluginRecord* vlGetPlugin(int index) {
    return &kRecords[index];
}
