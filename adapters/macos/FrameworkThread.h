#pragma once

namespace dunmora {

/// Calls `work(context)` on the process's one thread for the Address Book framework, and waits
/// until it returns. The process has one address book object, which belongs to the thread that
/// created it, but each job has its own thread. Thread: any other, within an autorelease pool.
/// Errors: an Objective-C exception when the thread cannot be created; `work` throws nothing.
void performOnFrameworkThread(void (*work)(void* context), void* context);

}  // namespace dunmora
