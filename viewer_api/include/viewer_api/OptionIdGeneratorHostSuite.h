/* Turns option names into ids and back. An id is what options are set and asked by, so that a busy
 * call passes no text; callers keep the ids that they use often.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_OPTION_ID_GENERATOR_HOST_SUITE "OptionIdGeneratorHost"
#define VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION 1

typedef struct OptionIdGeneratorHostSuite {
    /* The one generator of the process; never null, lives until the host is unloaded.
     * [ui-thread] */
    VlOptionIdGeneratorHandle (*getOptionIdGenerator)(void);

    /* The id of a name, always the same for the same name; its low 16 bits are 0. The name is
     * remembered for lookUpOptionId; should two names share an id, the newest is.
     * [ui-thread] */
    uint64_t (*generateOptionIdByName)(VlOptionIdGeneratorHandle generator, const char* name);

    /* The name of an id, or "" for one that was never generated; never null. It belongs to the
     * generator and is valid until the id's next generation.
     * [ui-thread] */
    const char* (*lookUpOptionId)(VlOptionIdGeneratorHandle generator, uint64_t optionId);
} OptionIdGeneratorHostSuite;

#ifdef __cplusplus
}
#endif
