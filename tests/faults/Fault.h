#pragma once

#include <span>
#include <string>
#include <vector>

namespace dunmora::test {

/// What happens right before one system call of a traced program, or instead of it.
struct Fault {
    enum class Kind {
        /// The call does nothing and fails with the error `number`.
        Fail,
        /// The call does its work and fails with the error `number`.
        FailAfter,
        /// The call reads or writes at most `number` bytes.
        Cut,
        /// The call reads or writes a random number of bytes, drawn with the seed `number`.
        CutRandomly,
        /// The program is killed.
        Kill,
        /// Another program opens `path`, appends `content` and closes the file.
        Append,
        /// Another program renames a file with `content` to `path`.
        Replace,
        /// Another program deletes `path`.
        Remove,
        /// Another program overwrites bytes of `path`, from `number` on, with `content`.
        Overwrite,
        /// Another program opens `path` for writing and keeps it open. It appends `content` at the
        /// next `Release`, or when the traced program has ended, and closes the file.
        Hold,
        /// Every program that keeps a file open writes and closes it.
        Release,
    };

    /// As in `SystemCallName.h`.
    std::string call;
    /// The first call of that name is number 1.
    int occurrence = 0;
    /// Happens again at every later call of that name.
    bool isRepeated = false;
    Kind kind = Kind::Fail;
    std::string path;
    long number = 0;
    std::string content;
};

/// Parses CALL OCCURRENCE KIND and then the members that the kind uses, in their order above, one
/// argument each. OCCURRENCE ends in "+" for a repeated fault. Moves `arguments` behind them.
/// Errors: std::invalid_argument.
Fault parseFault(std::span<const std::string>& arguments);

}  // namespace dunmora::test
