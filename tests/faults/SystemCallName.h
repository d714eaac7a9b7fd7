#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <sys/types.h>

namespace dunmora::test {

/// A system call that a process is about to make.
struct StartedCall {
    std::uint64_t number;
    std::array<std::uint64_t, 6> arguments;
};

/// The name of the call, such as "openat". Calls that do different things for different flags have
/// one name for each: "openat-nameless", "renameat2-exchange".
std::string nameOf(const StartedCall& call);

/// The path or paths in the call's arguments, or the path of its file.
std::string targetOf(pid_t process, const StartedCall& call);

}  // namespace dunmora::test
