#include "adapters/macos/AutoreleasePool.h"

#import <Foundation/Foundation.h>

namespace dunmora {

AutoreleasePool::AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}

AutoreleasePool::~AutoreleasePool() { [static_cast<NSAutoreleasePool*>(pool_) drain]; }

} // namespace dunmora
