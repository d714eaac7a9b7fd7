#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace dunmora {

/// Takes over the caller's reference to a GObject or GVariant; null stays null.
template <typename Type>
std::shared_ptr<Type> owned(Type* object)
{
    return std::shared_ptr<Type>(object, [](Type* each) {
        if (each != nullptr) {
            g_object_unref(each);
        }
    });
}

inline std::shared_ptr<GVariant> owned(GVariant* variant)
{
    return {variant, [](GVariant* each) {
                if (each != nullptr) {
                    g_variant_unref(each);
                }
            }};
}

/// The text; empty for null.
inline std::string stringOf(const char* characters)
{
    return characters != nullptr ? characters : "";
}

}  // namespace dunmora
