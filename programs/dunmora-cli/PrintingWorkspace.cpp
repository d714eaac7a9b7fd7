#include "programs/dunmora-cli/PrintingWorkspace.h"

#include "text/DisplayText.h"

#include <ostream>

namespace dunmora {

bool PrintingWorkspace::openURL(const std::string& url)
{
    out_ << url << '\n' << std::flush;
    return out_.good();
}

void PrintingWorkspace::openWebPage(const std::string& url)
{
    out_ << displayText(url) << '\n' << std::flush;
}

std::string PrintingWorkspace::webHost(const std::string& /*url*/) const
{
    return {};
}

}  // namespace dunmora
