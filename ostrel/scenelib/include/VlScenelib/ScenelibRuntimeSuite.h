/* The table behind the scene library's classes: what a scene runtime is, in plain C.
 *
 * Whoever provides a runtime fills one ScenelibRuntimeSuite and offers it through a
 * ScenelibRuntimeHostSuite, which is registered as the host suite "ScenelibRuntimeHost", version 2.
 * The classes of this library (ScenelibRuntime, Transaction, Client, Op) wrap the two.
 *
 * Ownership: every handle that an entry returns belongs to the caller, who gives it back exactly
 * once with the release entry of its kind. Handles passed in stay the caller's. Objects keep alive
 * what they need: a client its runtime, a transaction what is recorded in it, an op its inputs; so
 * handles may be released in any order. An attribute that an entry returns carries a reference
 * that the caller owns; one that is passed in is borrowed for the call, and may be null where the
 * entry says so. Text passed in is borrowed for the call, is UTF-8, and ends with a zero byte.
 *
 * Errors are C++ exceptions derived from std::exception; only the entries that name an error throw.
 *
 * Threads: handles of one runtime may be used from any thread, one call at a time on one
 * transaction. No entry waits for cooking. [any-thread]
 */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct VlAttributeStruct VlAttributeStruct;

typedef struct ScenelibRuntimeStruct* ScenelibRuntimeHandle;
typedef struct ScenelibTransactionStruct* ScenelibTransactionHandle;
typedef struct ScenelibClientStruct* ScenelibClientHandle;
typedef struct ScenelibOpStruct* ScenelibOpHandle;

/* What is known of one location. */
typedef struct ScenelibLocationRecord {
    /* The path and its length in bytes. Valid until the next call on the same client. Null in the
     * result of getCachedLocation. */
    const char* path;
    size_t pathLength;
    /* A group, or null when the location does not exist. The receiver owns one reference. */
    VlAttributeStruct* attrs;
    /* The names of the children in order, a string attribute; null counts as none. The receiver
     * owns one reference. */
    VlAttributeStruct* potentialChildren;
    /* 0 or 1. */
    int exists;
} ScenelibLocationRecord;

