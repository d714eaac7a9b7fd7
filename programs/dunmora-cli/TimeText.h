#pragma once

#include <chrono>
#include <string>

namespace dunmora {

/// Appends the time as RFC 3339 writes it in UTC: "2024-05-01T10:00:00Z".
void appendUtcTime(std::string& out, std::chrono::sys_seconds time);

/// Appends the time to the minute in the user's time zone: "2024-05-01 12:00".
void appendLocalTime(std::string& out, std::chrono::sys_seconds time);

}  // namespace dunmora
