#include "programs/dunmora-cli/FieldsCommand.h"

#include "base/Settings.h"
#include "engine/MatchKey.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/TerminalPlatform.h"

#include <string>

namespace dunmora {

ExitCode showOrStoreFields(const FieldsRequest& request, const CliEnvironment& environment)
{
    const TerminalPlatform platform({}, environment.userDefaults, environment);
    if (!insistOnMatchField(request.fields.value_or(chosenMatchFields()))) {
        return ExitCode::WrongUse;
    }
    if (request.fields) {
        if (!Settings::settings().setMatchFields(*request.fields)) {
            throw CommandError(ExitCode::Failed, "The match fields could not be stored.");
        }
        if (chosenMatchFields() != *request.fields) {
            throw CommandError(
                ExitCode::Failed,
                "Another program stored other match fields at the same time. Try again.");
        }
    }

    std::string line;
    for (const auto name : namesOf(chosenMatchFields())) {
        line += line.empty() ? "" : ",";
        line += name;
    }
    print(environment, line + '\n');
    return ExitCode::Done;
}

}  // namespace dunmora
