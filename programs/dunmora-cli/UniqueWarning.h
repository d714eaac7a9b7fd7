#pragma once

namespace dunmora {

class UniqueProperties;
struct BookRequest;
struct CliEnvironment;

/// Warns of the checked copies that hold something no kept copy has, unless there are none or the
/// user wants no warnings.
void reportUnique(const UniqueProperties& properties, const BookRequest& request,
                  const CliEnvironment& environment);

}  // namespace dunmora
