#include "programs/dunmora-cli/TerminalPlatform.h"

#include "programs/dunmora-cli/CliEnvironment.h"

#include <utility>

namespace dunmora {

TerminalPlatform::TerminalPlatform(OpenedBook book, UserDefaults& userDefaults,
                                   const CliEnvironment& environment)
    : book_(std::move(book)),
      alert_(environment.in, environment.err),
      workspace_(environment.out),
      platform_{book_.addressBook.get(), userDefaults, alert_, workspace_, environment.bundle}
{
    Platform::install(platform_);
}

}  // namespace dunmora
