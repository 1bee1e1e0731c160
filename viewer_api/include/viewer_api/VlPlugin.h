/* What a plug-in library exports, and what it gets. */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of what this header declares: of the three entries, VlPluginRecord and VlPluginHost.
 * It is not the version of a table; those have their own. */
#define VL_PLUGIN_API_VERSION 1

/* The name under which a library asks the host for its own table, to learn whether both speak the
 * same version: see vlSetPluginHost. */
#define VL_PLUGIN_HOST_SUITE "PluginHost"

/* Marks the three entries, so that they are exported whatever the library's visibility is. */
#if defined(__GNUC__)
#define VL_PLUGIN_EXPORT __attribute__((visibility("default")))
#else
#define VL_PLUGIN_EXPORT
#endif

/* One plug-in of a library. The library owns the record, its texts and the table; record and texts
 * must stay until the library has been asked for all its records (the host copies them), the table
 * unchanged until the process ends. */
typedef struct VlPluginRecord {
    /* The kind, such as "ViewportPlugin"; neither null nor empty. A kind that the host doesn't know
     * is kept and waits for someone who asks for it. */
    const char* typeName;

    /* The plug-in's own name, unique in its kind and version; neither null nor empty. */
    const char* name;

    /* The version of the kind's table. A record of a kind that the host knows, in another version
     * than the host's, is skipped with one logged line. */
    uint32_t apiVersion;

    /* The kind's table of function pointers. Null is taken, but makes every attempt to create an
     * instance fail, and so does a table with a null entry, unless its header says that the entry
     * is never called. */
    const void* suite;
} VlPluginRecord;

/* The host, as a library sees it. */
typedef struct VlPluginHost {
    /* A table of the host by name and version, as named in that table's header; null when unknown
     * or when `name` is null. The table is the host's and lasts until the process ends. Tables
     * appear as the application starts, so ask when the first instance is created rather than in
     * vlSetPluginHost, and again after a null.
     * [any-thread] */
    const void* (*getSuite)(const char* name, uint32_t version);
} VlPluginHost;

/* A plug-in library is a shared object that defines the three functions below. The host calls them
 * when it loads the library, in this order: vlSetPluginHost, vlGetNumberOfPlugins, and vlGetPlugin
 * for each index. A library that can't be opened, lacks one of the three, refuses the host, or
 * lets an exception out of them is skipped with one logged line that says why. One that was taken
 * is never unloaded. */

/* Gives the library its host, which lasts until the process ends; `host` is never null. Returns 0
 * when the library accepts it. Any other value refuses: the library is then asked nothing more, and
 * may be unloaded. A library refuses a host of another version:
 *
 *     if (!host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION)) return 1;
 *
 * [ui-thread] */
VL_PLUGIN_EXPORT int vlSetPluginHost(const VlPluginHost* host);

/* The number of plug-ins, 0 or more.
 * [ui-thread] */
VL_PLUGIN_EXPORT int vlGetNumberOfPlugins(void);

/* The record of one plug-in, 0 <= index < vlGetNumberOfPlugins(). A null answer or a record that
 * breaks its rules is skipped with one logged line; the library's others stay.
 * [ui-thread] */
VL_PLUGIN_EXPORT const VlPluginRecord* vlGetPlugin(int index);

#ifdef __cplusplus
}
#endif
