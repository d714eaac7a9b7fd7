#include "programs/dunmora-cli/OutputFormat.h"

#include <algorithm>
#include <array>

namespace dunmora {

namespace {

struct NamedFormat {
    OutputFormat format;
    std::string_view name;
};

constexpr std::array kFormats{NamedFormat{OutputFormat::Table, "table"},
                              NamedFormat{OutputFormat::Json, "json"},
                              NamedFormat{OutputFormat::Csv, "csv"}};

}  // namespace

std::string formatName(OutputFormat format)
{
    return std::string(
        std::find_if(kFormats.begin(), kFormats.end(), [format](const NamedFormat& named) {
            return named.format == format;
        })->name);
}

OutputFormat formatNamed(std::string_view name)
{
    return std::find_if(kFormats.begin(), kFormats.end(),
                        [name](const NamedFormat& named) { return named.name == name; })
        ->format;
}

}  // namespace dunmora
