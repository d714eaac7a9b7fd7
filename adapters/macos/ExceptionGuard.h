#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// Runs `work(context)`. What it throws in Objective-C ends here and comes back as words, UTF-8 and
/// the caller's to free; nothing thrown is none. It catches nothing else: an exception of C++ must
/// not leave `work`.
///
/// Plain C between the languages, because a handler of the one must not meet an exception of the
/// other: the runtimes end the process there. An autorelease pool stands outside of this call, or
/// it would take the exception along that is on its way through.
/// Thread: any.
char* dunmoraRunCatching(void (*work)(void* context), void* context);

#ifdef __cplusplus
}
#endif
