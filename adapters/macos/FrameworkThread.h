#pragma once

namespace dunmora {

/// Calls `work(context)` on the one thread of this process that talks to the Address Book
/// framework, and waits for its end. An address book object belongs to the thread that made it, and
/// the process has one such object; the jobs that want it have a thread each.
/// Thread: any other, within an autorelease pool. Errors: an exception of Objective-C when there
/// can be no such thread; `work` throws nothing.
void performOnFrameworkThread(void (*work)(void* context), void* context);

}  // namespace dunmora
