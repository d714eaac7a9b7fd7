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
        return "There is not enough memory to go on.";
    } catch (const std::exception& error) {
        return "Something went wrong that should not have: " + std::string(error.what());
    } catch (...) {
        return "Something went wrong that should not have.";
    }
}

}  // namespace dunmora
