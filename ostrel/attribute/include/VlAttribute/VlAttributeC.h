#pragma once

/**
 * The attribute library for C (C99), as plug-ins use it.
 *
 * A handle is one reference to an immutable, shared value. Every function that returns a handle
 * gives the caller a reference of its own, to be given back with vlAttributeRelease, unless its
 * comment says "borrowed". Handles passed in stay the caller's. A null handle stands for an absent
 * value and is accepted everywhere. Functions that make a value return null when the arguments are
 * refused (each says when) or memory runs out.
 *
 * All functions may be called from any thread, also at the same time on the same handle.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct VlAttributeStruct VlAttributeStruct;

/** Results of vlAttributeGetType. */
enum {
    kVlAttributeNone = 0,
    kVlAttributeInt = 1,
    kVlAttributeFloat = 2,
    kVlAttributeDouble = 3,
    kVlAttributeString = 4,
    kVlAttributeGroup = 5
};

/* Any attribute -------------------------------------------------------------------------------*/

/** Adds a reference and returns the same handle. */
VlAttributeStruct* vlAttributeRetain(VlAttributeStruct* attribute);
/** Gives a reference back. */
void vlAttributeRelease(VlAttributeStruct* attribute);
/** One of the constants above. */
int vlAttributeGetType(const VlAttributeStruct* attribute);
/** The 128-bit content hash, equal for equal values and stable; all zero for null. */
void vlAttributeGetHash(VlAttributeStruct* attribute, uint64_t* first, uint64_t* second);
/** 1 when equal in type and content, else 0. */
int vlAttributeEquals(VlAttributeStruct* left, VlAttributeStruct* right);

/* Numeric and string attributes ---------------------------------------------------------------*/

/** Values (not tuples) in each time sample; 0 for null and for a group. */
uint32_t vlAttributeGetNumberOfValues(const VlAttributeStruct* attribute);
/** Values in a tuple; 0 for null and for a group. */
uint32_t vlAttributeGetTupleSize(const VlAttributeStruct* attribute);
/** 0 for null and for a group. */
uint32_t vlAttributeGetNumberOfTimeSamples(const VlAttributeStruct* attribute);
/** In frames; 0 when out of range. */
float vlAttributeGetSampleTime(const VlAttributeStruct* attribute, uint32_t index);

/**
 * The values of the sample nearest to a time in frames (the earlier one on a tie): borrowed, valid
 * while the attribute is referenced. `count`, which may be null, receives the number of values.
 * Null and 0 when the attribute is null or of another type.
 */
const int32_t* vlIntAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                              uint32_t* count);
const float* vlFloatAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                              uint32_t* count);
const double* vlDoubleAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                                uint32_t* count);
/** One string of that sample, borrowed, zero-terminated; null when there is none. */
const char* vlStringAttributeGetNearestValue(const VlAttributeStruct* attribute, float time,
                                             uint32_t index);

/**
 * An attribute of `count` values and one sample at time 0. `values` may be null when `count` is 0.
 * Null when the tuple size is 0 or does not divide the count.
 */
VlAttributeStruct* vlIntAttributeCreate(const int32_t* values, uint32_t count, uint32_t tupleSize);
VlAttributeStruct* vlFloatAttributeCreate(const float* values, uint32_t count, uint32_t tupleSize);
VlAttributeStruct* vlDoubleAttributeCreate(const double* values, uint32_t count,
                                           uint32_t tupleSize);
/** A null among the values counts as "". */
VlAttributeStruct* vlStringAttributeCreate(const char* const* values, uint32_t count,
                                           uint32_t tupleSize);

/**
 * An attribute of several time samples: `values` holds `sampleCount` samples of `count` values,
 * one after the other in the order of `times`. Null, besides the reasons above, when there is no
 * sample or a time is not finite or stands twice.
 */
VlAttributeStruct* vlIntAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                               const int32_t* values, uint32_t count,
                                               uint32_t tupleSize);
VlAttributeStruct* vlFloatAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                                 const float* values, uint32_t count,
                                                 uint32_t tupleSize);
VlAttributeStruct* vlDoubleAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                                  const double* values, uint32_t count,
                                                  uint32_t tupleSize);

/* Groups --------------------------------------------------------------------------------------*/

/** 0 for null and for anything but a group. */
uint32_t vlGroupAttributeGetNumberOfChildren(const VlAttributeStruct* group);
/** Dotted names lead through nested groups. Null when missing. */
VlAttributeStruct* vlGroupAttributeGetChildByName(const VlAttributeStruct* group,
                                                  const char* dottedName);
/** Null when out of range. */
VlAttributeStruct* vlGroupAttributeGetChildByIndex(const VlAttributeStruct* group, uint32_t index);
/** Zero-terminated and valid until the process ends; null when out of range. */
const char* vlGroupAttributeGetChildName(const VlAttributeStruct* group, uint32_t index);

/**
 * A group of `base`'s children (`base` may be null) with `count` children set on top, in order,
 * under dotted names; a null child removes one. Null when a name is null, empty or has an empty
 * part, or when `base` is not a group.
 */
VlAttributeStruct* vlGroupAttributeCreate(VlAttributeStruct* base, const char* const* dottedNames,
                                          VlAttributeStruct* const* children, uint32_t count);

#ifdef __cplusplus
}
#endif
