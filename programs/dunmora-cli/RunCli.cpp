#include "programs/dunmora-cli/RunCli.h"

#include "platform/Bundle.h"
#include "programs/dunmora-cli/BooksCommand.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/DeleteCommand.h"
#include "programs/dunmora-cli/FieldsCommand.h"
#include "programs/dunmora-cli/ListCommand.h"
#include "programs/dunmora-cli/MemoryError.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/RestoreCommand.h"
#include "programs/dunmora-cli/ShowCommand.h"
#include "programs/dunmora-cli/StandardInput.h"

#include <exception>
#include <ostream>
#include <variant>

namespace dunmora {

namespace {

/// Runs whichever command the request is.
struct Runner {
    const CliEnvironment& environment;

    ExitCode operator()(const ListRequest& request) const
    {
        return namingBookInMemoryErrors(shownBookName(request.book.addressBook),
                                        [&] { return listDuplicates(request, environment); });
    }
    ExitCode operator()(const DeleteRequest& request) const
    {
        return namingBookInMemoryErrors(request.book.addressBook,
                                        [&] { return deletePeople(request, environment); });
    }
    ExitCode operator()(const RestoreRequest& request) const
    {
        return namingBookInMemoryErrors(request.addressBook,
                                        [&] { return restorePeople(request, environment); });
    }
    ExitCode operator()(const ShowRequest& request) const
    {
        return namingBookInMemoryErrors(shownBookName(request.book.addressBook),
                                        [&] { return showCards(request, environment); });
    }
    ExitCode operator()(const DiffRequest& request) const
    {
        return namingBookInMemoryErrors(shownBookName(request.book.addressBook),
                                        [&] { return showDifferences(request, environment); });
    }
    ExitCode operator()(const FieldsRequest& request) const
    {
        return showOrStoreFields(request, environment);
    }
    ExitCode operator()(const BooksRequest& request) const
    {
        return listBooks(request, environment);
    }
    ExitCode operator()(const PrintRequest& request) const
    {
        printText(environment, request.text);
        return ExitCode::Done;
    }
};

ExitCode run(std::span<const std::string> arguments, const CliEnvironment& environment)
{
    if (arguments.empty()) {
        environment.err << kUsage << std::flush;
        return ExitCode::WrongUse;
    }
    const auto version = environment.bundle.objectForInfoDictionaryKey("CFBundleVersion");
    const auto request =
        parseCommandLine(arguments, version.value_or(""), environment.systemBookHelp);
    return std::visit(Runner{environment}, request);
}

}  // namespace

int runCli(std::span<const std::string> arguments, const CliEnvironment& environment)
{
    auto exitCode = ExitCode::Failed;
    try {
        exitCode = run(arguments, environment);
    } catch (const CommandError& error) {
        report(environment, error.what());
        exitCode = error.exitCode();
    } catch (const std::exception& error) {
        report(environment, error.what());
    }
    return static_cast<int>(exitCode);
}

}  // namespace dunmora
