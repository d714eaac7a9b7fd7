#include "programs/dunmora-cli/UniqueWarning.h"

#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/Report.h"
#include "review/ReviewTexts.h"
#include "review/UniqueProperties.h"

namespace dunmora {

void reportUnique(const UniqueProperties& properties, const BookRequest& request,
                  const CliEnvironment& environment)
{
    if (request.quiet || properties.count() == 0) {
        return;
    }
    const auto* const where =
        request.format == OutputFormat::Table ? ", marked with * in the table." : ".";
    report(environment, "warning: " + uniqueText(properties.count()) + where);
}

}  // namespace dunmora
