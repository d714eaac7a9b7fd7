#include "tests/adapters/macos/AddressesBook.h"

#include <stdexcept>

#import <AddressBook/AddressBook.h>
#import <Addresses/ADLocalAddressBook.h>
#import <Addresses/ADRecord.h>
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

using dunmora::test::AddressesBook;
using dunmora::test::Fault;

namespace {

NSString* stringOf(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

std::string textOf(NSString* string) { return [string UTF8String]; }

/// Raises an exception if that is the fault; returns whether the caller has to refuse.
bool isRefused(Fault fault)
{
    if (fault == Fault::Raise) {
        [NSException raise:NSInternalInconsistencyException format:@"The database is damaged.\n"];
    }
    return fault == Fault::Refuse;
}

} // namespace

@interface DunmoraTestBook : ADLocalAddressBook {
    AddressesBook::State* state_;
}
- (void)setState:(AddressesBook::State*)state;
@end

@implementation DunmoraTestBook

- (void)setState:(AddressesBook::State*)state
{
    state_ = state;
}

/// Addresses lists people in the order of the folder, which depends on the file system.
- (NSArray*)people
{
    if (isRefused(state_->people)) {
        return nil;
    }
    NSMutableArray* rest = [NSMutableArray arrayWithArray:[super people]];
    NSMutableArray* ordered = [NSMutableArray array];
    for (const auto& uid : state_->order) {
        for (NSUInteger i = 0; i < [rest count]; ++i) {
            if (textOf([[rest objectAtIndex:i] uniqueId]) == uid) {
                [ordered addObject:[rest objectAtIndex:i]];
                [rest removeObjectAtIndex:i];
                break;
            }
        }
    }
    [ordered addObjectsFromArray:rest];
    return ordered;
}

- (BOOL)removeRecord:(ADRecord*)record
{
    if (state_->remove != Fault::None && state_->removalsBefore-- == 0) {
        if (isRefused(state_->remove)) {
            return NO;
        }
    }
    return [super removeRecord:record];
}

- (BOOL)save
{
    return isRefused(state_->save) ? NO : [super save];
}

@end

namespace {

AddressesBook::State* sharedState = nullptr;
DunmoraTestBook* sharedBook = nil;
IMP ownSharedAddressBook = nullptr;
IMP ownRepresentation = nullptr;

id sharedAddressBook(id self, SEL command)
{
    if (sharedState == nullptr) {
        using Getter = id (*)(id, SEL);
        return reinterpret_cast<Getter>(ownSharedAddressBook)(self, command);
    }
    return sharedState->isMissing ? nil : sharedBook;
}

/// Addresses releases a record, which it does not own, before it writes the record's vCard.
id representation(id self, SEL command, NSString* type)
{
    using Writer = id (*)(id, SEL, NSString*);
    return reinterpret_cast<Writer>(ownRepresentation)([self retain], command, type);
}

id localCenter(id /*self*/, SEL /*command*/) { return [NSNotificationCenter defaultCenter]; }

IMP replaceMethod(Class owner, SEL name, IMP implementation)
{
    return method_setImplementation(class_getInstanceMethod(owner, name), implementation);
}

IMP replaceClassMethod(Class owner, SEL name, IMP implementation)
{
    return method_setImplementation(class_getClassMethod(owner, name), implementation);
}

} // namespace

namespace dunmora::test {

AddressesBook::AddressesBook()
{
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    DunmoraTestBook* const book =
        [[DunmoraTestBook alloc] initWithLocation:stringOf(folder_.path().string())];
    [book setState:state_.get()];
    book_ = book;
    sharedBook = book;
    sharedState = state_.get();
    [pool drain];
}

AddressesBook::~AddressesBook()
{
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    sharedState = nullptr;
    sharedBook = nil;
    [static_cast<DunmoraTestBook*>(book_) release];
    [pool drain];
}

void AddressesBook::rename(const std::string& uid, const std::string& firstName)
{
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    ADRecord* const record = [static_cast<DunmoraTestBook*>(book_) recordForUniqueId:stringOf(uid)];
    [record setValue:stringOf(firstName) forProperty:kABFirstNameProperty];
    [pool drain];
}

void keepFrameworkPrivate(const std::filesystem::path& folder)
{
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    [ADLocalAddressBook setDefaultLocation:stringOf(folder.string())];
    replaceClassMethod([NSDistributedNotificationCenter class], @selector(defaultCenter),
                       reinterpret_cast<IMP>(localCenter));
    ownSharedAddressBook = replaceClassMethod([ADAddressBook class], @selector(sharedAddressBook),
                                              reinterpret_cast<IMP>(sharedAddressBook));
    ownRepresentation = replaceMethod([ADRecord class], @selector(representationWithType:),
                                      reinterpret_cast<IMP>(representation));
    [pool drain];
}

void raiseInObjectiveC(const std::string& reason)
{
    [NSException raise:NSGenericException format:@"%@", stringOf(reason)];
}

} // namespace dunmora::test
