// The Mac's functions for extended attributes, declared from Apple's manual pages.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

ssize_t fgetxattr(int fd, const char* name, void* value, size_t size, uint32_t position,
                  int options);
ssize_t flistxattr(int fd, char* namebuf, size_t size, int options);
int fsetxattr(int fd, const char* name, const void* value, size_t size, uint32_t position,
              int options);

#ifdef __cplusplus
}
#endif
