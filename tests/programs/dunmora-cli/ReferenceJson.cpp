#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <nlohmann/json.hpp>

namespace dunmora::test {

using Json = nlohmann::ordered_json;

std::string jsonAt(const std::string& json, const std::string& pointer)
{
    return Json::parse(json).at(Json::json_pointer(pointer)).dump();
}

std::string referenceJsonText(const std::string& text, JsonCharacters characters)
{
    return Json(text).dump(-1, ' ', characters == JsonCharacters::Ascii,
                           Json::error_handler_t::replace);
}

}  // namespace dunmora::test
