/* The interface as a plug-in in C uses it: compiled as C99. Each check answers null when it holds,
 * else what did not. */
#include "c_interface.h"

#include "VlAttribute/VlAttributeC.h"

#include <stddef.h>
#include <string.h>

#define REQUIRE(condition)                                                                         \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            return #condition;                                                                     \
        }                                                                                          \
    } while (0)

const char* checkNumbersInC(void) {
    const int32_t values[] = {1, 2, 3, 4};
    const float times[] = {10.0F, 0.0F};
    uint32_t count = 77;
    VlAttributeStruct* plain = vlIntAttributeCreate(values, 4, 2);
    VlAttributeStruct* sampled = vlIntAttributeCreateSampled(times, 2, values, 2, 1);
    REQUIRE(plain && sampled);
    REQUIRE(vlAttributeGetType(plain) == kVlAttributeInt);
    REQUIRE(vlAttributeGetNumberOfValues(plain) == 4);
    REQUIRE(vlAttributeGetTupleSize(plain) == 2);
    REQUIRE(vlAttributeGetNumberOfTimeSamples(plain) == 1);
    REQUIRE(vlIntAttributeGetNearestSample(plain, 0.0F, &count)[3] == 4 && count == 4);
    REQUIRE(vlFloatAttributeGetNearestSample(plain, 0.0F, &count) == NULL && count == 0);
    REQUIRE(vlDoubleAttributeGetNearestSample(plain, 0.0F, NULL) == NULL);
    REQUIRE(vlAttributeGetNumberOfTimeSamples(sampled) == 2);
    REQUIRE(vlAttributeGetSampleTime(sampled, 0) == 0.0F);
    REQUIRE(vlAttributeGetSampleTime(sampled, 1) == 10.0F);
    REQUIRE(vlAttributeGetSampleTime(sampled, 2) == 0.0F);
    REQUIRE(vlIntAttributeGetNearestSample(sampled, 0.0F, NULL)[0] == 3);
    REQUIRE(vlIntAttributeGetNearestSample(sampled, 9.0F, NULL)[1] == 2);
    REQUIRE(vlIntAttributeCreate(values, 3, 2) == NULL);
    REQUIRE(vlIntAttributeCreate(values, 3, 0) == NULL);
    REQUIRE(vlIntAttributeCreateSampled(times, 0, values, 2, 1) == NULL);
    vlAttributeRelease(sampled);
    vlAttributeRelease(plain);

    {
        const float singles[] = {1.5F};
        const double doubles[] = {2.5, 3.5};
        VlAttributeStruct* a = vlFloatAttributeCreate(singles, 1, 1);
        VlAttributeStruct* b = vlDoubleAttributeCreate(doubles, 2, 1);
        VlAttributeStruct* c = vlDoubleAttributeCreateSampled(times, 2, doubles, 1, 1);
        VlAttributeStruct* d = vlFloatAttributeCreateSampled(times, 1, singles, 1, 1);
        VlAttributeStruct* e = vlFloatAttributeCreate(NULL, 0, 3);
        REQUIRE(vlFloatAttributeGetNearestSample(a, 0.0F, NULL)[0] == 1.5F);
        REQUIRE(vlDoubleAttributeGetNearestSample(b, 0.0F, &count)[1] == 3.5 && count == 2);
        REQUIRE(vlDoubleAttributeGetNearestSample(c, 0.0F, NULL)[0] == 3.5);
        REQUIRE(vlAttributeGetSampleTime(d, 0) == 10.0F);
        REQUIRE(vlAttributeGetNumberOfValues(e) == 0 && vlAttributeGetTupleSize(e) == 3);
        vlAttributeRelease(a);
        vlAttributeRelease(b);
        vlAttributeRelease(c);
        vlAttributeRelease(d);
        vlAttributeRelease(e);
    }
    return NULL;
}

