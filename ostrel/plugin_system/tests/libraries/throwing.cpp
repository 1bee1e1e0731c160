// Lets exceptions out: of the host entry the first time, of the records afterwards.
#include "viewer_api/VlPlugin.h"

#include <stdexcept>

namespace {
bool isSecondTry = false;
}

int vlSetPluginHost(const VlPluginHost* host) {
    if (!host->getSuite("TestSecondTry", 1)) {
        throw std::runtime_error("no\nmood");
    }
    isSecondTry = true;
    return 0;
}
int vlGetNumberOfPlugins() {
    return isSecondTry ? 1 : 0;
}
const VlPluginRecord* vlGetPlugin(int) {
    throw 42;
}
