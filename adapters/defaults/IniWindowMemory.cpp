#include "adapters/defaults/IniWindowMemory.h"

#include "platform/PlatformError.h"

namespace dunmora {

WindowMemory::Texts IniWindowMemory::load(std::string_view window)
{
    try {
        return file_.load().textsIn(window);
    } catch (const PlatformError&) {
        return {};
    }
}

void IniWindowMemory::store(std::string_view window, const Texts& texts)
{
    try {
        file_.change([&](IniDocument& document) {
            bool hasChanged = false;
            for (const auto& [key, text] : texts) {
                hasChanged = document.setText(window, key, text) || hasChanged;
            }
            return hasChanged;
        });
    } catch (const PlatformError&) {
        // The window has its size all the same, until the program ends.
    }
}

}  // namespace dunmora
