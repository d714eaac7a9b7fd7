#pragma once

#include <functional>
#include <string_view>

namespace dunmora {

/// Runs work that sends Objective-C messages, in its own autorelease pool. `what` is the subject of
/// the error's text.
/// Thread: any. Errors: PlatformError with the reason of an Objective-C exception; std::exceptions
/// of the work.
void callObjectiveC(std::string_view what, const std::function<void()>& work);

/// The same, on the thread of the Address Book framework. Returns when the work is done.
/// Thread: any other.
void callFramework(std::string_view what, const std::function<void()>& work);

}  // namespace dunmora
