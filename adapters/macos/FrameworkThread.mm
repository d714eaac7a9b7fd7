#include "adapters/macos/FrameworkThread.h"

#include <future>

#import <Foundation/Foundation.h>

namespace {

struct Call {
    void (*work)(void* context);
    void* context;
};

} // namespace

/// Waits in its run loop, so that the framework receives the changes of other programs.
@interface DunmoraFrameworkThread : NSThread {
    std::promise<void>* isWaiting_;
}
- (instancetype)initWithPromise:(std::promise<void>*)isWaiting;
- (void)perform:(NSValue*)call;
- (void)stayAwake:(NSTimer*)timer;
@end

@implementation DunmoraFrameworkThread

- (instancetype)initWithPromise:(std::promise<void>*)isWaiting
{
    self = [super init];
    if (self != nil) {
        isWaiting_ = isWaiting;
    }
    return self;
}

- (void)main
{
    NSAutoreleasePool* outer = [[NSAutoreleasePool alloc] init];
    NSRunLoop* loop = [NSRunLoop currentRunLoop];
    // A run loop without a source returns at once.
    const NSTimeInterval aDay = 86400;
    [NSTimer scheduledTimerWithTimeInterval:aDay
                                     target:self
                                   selector:@selector(stayAwake:)
                                   userInfo:nil
                                    repeats:YES];
    isWaiting_->set_value();
    for (;;) {
        NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
        [loop runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantFuture]];
        [pool drain];
    }
    [outer drain];
}

- (void)perform:(NSValue*)call
{
    const Call* const wanted = static_cast<const Call*>([call pointerValue]);
    wanted->work(wanted->context);
}

- (void)stayAwake:(NSTimer*)timer
{
    static_cast<void>(timer);
}

@end

namespace dunmora {

namespace {

DunmoraFrameworkThread* startedThread()
{
    static std::promise<void> isWaiting;
    DunmoraFrameworkThread* const thread =
        [[DunmoraFrameworkThread alloc] initWithPromise:&isWaiting];
    [thread setName:@"AddressBook"];
    [thread start];
    // A message to a thread without a run loop may never arrive.
    isWaiting.get_future().wait();
    return thread;
}

} // namespace

void performOnFrameworkThread(void (*work)(void* context), void* context)
{
    static DunmoraFrameworkThread* const thread = startedThread();
    Call call = {work, context};
    [thread performSelector:@selector(perform:)
                   onThread:thread
                 withObject:[NSValue valueWithPointer:&call]
              waitUntilDone:YES];
}

} // namespace dunmora
