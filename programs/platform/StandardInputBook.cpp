#include "programs/platform/StandardInputBook.h"

#include "adapters/vcard/VCardStreamBook.h"

#include <memory>
#include <string>

namespace dunmora {

OpenedBook openStandardInput(std::string_view name)
{
    const auto book =
        std::make_shared<VCardStreamBook>(PersonSource{std::string(name), kStandardInputName});
    return {book, book};
}

}  // namespace dunmora
