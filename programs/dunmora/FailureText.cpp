#include "programs/dunmora/FailureText.h"

#include "platform/Alert.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "review/ReviewTexts.h"

#include <new>
#include <optional>

namespace dunmora {

std::string failureText(const std::exception_ptr& failure, std::string_view book)
{
    try {
        std::rethrow_exception(failure);
    } catch (const PlatformError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return notEnoughMemoryText(book);
    } catch (const std::exception& error) {
        return "An unexpected error occurred: " + std::string(error.what());
    } catch (...) {
        return "An unexpected error occurred.";
    }
}

void showFailure(const std::string& text)
{
    Platform::current().alert.runModal(
        {text, "", "OK", std::nullopt, std::nullopt, AlertStyle::Failure});
}

}  // namespace dunmora
