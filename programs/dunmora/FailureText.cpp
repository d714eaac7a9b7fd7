#include "programs/dunmora/FailureText.h"

#include "platform/PlatformError.h"

#include <exception>
#include <new>

namespace dunmora {

std::string failureText()
{
    try {
        throw;
    } catch (const PlatformError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return "There is not enough memory. Close other programs and try again.";
    } catch (const std::exception& error) {
        return "An unexpected error occurred: " + std::string(error.what());
    } catch (...) {
        return "An unexpected error occurred.";
    }
}

}  // namespace dunmora
