// The Mac's functions that copy a file's metadata, declared from Apple's manual pages.
#pragma once

#include <stdint.h>

#define COPYFILE_ACL (1 << 0)
#define COPYFILE_XATTR (1 << 2)

typedef struct _copyfile_state* copyfile_state_t;
typedef uint32_t copyfile_flags_t;

#ifdef __cplusplus
extern "C"
#endif
    int
    fcopyfile(int from_fd, int to_fd, copyfile_state_t, copyfile_flags_t flags);
