// The Mac's status of a file system, declared from Apple's manual pages.
#pragma once

struct statfs {
    char f_fstypename[16];
};

#ifdef __cplusplus
extern "C"
#endif
    int
    statfs(const char* path, struct statfs* status);
