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

bool PrintingWorkspace::openLocalPage(const std::filesystem::path& page)
{
    out_ << displayText(page.string()) << '\n' << std::flush;
    return out_.good();
}

std::string PrintingWorkspace::webHost(const std::string& /*url*/) const
{
    return {};
}

}  // namespace dunmora
