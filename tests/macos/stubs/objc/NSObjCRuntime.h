// The types of the Objective-C language as Apple's runtime has them.
#pragma once

#include <stdbool.h>
#include <stddef.h>

#if defined(__LP64__) && __LP64__
typedef long NSInteger;
typedef unsigned long NSUInteger;
#else
typedef int NSInteger;
typedef unsigned int NSUInteger;
#endif

// On processors of either kind conversions to it behave so.
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no

#ifdef __cplusplus
#define nil nullptr
#else
#define nil ((void*)0)
#endif
