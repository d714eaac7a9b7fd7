#include "programs/dunmora-cli/TerminalPlatform.h"

#include "programs/dunmora-cli/CliEnvironment.h"

#include <utility>

namespace dunmora {

TerminalPlatform::TerminalPlatform(std::unique_ptr<AddressBook> addressBook,
                                   UserDefaults& userDefaults, const CliEnvironment& environment)
    : addressBook_(std::move(addressBook)),
      alert_(environment.in, environment.err),
      workspace_(environment.out),
      platform_{*addressBook_, userDefaults, alert_, workspace_, environment.bundle}
{
    Platform::install(platform_);
}

}  // namespace dunmora
