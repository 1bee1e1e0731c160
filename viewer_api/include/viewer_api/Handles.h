/* Opaque handles that the suite tables pass, and constants that several tables share. */
#pragma once

#include "VlAttribute/VlAttributeC.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A host object. A plug-in receives its own in the create entry of its suite and passes it back
 * as the first argument of every entry of its host suite. It is valid from the beginning of create
 * to the end of destroy; the plug-in never releases it.
 *
 * Exceptions: the tables are C-typed, but an entry may throw C++ exceptions in both directions,
 * and the caller in Python or C++ receives them. A plug-in in C++ lets them pass; a plug-in in C
 * is compiled with -fexceptions, so that they can travel through its frames.
 */
typedef void* VlViewerDelegateHandle;
typedef void* VlViewerDelegateComponentHandle;
typedef void* VlViewportHandle;
typedef void* VlViewportLayerHandle;
typedef void* VlViewportCameraHandle;
typedef void* VlManipulatorHandle;
typedef void* VlManipulatorHandleHandle;
typedef void* VlOptionIdGeneratorHandle;

/* A table slot without a meaning: it keeps the slots behind it in place and is always null. */
typedef void (*VlReservedEntry)(void);

#ifdef __cplusplus
}
#endif
