#pragma once

#include "tests/faults/Fault.h"

#include <list>
#include <string>
#include <thread>

namespace dunmora::test {

/// Other programs that change files while the traced program is stopped. A program that
/// must wait for a lease waits in a thread, because only the traced program can give the lease up.
class OtherPrograms final {
public:
    /// Does what one of the faults from `Append` on describes. Returns whether it was done or will
    /// be done; false when there is no such file.
    bool act(const Fault& fault);

    /// Writes and closes every file that is kept open, and waits for everybody.
    void finish();

private:
    struct Held {
        int descriptor;
        std::string content;
    };

    bool write(const Fault& fault);
    void release();

    std::list<Held> held_;
    std::list<std::jthread> waiting_;
};

}  // namespace dunmora::test
