// This system's header, with the Mac's additions.
#pragma once

#include_next <stdio.h>

#define RENAME_SWAP 0x00000002
#define RENAME_EXCL 0x00000004

#ifdef __cplusplus
extern "C"
#endif
    int
    renamex_np(const char* from, const char* to, unsigned flags);
