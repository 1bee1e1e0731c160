/* What the host offers to a ViewerDelegateComponent plug-in. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE "ViewerDelegateComponentHost"
#define VL_VIEWER_DELEGATE_COMPONENT_HOST_SUITE_VERSION 2

typedef struct ViewerDelegateComponentHostSuite {
    /* Writes the owning delegate's host object, plug-in instance and plug-in suite; never null.
     * [ui-thread] */
    void (*getViewerDelegate)(VlViewerDelegateComponentHandle host, void** delegateHost,
                              void** instance, const void** suite);

    /* Two null pointers close the table. */
    VlReservedEntry reserved1;
    VlReservedEntry reserved2;
} ViewerDelegateComponentHostSuite;

#ifdef __cplusplus
}
#endif
