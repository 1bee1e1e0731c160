#include "viewerdelegatecomponenthostsuite.h"

#include "triple.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

namespace ViewerAPI {
namespace {

void getViewerDelegate(VlViewerDelegateComponentHandle host, void** delegateHost, void** instance,
                       const void** suite) {
    writeTriple(static_cast<VlViewerDelegateComponentHostStruct*>(host)->delegate, delegateHost,
                instance, suite);
}

constexpr ViewerDelegateComponentHostSuite kSuite{
    .getViewerDelegate = getViewerDelegate,
    .reserved1 = nullptr,
    .reserved2 = nullptr,
};

} // namespace

const ViewerDelegateComponentHostSuite* getViewerDelegateComponentHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
