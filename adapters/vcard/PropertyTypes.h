#pragma once

#include "adapters/vcard/Property.h"
#include "text/Ascii.h"

#include <string_view>

namespace dunmora {

/// Removes the first type from a list such as `home,voice` and returns it without the blanks and
/// quotation marks around it; a list may have been quoted as a whole.
std::string_view takeType(std::string_view& types);

/// Whether the type can be a label; the others describe how a number is used or how the value is
/// encoded.
bool isLabelType(std::string_view type);

/// Calls `use` with each type of a property, given its parameters: all values of TYPE, and the bare
/// parameters of vCard 2.1. Empty types are omitted.
template <typename Use>
void forEachType(std::string_view parameters, const Use& use)
{
    while (!parameters.empty()) {
        const auto parameter = takeParameter(parameters);
        if (!parameter.name.empty() && !equalsIgnoringCase(parameter.name, "TYPE")) {
            continue;
        }
        for (auto types = parameter.value; !types.empty();) {
            if (const auto type = takeType(types); !type.empty()) {
                use(type);
            }
        }
    }
}

}  // namespace dunmora
