#include "programs/dunmora-cli/FieldsCommand.h"

#include "engine/MatchKey.h"
#include "platform/AddressBook.h"
#include "platform/PlatformError.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/TerminalPlatform.h"

#include <memory>
#include <string>

namespace dunmora {

namespace {

/// The address book of a command that was given none.
class NoAddressBook final : public AddressBook {
public:
    std::span<const Person> readPeople() override { return {}; }
    std::span<const Person> people() override { return {}; }
    void removeRecord(const Person& /*person*/) override { fail(); }
    void save() override {}
    void checkBackUp(std::span<const Person* const> /*people*/) const override { fail(); }
    void backUp(std::span<const Person* const> /*people*/,
                const std::filesystem::path& /*file*/) override
    {
        fail();
    }
    ReadingNotes notes() const override { return {}; }

private:
    [[noreturn]] static void fail() { throw PlatformError("No address book was given."); }
};

}  // namespace

ExitCode showOrStoreFields(const FieldsRequest& request, const CliEnvironment& environment)
{
    const TerminalPlatform platform(std::make_unique<NoAddressBook>(), environment.userDefaults,
                                    environment);
    if (!insistOnMatchField(request.fields.value_or(chosenMatchFields()))) {
        return ExitCode::WrongUse;
    }
    if (request.fields) {
        storeMatchFields(*request.fields);
        if (!environment.userDefaults.synchronize()) {
            throw CommandError(ExitCode::Failed, "The match fields could not be stored.");
        }
        if (chosenMatchFields() != *request.fields) {
            throw CommandError(ExitCode::Failed,
                               "Another program has stored other match fields meanwhile.");
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
