#include "adapters/macos/FrameworkBook.h"

#include <string_view>
#include <utility>

#import <AddressBook/AddressBook.h>
#import <Foundation/Foundation.h>

namespace dunmora {

namespace {

/// The text as UTF-8; empty when it is missing or not a text. A lone surrogate, which has no UTF-8
/// form, is replaced; the rest of the text is kept.
std::optional<std::string> textOf(id value)
{
    if (![value isKindOfClass:[NSString class]]) {
        return std::nullopt;
    }
    NSData* const bytes = [static_cast<NSString*>(value) dataUsingEncoding:NSUTF8StringEncoding
                                                      allowLossyConversion:YES];
    if (bytes == nil) {
        return std::nullopt;
    }
    return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

std::optional<std::vector<FrameworkPerson::Phone>> phonesOf(id value)
{
    if (![value isKindOfClass:[ABMultiValue class]]) {
        return std::nullopt;
    }
    ABMultiValue* const list = static_cast<ABMultiValue*>(value);
    std::vector<FrameworkPerson::Phone> phones;
    for (NSUInteger i = 0; i < [list count]; ++i) {
        if (auto number = textOf([list valueAtIndex:i])) {
            phones.push_back({textOf([list labelAtIndex:i]), std::move(*number)});
        }
    }
    return phones;
}

std::optional<std::chrono::duration<double>> timeOf(id value)
{
    if (![value isKindOfClass:[NSDate class]]) {
        return std::nullopt;
    }
    return std::chrono::duration<double>([static_cast<NSDate*>(value) timeIntervalSince1970]);
}

ABPerson* personIn(void* people, std::size_t index)
{
    return [static_cast<NSArray*>(people) objectAtIndex:index];
}

FrameworkPerson copyOf(ABPerson* person)
{
    return {textOf([person valueForProperty:kABUIDProperty]).value_or(""),
            textOf([person valueForProperty:kABFirstNameProperty]),
            textOf([person valueForProperty:kABLastNameProperty]),
            textOf([person valueForProperty:kABNicknameProperty]),
            timeOf([person valueForProperty:kABModificationDateProperty]),
            phonesOf([person valueForProperty:kABPhoneProperty])};
}

std::optional<std::string> vCardOf(ABPerson* person)
{
    NSData* const bytes = [person vCardRepresentation];
    if (bytes == nil) {
        return std::nullopt;
    }
    return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

std::vector<std::string> groupsOf(ABPerson* person)
{
    std::vector<std::string> names;
    NSArray* const groups = [person parentGroups];
    for (NSUInteger i = 0; i < [groups count]; ++i) {
        ABRecord* const group = [groups objectAtIndex:i];
        if (auto name = textOf([group valueForProperty:kABGroupNameProperty])) {
            names.push_back(std::move(*name));
        }
    }
    return names;
}

ABAddressBook* addressBook(void* book) { return static_cast<ABAddressBook*>(book); }

} // namespace

FrameworkBook::FrameworkBook()
{
    ABAddressBook* const book = [ABAddressBook sharedAddressBook];
    NSArray* const people = [book people];
    size_ = [people count];
    book_ = [book retain];
    people_ = [people retain];
}

FrameworkBook::~FrameworkBook()
{
    for (void* const person : added_) {
        [static_cast<ABPerson*>(person) release];
    }
    [static_cast<NSArray*>(people_) release];
    [addressBook(book_) release];
}

std::string FrameworkBook::uid(std::size_t index) const
{
    return textOf([personIn(people_, index) valueForProperty:kABUIDProperty]).value_or("");
}

FrameworkPerson FrameworkBook::person(std::size_t index) const
{
    return copyOf(personIn(people_, index));
}

std::optional<std::string> FrameworkBook::vCard(std::size_t index) const
{
    return vCardOf(personIn(people_, index));
}

std::vector<std::string> FrameworkBook::groups(std::size_t index) const
{
    return groupsOf(personIn(people_, index));
}

std::optional<FrameworkCard> FrameworkBook::card(const std::string& uid)
{
    NSString* const identifier = [NSString stringWithUTF8String:uid.c_str()];
    if (identifier == nil) {
        return std::nullopt;
    }
    ABRecord* const record = [[ABAddressBook sharedAddressBook] recordForUniqueId:identifier];
    if (![record isKindOfClass:[ABPerson class]]) {
        return std::nullopt;
    }
    // Kept until the pool drains: the book may release its own reference meanwhile.
    ABPerson* const person = [[static_cast<ABPerson*>(record) retain] autorelease];
    return FrameworkCard{copyOf(person), vCardOf(person), groupsOf(person)};
}

bool FrameworkBook::removeRecord(std::size_t index)
{
    return [addressBook(book_) removeRecord:personIn(people_, index)];
}

std::optional<FrameworkCard> FrameworkBook::add(const std::string& vCard)
{
    NSData* const bytes = [NSData dataWithBytes:vCard.data() length:vCard.size()];
    ABPerson* const person = [[[ABPerson alloc] initWithVCardRepresentation:bytes] autorelease];
    if (person == nil) {
        return std::nullopt;
    }
    // Before the framework has the person, so that nobody in it is forgotten.
    added_.push_back([person retain]);
    if (![addressBook(book_) addRecord:person]) {
        [static_cast<ABPerson*>(added_.back()) release];
        added_.pop_back();
        return std::nullopt;
    }
    return FrameworkCard{copyOf(person), vCardOf(person), {}};
}

bool FrameworkBook::removeAdded()
{
    bool isDone = true;
    for (void* const person : added_) {
        isDone = [addressBook(book_) removeRecord:static_cast<ABPerson*>(person)] && isDone;
    }
    return isDone;
}

bool FrameworkBook::save() { return [addressBook(book_) save]; }

} // namespace dunmora
