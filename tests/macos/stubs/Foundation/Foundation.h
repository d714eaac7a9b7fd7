// The part of Apple's Foundation that adapters/macos uses, declared from Apple's public
// documentation, so that the adapter can be checked without a Mac. Never linked.
#pragma once

#include <objc/NSObjCRuntime.h>

#ifdef __cplusplus
#define FOUNDATION_EXPORT extern "C"
#else
#define FOUNDATION_EXPORT extern
#endif

#if __has_feature(objc_arc)
#error "Memory is counted by hand here."
#endif

typedef double NSTimeInterval;
typedef struct _NSZone NSZone;
typedef NSUInteger NSStringEncoding;
enum { NSUTF8StringEncoding = 4 };

@class NSDate, NSInvocation, NSMethodSignature, NSString, NSThread, NSTimer;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isEqual:(id)object;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end

@interface NSObject (NSThreadPerformAdditions)
- (void)performSelector:(SEL)aSelector
               onThread:(NSThread*)thread
             withObject:(id)arg
          waitUntilDone:(BOOL)wait;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
@property (readonly) NSUInteger length;
@property (readonly) const char* UTF8String;
- (id)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
@end

@interface NSConstantString : NSString
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
@property (readonly) NSUInteger length;
@property (readonly) const void* bytes;
@end

@interface NSArray : NSObject
@property (readonly) NSUInteger count;
- (id)objectAtIndex:(NSUInteger)index;
@end

@interface NSDictionary : NSObject
@property (readonly, copy) NSArray* allKeys;
- (id)objectForKey:(id)aKey;
@end

@interface NSMutableDictionary : NSDictionary
+ (instancetype)dictionary;
- (void)setObject:(id)anObject forKey:(id)aKey;
@end

@interface NSDate : NSObject
+ (NSDate*)distantFuture;
@property (readonly) NSTimeInterval timeIntervalSince1970;
@end

@interface NSValue : NSObject
+ (NSValue*)valueWithPointer:(const void*)pointer;
@property (readonly) void* pointerValue;
@end

@interface NSException : NSObject
@property (readonly, copy) NSString* name;
@property (readonly, copy) NSString* reason;
@end

FOUNDATION_EXPORT NSString* const NSDefaultRunLoopMode;

@interface NSRunLoop : NSObject
@property (class, readonly) NSRunLoop* currentRunLoop;
- (BOOL)runMode:(NSString*)mode beforeDate:(NSDate*)limitDate;
@end

@interface NSTimer : NSObject
+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)interval
                                    target:(id)target
                                  selector:(SEL)selector
                                  userInfo:(id)userInfo
                                   repeats:(BOOL)repeats;
@end

@interface NSThread : NSObject
@property (copy) NSString* name;
- (void)main;
- (void)start;
@end

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (id)objectForKey:(NSString*)defaultName;
- (BOOL)boolForKey:(NSString*)defaultName;
- (void)setBool:(BOOL)value forKey:(NSString*)defaultName;
- (void)setObject:(id)value forKey:(NSString*)defaultName;
- (BOOL)synchronize;
@end
