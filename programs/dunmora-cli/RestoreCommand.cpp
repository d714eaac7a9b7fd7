#include "programs/dunmora-cli/RestoreCommand.h"

#include "adapters/posix/FileContent.h"
#include "platform/Alert.h"
#include "platform/CardRestorer.h"
#include "platform/Platform.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ResultTexts.h"
#include "programs/dunmora-cli/ShellText.h"
#include "programs/dunmora-cli/TerminalPlatform.h"
#include "text/Counted.h"
#include "text/DisplayText.h"

#include <string_view>
#include <vector>

namespace dunmora {

namespace {

using Mode = CardRestorer::Mode;

std::string asText(const Restoration& result, bool dryRun)
{
    std::string text = countOfPeople(result.restored);
    text += dryRun ? " would be restored.\n" : " restored.\n";
    if (result.present > 0) {
        text += counted(result.present, "person is", "people are") + " there already.\n";
    }
    return text;
}

void appendTexts(std::string& out, const std::vector<std::string>& texts, JsonCharacters characters)
{
    char before = '[';
    for (const auto& text : texts) {
        out += before;
        before = ',';
        appendJsonText(out, text, characters);
    }
    out += texts.empty() ? "[]" : "]";
}

std::string asJson(const Restoration& result, bool dryRun, JsonCharacters characters)
{
    std::string out = R"({"schema":1,"dryRun":)";
    out += dryRun ? "true" : "false";
    out += R"(,"restored":)" + std::to_string(result.restored);
    out += R"(,"present":)" + std::to_string(result.present);
    out += R"(,"failures":)";
    appendTexts(out, result.failures, characters);
    out += R"(,"remarks":)";
    appendTexts(out, result.remarks, characters);
    return out + "}\n";
}

bool userAgrees(std::size_t people, const RestoreRequest& request)
{
    return Platform::current().alert.runModal(
               {"Confirm to restore",
                countOfPeople(people) + " of the backup will be added to " +
                    quotedText(request.addressBook) + ".\nDo you really want to continue?",
                "Okay", "Cancel"}) != Alert::kAlternateButton;
}

}  // namespace

ExitCode restorePeople(const RestoreRequest& request, const CliEnvironment& environment)
{
    const bool asks = !request.yes && !request.dryRun;
    if (asks && !(environment.inIsTerminal && environment.errIsTerminal)) {
        throw CommandError(ExitCode::WrongUse,
                           "restore needs --yes when it cannot ask on a terminal.");
    }
    const auto backup = readFile(request.backup).bytes;
    const TerminalPlatform platform(environment.openAddressBook(request.addressBook),
                                    environment.userDefaults, environment);
    auto* const restorer = platform.book().cardRestorer.get();
    if (restorer == nullptr) {
        throw CommandError(ExitCode::Failed, "Nobody can be restored into this address book.");
    }
    auto result = restorer->restore(backup.view(),
                                    request.yes && !request.dryRun ? Mode::Write : Mode::DryRun);
    if (asks && result.restored > 0) {
        if (!userAgrees(result.restored, request)) {
            report(environment, "Nobody was restored.");
            return ExitCode::Failed;
        }
        result = restorer->restore(backup.view(), Mode::Write);
    }
    for (const auto& failure : result.failures) {
        report(environment, failure);
    }
    if (!request.quiet) {
        for (const auto& remark : result.remarks) {
            report(environment, "note: " + remark);
        }
    }
    printAs(environment, request.format,
            {.table = [&] { return asText(result, request.dryRun); },
             .json =
                 [&](JsonCharacters characters) {
                     return asJson(result, request.dryRun, characters);
                 }});
    return result.failures.empty() ? ExitCode::Done : ExitCode::Failed;
}

std::string restoreCommand(const std::string& backup, const std::string& addressBook,
                           const Charset& charset)
{
    // An argument that begins with a dash would be taken for an option.
    const bool hasDash = backup.starts_with('-') || addressBook.starts_with('-');
    return "dunmora-cli restore " + std::string(hasDash ? "-- " : "") +
           quotedForShell(backup, charset) + ' ' + quotedForShell(addressBook, charset);
}

}  // namespace dunmora
