// The part of Apple's Address Book framework that adapters/macos uses, declared from Apple's public
// documentation, so that the adapter can be checked without a Mac.
#pragma once

#include <Foundation/Foundation.h>

FOUNDATION_EXPORT NSString* const kABUIDProperty;
FOUNDATION_EXPORT NSString* const kABFirstNameProperty;
FOUNDATION_EXPORT NSString* const kABLastNameProperty;
FOUNDATION_EXPORT NSString* const kABNicknameProperty;
FOUNDATION_EXPORT NSString* const kABModificationDateProperty;
FOUNDATION_EXPORT NSString* const kABPhoneProperty;
FOUNDATION_EXPORT NSString* const kABGroupNameProperty;

@interface ABRecord : NSObject
- (id)valueForProperty:(NSString*)property;
@end

@interface ABPerson : ABRecord
- (instancetype)initWithVCardRepresentation:(NSData*)vCardData;
- (NSData*)vCardRepresentation;
- (NSArray*)parentGroups;
@end

@interface ABMultiValue : NSObject
- (NSUInteger)count;
- (id)valueAtIndex:(NSUInteger)index;
- (NSString*)labelAtIndex:(NSUInteger)index;
@end

@interface ABAddressBook : NSObject
+ (ABAddressBook*)sharedAddressBook;
- (NSArray*)people;
- (ABRecord*)recordForUniqueId:(NSString*)uniqueId;
- (BOOL)addRecord:(ABRecord*)record;
- (BOOL)removeRecord:(ABRecord*)record;
- (BOOL)save;
@end