typedef struct ScenelibRuntimeSuite {
    /* ---- runtime ---- */

    void (*releaseRuntime)(ScenelibRuntimeHandle runtime);

    /* An empty transaction. Never null. */
    ScenelibTransactionHandle (*createTransaction)(ScenelibRuntimeHandle runtime);

    /* Applies what the transaction records, in the order of its calls, and returns the commit id at
     * once; cooking proceeds on its own. Ids start at 1 and grow over the whole process. The
     * transaction is empty afterwards and may be used again.
     * Throws when the ops would form a cycle; then nothing of the transaction is applied. */
    int64_t (*commit)(ScenelibRuntimeHandle runtime, ScenelibTransactionHandle transaction);

    /* "/root". Valid while the runtime is. */
    const char* (*getRootLocationPath)(ScenelibRuntimeHandle runtime);

    /* The op with that id in the runtime's op graph, or null. */
    ScenelibOpHandle (*getOpFromOpId)(ScenelibRuntimeHandle runtime, int opId);

    /* 1 while any commit, request or cook on the runtime's op graph is not finished. When 0, all
     * that there is to report can be fetched. */
    int (*isProcessing)(ScenelibRuntimeHandle runtime);

    /* Drops every memoised cook; what clients cook is cooked and reported again. */
    void (*flushCaches)(ScenelibRuntimeHandle runtime);

    /* ---- transaction ---- */

    /* Without a commit, what it records never happens. */
    void (*releaseTransaction)(ScenelibTransactionHandle transaction);

    /* A client that views nothing until a commit gives it an op. Its requests are kept meanwhile.
     * Never null. */
    ScenelibClientHandle (*createClient)(ScenelibTransactionHandle transaction);

    /* An op of type "no-op" without inputs. Never null. */
    ScenelibOpHandle (*createOp)(ScenelibTransactionHandle transaction);

    /* What the client views. A null op: nothing. */
    void (*setClientOp)(ScenelibTransactionHandle transaction, ScenelibClientHandle client,
                        ScenelibOpHandle op);

    /* Type and arguments (a group; null counts as empty). A type that nobody registered gives an
     * "error" location at the root. A null op: nothing. */
    void (*setOpArgs)(ScenelibTransactionHandle transaction, ScenelibOpHandle op,
                      const char* opType, VlAttributeStruct* args);

    /* Replaces the inputs. A null among them is an input that shows nothing. A null op: nothing. */
    void (*setOpInputs)(ScenelibTransactionHandle transaction, ScenelibOpHandle op,
                        const ScenelibOpHandle* inputs, uint32_t count);

    /* ---- op ---- */

    /* The op itself lives on while it is an input, is viewed, or belongs to the application. */
    void (*releaseOp)(ScenelibOpHandle op);

    /* Positive and unique in the process. */
    int (*getOpId)(ScenelibOpHandle op);

    /* ---- client ---- */

    /* Ends the client's cooking. It reports nothing any more. */
    void (*releaseClient)(ScenelibClientHandle client);

    /* Whether the data of each event that is fetched from now on is kept for getCachedLocation.
     * Switching off drops what was kept. Off at first. */
    void (*setEventCachingEnabled)(ScenelibClientHandle client, int enabled);

    /* Whether every cooked location at or below an active one counts as open, whatever
     * setLocationsOpen said. Off at first; switching off brings the explicit state back. */
    void (*setAllOpen)(ScenelibClientHandle client, int allOpen);

    /* paths: a string attribute; null counts as empty. A location that becomes active is reported
     * once, also when it is known or does not exist; for one that is active already nothing
     * happens. Its ancestors are cooked and reported as well. */
    void (*setLocationsActive)(ScenelibClientHandle client, VlAttributeStruct* paths);
    void (*setLocationsInactive)(ScenelibClientHandle client, VlAttributeStruct* paths);

    /* Expansion. It takes effect for locations at or below an active one, and is remembered for
     * paths that do not exist. */
    void (*setLocationsOpen)(ScenelibClientHandle client, VlAttributeStruct* paths);
    void (*setLocationsClosed)(ScenelibClientHandle client, VlAttributeStruct* paths);

    /* The paths that were made active at or below root (null or "": all), as a string attribute,
     * in the order of the hierarchy with siblings sorted by name. Never null. */
    VlAttributeStruct* (*getActiveLocations)(ScenelibClientHandle client, const char* root);

    /* Whether the path itself was made active. 0 or 1, at once. */
    int (*isLocationActive)(ScenelibClientHandle client, const char* path);

    /* 1 when the data that was fetched for the path reflects the commit (-1: the newest), 0 when it
     * does not yet, when the commit is not known, or when the client does not cook the path. */
    int (*isLocationDataCurrent)(ScenelibClientHandle client, const char* path, int64_t commitId);

    /* Fills the record (but not its path) with the data last fetched for a path that the client
     * cooks, while event caching is on, and returns 1. Otherwise leaves it alone and returns 0. */
    int (*getCachedLocation)(ScenelibClientHandle client, const char* path,
                             ScenelibLocationRecord* record);

    /* Fetches waiting events in order: fills at most `capacity` records and returns how many. Data
     * and existence are those of this moment. A call with isContinuation 0 begins a drain; further
     * calls with 1 go on with what was ready when it began, and not with what came since, until one
     * fills less than `capacity`. `left` is set to about how many more the drain gives, for who
     * reserves room for them. */
    uint32_t (*getLocationEvents)(ScenelibClientHandle client, ScenelibLocationRecord* records,
                                  uint32_t capacity, int isContinuation, size_t* left);

    /* 1 when getLocationEvents would give something now. */
    int (*hasLocationEvents)(ScenelibClientHandle client);
} ScenelibRuntimeSuite;

/* Registered as "ScenelibRuntimeHost", version 2. */
typedef struct ScenelibRuntimeHostSuite {
    /* Makes a runtime of a type ("runtime-async": one on the application's op graph) and gives its
     * table, which lives as long as the process. For an unknown type both results are null. */
    void (*create)(const char* typeName, ScenelibRuntimeHandle* runtime,
                   const ScenelibRuntimeSuite** suite);
} ScenelibRuntimeHostSuite;

/* Registered as "VlScenelibServicesHost", version 1. */
typedef struct ScenelibServicesHostSuite {
    /* Makes an independent runtime with an op graph of its own, and gives its table, which lives as
     * long as the process. Both results are null when none can be made. */
    void (*createRuntime)(ScenelibRuntimeHandle* runtime, const ScenelibRuntimeSuite** suite);
} ScenelibServicesHostSuite;

#define SCENELIB_RUNTIME_HOST_SUITE_NAME "ScenelibRuntimeHost"
#define SCENELIB_RUNTIME_HOST_SUITE_VERSION 2
#define SCENELIB_SERVICES_HOST_SUITE_NAME "VlScenelibServicesHost"
#define SCENELIB_SERVICES_HOST_SUITE_VERSION 1

#ifdef __cplusplus
}
#endif
