#pragma once

#include <functional>
#include <string_view>

namespace dunmora {

/// Runs work that sends messages of Objective-C, in an autorelease pool of its own. `what` names in
/// a failure's text what has failed.
/// Thread: any. Errors: PlatformError with the words of what Objective-C threw; what the work
/// throws, which is a std::exception.
void callObjectiveC(std::string_view what, const std::function<void()>& work);

/// The same on the thread of the Address Book framework; returns when the work has ended.
/// Thread: any but that one.
void callFramework(std::string_view what, const std::function<void()>& work);

}  // namespace dunmora
