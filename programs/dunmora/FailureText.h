#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace dunmora {

/// Describes a failure for the user: the text of a `PlatformError` as it is, or a general message
/// that contains the text of any other exception. A lack of memory is blamed on the address book
/// that was worked on.
/// Thread: any.
std::string failureText(const std::exception_ptr& failure, std::string_view book);

/// Shows this text as a failure and waits for the user's OK. Thread: any.
void showFailure(const std::string& text);

}  // namespace dunmora
