#include "adapters/macos/StandardDefaults.h"

#import <Foundation/Foundation.h>

namespace dunmora {

namespace {

NSString* stringOf(std::string_view text)
{
    return [[[NSString alloc] initWithBytes:text.data()
                                     length:text.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

/// The text of a string in UTF-8; empty for anything else.
std::string textOf(id value)
{
    const char* const text = [value isKindOfClass:[NSString class]] ? [value UTF8String] : nullptr;
    return text != nullptr ? text : "";
}

} // namespace

bool hasStandardDefault(std::string_view key)
{
    NSString* const name = stringOf(key);
    return name != nil && [[NSUserDefaults standardUserDefaults] objectForKey:name] != nil;
}

bool boolOfStandardDefault(std::string_view key)
{
    NSString* const name = stringOf(key);
    return name != nil && [[NSUserDefaults standardUserDefaults] boolForKey:name];
}

void setStandardDefault(std::string_view key, bool value)
{
    NSString* const name = stringOf(key);
    if (name != nil) {
        [[NSUserDefaults standardUserDefaults] setBool:value forKey:name];
    }
}

StandardTexts textsOfStandardDefault(std::string_view key)
{
    StandardTexts texts;
    NSString* const name = stringOf(key);
    id const value = name != nil ? [[NSUserDefaults standardUserDefaults] objectForKey:name] : nil;
    if ([value isKindOfClass:[NSDictionary class]]) {
        NSArray* const keys = [value allKeys];
        for (NSUInteger i = 0; i < [keys count]; ++i) {
            id const textKey = [keys objectAtIndex:i];
            texts.insert_or_assign(textOf(textKey), textOf([value objectForKey:textKey]));
        }
    }
    return texts;
}

void setStandardDefault(std::string_view key, const StandardTexts& texts)
{
    NSString* const name = stringOf(key);
    NSMutableDictionary* const value = [NSMutableDictionary dictionary];
    for (const auto& [textKey, text] : texts) {
        NSString* const textName = stringOf(textKey);
        NSString* const string = stringOf(text);
        if (textName != nil && string != nil) {
            [value setObject:string forKey:textName];
        }
    }
    if (name != nil) {
        [[NSUserDefaults standardUserDefaults] setObject:value forKey:name];
    }
}

bool synchronizeStandardDefaults() { return [[NSUserDefaults standardUserDefaults] synchronize]; }

} // namespace dunmora
