// The basic Objective-C types as Apple's runtime defines them.
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

// Conversions to BOOL behave like this on both processor families.
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no

#ifdef __cplusplus
#define nil nullptr
#else
#define nil ((void*)0)
#endif
