#include "tests/adapters/macos/AddressesBook.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/fakes/FakeCard.h"

#import <AddressBook/AddressBook.h>
#import <Addresses/ADLocalAddressBook.h>
#import <Addresses/ADPerson.h>
#import <Addresses/ADRecord.h>
#import <Foundation/Foundation.h>
#import <objc/runtime.h>

using dunmora::test::AddressesBook;
using dunmora::test::cardOf;
using dunmora::test::FakePerson;
using dunmora::test::Fault;
using dunmora::test::peopleOf;

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

/// What Addresses does not declare.
@interface ADLocalAddressBook (DunmoraTestBook)
- (NSString*)_nextValidID;
@end

@interface DunmoraTestBook : ADLocalAddressBook {
    AddressesBook::State* state_;
    NSString* nextUid_;
}
- (void)setState:(AddressesBook::State*)state;
- (void)forget:(NSString*)uid;
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

- (void)forget:(NSString*)uid
{
    [_cache removeObjectForKey:uid];
}

- (NSString*)_nextValidID
{
    return nextUid_ != nil ? nextUid_ : [super _nextValidID];
}

- (BOOL)addRecord:(ADRecord*)record
{
    if (state_->add != Fault::None && state_->additionsBefore-- == 0) {
        if (isRefused(state_->add)) {
            return NO;
        }
    }
    NSString* const firstName = [record valueForProperty:kABFirstNameProperty];
    nextUid_ = state_->uidOfAdded != nullptr && firstName != nil
                   ? stringOf(state_->uidOfAdded(textOf(firstName)))
                   : nil;
    const BOOL isAdded = [super addRecord:record];
    nextUid_ = nil;
    if (isAdded) {
        // Addresses never gives a uid again, so it would show and delete who had it before.
        [_cache removeObjectForKey:[record uniqueId]];
        [_deleted removeObjectForKey:[record uniqueId]];
        std::erase(state_->order, textOf([record uniqueId]));
        state_->order.push_back(textOf([record uniqueId]));
    }
    return isAdded;
}

/// Addresses returns itself in place of each group.
- (NSArray*)groupsContainingRecord:(ADRecord*)record
{
    NSMutableArray* const found = [NSMutableArray array];
    NSArray* const groups = [self groups];
    for (NSUInteger i = 0; i < [groups count]; ++i) {
        if ([[[groups objectAtIndex:i] valueForProperty:@"Members"]
                containsObject:[record uniqueId]]) {
            [found addObject:[groups objectAtIndex:i]];
        }
    }
    return found;
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
IMP ownVCard = nullptr;
IMP ownInitWithVCard = nullptr;

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

std::optional<std::string> textIn(ADRecord* record, NSString* property)
{
    NSString* const text = [record valueForProperty:property];
    return text != nil ? std::optional<std::string>(textOf(text)) : std::nullopt;
}

FakePerson personOf(ADRecord* record)
{
    FakePerson person{textOf([record uniqueId]),
                      textIn(record, kABFirstNameProperty),
                      textIn(record, kABLastNameProperty),
                      textIn(record, kABNicknameProperty),
                      {},
                      {}};
    ABMultiValue* const phones = [record valueForProperty:kABPhoneProperty];
    if ([phones count] > 0) {
        person.phones.emplace();
    }
    for (NSUInteger i = 0; i < [phones count]; ++i) {
        person.phones->push_back(
            {textOf([phones labelAtIndex:i]), textOf([phones valueAtIndex:i])});
    }
    return person;
}

id vCardRepresentation(id self, SEL command)
{
    if (sharedState == nullptr || !sharedState->hasWholeCards) {
        using Getter = id (*)(id, SEL);
        return reinterpret_cast<Getter>(ownVCard)(self, command);
    }
    const auto card = cardOf(personOf(self));
    return [NSData dataWithBytes:card.data() length:card.size()];
}

id initWithVCardRepresentation(id self, SEL command, NSData* card)
{
    if (sharedState == nullptr || !sharedState->hasWholeCards) {
        using Reader = id (*)(id, SEL, NSData*);
        return reinterpret_cast<Reader>(ownInitWithVCard)(self, command, card);
    }
    const auto person = peopleOf({static_cast<const char*>([card bytes]), [card length]}).front();
    ADRecord* const record = [self init];
    [record setValue:stringOf(person.firstName.value_or("")) forProperty:kABFirstNameProperty];
    [record setValue:stringOf(person.lastName.value_or("")) forProperty:kABLastNameProperty];
    [record setValue:stringOf(person.nickname.value_or("")) forProperty:kABNicknameProperty];
    ABMutableMultiValue* const phones =
        [[[ABMutableMultiValue alloc] initWithType:kABMultiStringProperty] autorelease];
    for (const auto& phone : person.phones.value_or(std::vector<FakePerson::Phone>())) {
        [phones addValue:stringOf(phone.value) withLabel:stringOf(phone.label.value_or(""))];
    }
    [record setValue:phones forProperty:kABPhoneProperty];
    return record;
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

void AddressesBook::forget(const std::string& uid)
{
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    [static_cast<DunmoraTestBook*>(book_) forget:stringOf(uid)];
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
    ownVCard = replaceMethod([ADPerson class], @selector(vCardRepresentation),
                             reinterpret_cast<IMP>(vCardRepresentation));
    ownInitWithVCard = replaceMethod([ADPerson class], @selector(initWithVCardRepresentation:),
                                     reinterpret_cast<IMP>(initWithVCardRepresentation));
    [pool drain];
}

void raiseInObjectiveC(const std::string& reason)
{
    [NSException raise:NSGenericException format:@"%@", stringOf(reason)];
}

} // namespace dunmora::test
