#include "programs/dunmora-cli/PrintingWorkspace.h"

#include <ostream>

namespace dunmora {

bool PrintingWorkspace::openURL(const std::string& url)
{
    out_ << url << '\n' << std::flush;
    return out_.good();
}

}  // namespace dunmora
