/* A plug-in library in C: a delegate component that counts the locations that its delegate shows.
 *
 * Build it as C99 with -fexceptions, so that exceptions of the host can travel through its frames,
 * as a shared object that exports the three entries at the end, and link the attribute library.
 *
 * Option "locationCount" (int, read only): how many locations are shown now.
 */
#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/VlPlugin.h"

#include <stdlib.h>
#include <string.h>

/* A shown location. Removals name a location and mean everything below it, so paths are kept. */
typedef struct Location {
    struct Location* next;
    char path[1];
} Location;

typedef struct Counter {
    Location* locations;
    int32_t count;
    uint64_t countOption;
} Counter;

static const VlPluginHost* pluginHost;

static int isAtOrBelow(const char* location, const char* path) {
    const size_t length = strlen(path);
    return strncmp(location, path, length) == 0 &&
           (location[length] == '\0' || location[length] == '/');
}

static void* create(VlViewerDelegateComponentHandle host) {
    const OptionIdGeneratorHostSuite* options =
        (const OptionIdGeneratorHostSuite*)pluginHost->getSuite(
            VL_OPTION_ID_GENERATOR_HOST_SUITE, VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION);
    Counter* counter = options ? (Counter*)calloc(1, sizeof(Counter)) : NULL;
    (void)host;
    if (counter) {
        counter->countOption =
            options->generateOptionIdByName(options->getOptionIdGenerator(), "locationCount");
    }
    return counter;
}

/* Drops the location of this path and all below it. */
static void drop(Counter* counter, const char* path) {
    Location** place = &counter->locations;
    while (*place) {
        Location* location = *place;
        if (isAtOrBelow(location->path, path)) {
            *place = location->next;
            free(location);
            --counter->count;
        } else {
            place = &location->next;
        }
    }
}

static int knows(const Counter* counter, const char* path) {
    const Location* location = counter->locations;
    while (location && strcmp(location->path, path) != 0) {
        location = location->next;
    }
    return location != NULL;
}

static void destroy(void* instance) {
    Counter* counter = (Counter*)instance;
    while (counter->locations) {
        Location* location = counter->locations;
        counter->locations = location->next;
        free(location);
    }
    free(counter);
}

static int locationEvent(void* instance, const ViewerLocationEvent* event, int handled) {
    Counter* counter = (Counter*)instance;
    (void)handled;
    if (event->flags & kVlLocationEventRemoved) {
        drop(counter, event->locationPath);
    } else if (!knows(counter, event->locationPath)) {
        const size_t length = strlen(event->locationPath);
        Location* location = (Location*)malloc(sizeof(Location) + length);
        if (location) {
            memcpy(location->path, event->locationPath, length + 1);
            location->next = counter->locations;
            counter->locations = location;
            ++counter->count;
        }
    }
    /* Counting takes nothing away from who draws. */
    return 0;
}

static void locationsSelected(void* instance, const char** paths, uint32_t count) {
    (void)instance;
    (void)paths;
    (void)count;
}

static void setOption(void* instance, uint64_t optionId, VlAttributeStruct* value) {
    (void)instance;
    (void)optionId;
    /* The reference is ours, wanted or not. */
    vlAttributeRelease(value);
}

static VlAttributeStruct* getOption(void* instance, uint64_t optionId) {
    const Counter* counter = (const Counter*)instance;
    return optionId == counter->countOption ? vlIntAttributeCreate(&counter->count, 1, 1) : NULL;
}

static void doNothing(void* instance) {
    (void)instance;
}

static int isProcessing(void* instance) {
    (void)instance;
    return 0;
}

static VlAttributeStruct* noBox(void* instance, const char* locationPath) {
    (void)instance;
    (void)locationPath;
    return NULL;
}

static const ViewerDelegateComponentPluginSuite suite = {
    create,       destroy,   locationEvent, locationsSelected,
    setOption,    getOption, doNothing,     doNothing,
    isProcessing, noBox,     noBox,
};

static const VlPluginRecord record = {
    VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE,
    "LocationCounter",
    VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION,
    &suite,
};

VL_PLUGIN_EXPORT int vlSetPluginHost(const VlPluginHost* host) {
    if (!host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION)) {
        return 1;
    }
    pluginHost = host;
    return 0;
}

VL_PLUGIN_EXPORT int vlGetNumberOfPlugins(void) {
    return 1;
}

VL_PLUGIN_EXPORT const VlPluginRecord* vlGetPlugin(int index) {
    return index == 0 ? &record : NULL;
}
