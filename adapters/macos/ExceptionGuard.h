#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// Runs `work(context)`. Returns the reason of an Objective-C exception as UTF-8, which the caller
/// frees, or null when nothing was thrown. Catches nothing else: no C++ exception may leave `work`.
///
/// Plain C between the languages, because the runtimes abort the process when a handler of one
/// language meets an exception of the other. The autorelease pool must enclose this call: a pool
/// inside would release the exception in flight.
/// Thread: any.
char* dunmoraRunCatching(void (*work)(void* context), void* context);

#ifdef __cplusplus
}
#endif
