#import "adapters/macos/ExceptionGuard.h"

#import <Foundation/Foundation.h>

#include <string.h>

static char* wordsOf(id exception)
{
    NSString* words = nil;
    if ([exception isKindOfClass:[NSException class]]) {
        words = [[exception reason] length] > 0 ? [exception reason] : [exception name];
    }
    const char* text = [words length] > 0 ? [words UTF8String] : NULL;
    return strdup(text != NULL ? text : "an unknown failure");
}

char* dunmoraRunCatching(void (*work)(void* context), void* context)
{
    @try {
        work(context);
    } @catch (id exception) {
        return wordsOf(exception);
    }
    return NULL;
}
