#pragma once

#include <functional>

namespace dunmora::test {

/// Handles the main thread's events until the condition holds.
/// Errors: std::runtime_error if it does not hold within 20 seconds.
void handleEventsUntil(const std::function<bool()>& condition);

/// Handles the pending events and those that they post.
void handleEvents();

}  // namespace dunmora::test
