#pragma once

#include <functional>

namespace dunmora::test {

/// Handles the main thread's events until the condition holds. Errors: std::runtime_error when it
/// has not come true after a time that is long for anything that a test waits for.
void handleEventsUntil(const std::function<bool()>& condition);

/// Handles the events that are there now, and those that they bring.
void handleEvents();

}  // namespace dunmora::test
