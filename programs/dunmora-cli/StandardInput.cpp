#include "programs/dunmora-cli/StandardInput.h"

#include "adapters/posix/StreamContent.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/Report.h"

namespace dunmora {

std::string shownBookName(const std::string& addressBook)
{
    return addressBook == kStandardInput ? kStandardInputName : addressBook;
}

OpenedBook openForReading(const BookRequest& request, const CliEnvironment& environment)
{
    if (request.addressBook != kStandardInput) {
        return environment.openAddressBook(request.addressBook);
    }
    reportExpectedInput("vCards", request.quiet, environment);
    return environment.openStandardInput();
}

void reportExpectedInput(std::string_view what, bool quiet, const CliEnvironment& environment)
{
    if (environment.inIsTerminal && !quiet) {
        report(environment, "Type or paste " + std::string(what) +
                                ", then press Enter and Ctrl+D. Ctrl+C cancels.");
    }
}

}  // namespace dunmora
