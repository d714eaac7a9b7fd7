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
    [static_cast<NSArray*>(people_) release];
    [addressBook(book_) release];
}

std::string FrameworkBook::uid(std::size_t index) const
{
    return textOf([personIn(people_, index) valueForProperty:kABUIDProperty]).value_or("");
}

FrameworkPerson FrameworkBook::person(std::size_t index) const
{
    ABPerson* const person = personIn(people_, index);
    return {uid(index),
            textOf([person valueForProperty:kABFirstNameProperty]),
            textOf([person valueForProperty:kABLastNameProperty]),
            textOf([person valueForProperty:kABNicknameProperty]),
            timeOf([person valueForProperty:kABModificationDateProperty]),
            phonesOf([person valueForProperty:kABPhoneProperty])};
}

std::optional<std::string> FrameworkBook::vCard(std::size_t index) const
{
    NSData* const bytes = [personIn(people_, index) vCardRepresentation];
    if (bytes == nil) {
        return std::nullopt;
    }
    return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

bool FrameworkBook::removeRecord(std::size_t index)
{
    return [addressBook(book_) removeRecord:personIn(people_, index)];
}

bool FrameworkBook::save() { return [addressBook(book_) save]; }

} // namespace dunmora