const char* checkStringsInC(void) {
    const char* texts[] = {"first", NULL};
    VlAttributeStruct* attribute = vlStringAttributeCreate(texts, 2, 1);
    REQUIRE(vlAttributeGetType(attribute) == kVlAttributeString);
    REQUIRE(strcmp(vlStringAttributeGetNearestValue(attribute, 0.0F, 0), "first") == 0);
    REQUIRE(strcmp(vlStringAttributeGetNearestValue(attribute, 0.0F, 1), "") == 0);
    REQUIRE(vlStringAttributeGetNearestValue(attribute, 0.0F, 2) == NULL);
    REQUIRE(vlStringAttributeGetNearestValue(NULL, 0.0F, 0) == NULL);
    vlAttributeRelease(attribute);
    return NULL;
}

const char* checkGroupsInC(void) {
    const int32_t value = 5;
    const char* names[] = {"a.b", "c"};
    const char* emptyName[] = {""};
    const char* nullName[] = {NULL};
    VlAttributeStruct* number = vlIntAttributeCreate(&value, 1, 1);
    VlAttributeStruct* children[2];
    VlAttributeStruct *group, *smaller, *child;
    children[0] = number;
    children[1] = number;
    group = vlGroupAttributeCreate(NULL, names, children, 2);
    REQUIRE(vlAttributeGetType(group) == kVlAttributeGroup);
    REQUIRE(vlGroupAttributeGetNumberOfChildren(group) == 2);
    REQUIRE(strcmp(vlGroupAttributeGetChildName(group, 1), "c") == 0);
    REQUIRE(vlGroupAttributeGetChildName(group, 2) == NULL);
    child = vlGroupAttributeGetChildByName(group, "a.b");
    REQUIRE(child == number);
    vlAttributeRelease(child);
    child = vlGroupAttributeGetChildByIndex(group, 1);
    REQUIRE(child == number);
    vlAttributeRelease(child);
    REQUIRE(vlGroupAttributeGetChildByName(group, "a.c") == NULL);
    REQUIRE(vlGroupAttributeGetChildByName(group, NULL) == NULL);
    REQUIRE(vlGroupAttributeGetChildByName(number, "a") == NULL);
    REQUIRE(vlGroupAttributeGetChildByIndex(group, 2) == NULL);

    children[0] = NULL;
    smaller = vlGroupAttributeCreate(group, &names[1], children, 1);
    REQUIRE(vlGroupAttributeGetNumberOfChildren(smaller) == 1);
    REQUIRE(!vlAttributeEquals(group, smaller));
    REQUIRE(vlGroupAttributeCreate(number, names, children, 0) == NULL);
    children[0] = number;
    REQUIRE(vlGroupAttributeCreate(NULL, emptyName, children, 1) == NULL);
    REQUIRE(vlGroupAttributeCreate(NULL, nullName, children, 1) == NULL);
    vlAttributeRelease(smaller);
    vlAttributeRelease(group);
    vlAttributeRelease(number);
    return NULL;
}

const char* checkNullInC(void) {
    uint64_t first = 1, second = 1;
    vlAttributeRelease(NULL);
    REQUIRE(vlAttributeRetain(NULL) == NULL);
    REQUIRE(vlAttributeGetType(NULL) == kVlAttributeNone);
    REQUIRE(vlAttributeGetNumberOfValues(NULL) == 0);
    REQUIRE(vlAttributeGetTupleSize(NULL) == 0);
    REQUIRE(vlAttributeGetNumberOfTimeSamples(NULL) == 0);
    REQUIRE(vlGroupAttributeGetNumberOfChildren(NULL) == 0);
    REQUIRE(vlGroupAttributeGetChildByIndex(NULL, 0) == NULL);
    REQUIRE(vlAttributeEquals(NULL, NULL));
    vlAttributeGetHash(NULL, &first, &second);
    REQUIRE(first == 0 && second == 0);
    return NULL;
}
