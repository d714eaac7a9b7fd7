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

bool synchronizeStandardDefaults() { return [[NSUserDefaults standardUserDefaults] synchronize]; }

} // namespace dunmora
