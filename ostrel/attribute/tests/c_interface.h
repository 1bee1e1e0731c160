#pragma once

/* Checks written in C: each answers null when it holds, else the condition that did not. */

#ifdef __cplusplus
extern "C" {
#endif

const char* checkNumbersInC(void);
const char* checkStringsInC(void);
const char* checkGroupsInC(void);
const char* checkNullInC(void);

#ifdef __cplusplus
}
#endif
