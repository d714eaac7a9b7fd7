#include "tests/faults/OtherPrograms.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace dunmora::test {

namespace {

void writeAll(int file, const std::string& content)
{
    if (::write(file, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        throw std::runtime_error("Another program could not write.");
    }
}

void writeAndClose(int file, const Fault& fault)
{
    if (fault.kind == Fault::Kind::Overwrite) {
        lseek(file, fault.number, SEEK_SET);
    }
    writeAll(file, fault.content);
    close(file);
}

/// Writes a new file and renames it, as most programs save.
void replace(const std::string& path, const std::string& content)
{
    // Not one of the book's own files, and hidden from a reader of the folder.
    const auto temporary = path + ".other";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    writeAll(file, content);
    close(file);
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        throw std::runtime_error("Another program could not rename its file.");
    }
}

}  // namespace

bool OtherPrograms::act(const Fault& fault)
{
    switch (fault.kind) {
    case Fault::Kind::Replace:
        replace(fault.path, fault.content);
        return true;
    case Fault::Kind::Remove:
        return unlink(fault.path.c_str()) == 0;
    case Fault::Kind::Release:
        release();
        return true;
    default:
        return write(fault);
    }
}

bool OtherPrograms::write(const Fault& fault)
{
    const int flags = O_WRONLY | O_CLOEXEC | (fault.kind == Fault::Kind::Overwrite ? 0 : O_APPEND);
    int file = open(fault.path.c_str(), flags | O_NONBLOCK);
    if (file < 0 && errno == EWOULDBLOCK) {
        waiting_.emplace_back([fault, flags] {
            const int late = open(fault.path.c_str(), flags);
            if (late >= 0) {
                writeAndClose(late, fault);
            }
        });
        return true;
    }
    if (file < 0) {
        return false;
    }
    if (fault.kind == Fault::Kind::Hold) {
        held_.push_back({file, fault.content});
    } else {
        writeAndClose(file, fault);
    }
    return true;
}

void OtherPrograms::release()
{
    for (const auto& held : std::exchange(held_, {})) {
        writeAll(held.descriptor, held.content);
        close(held.descriptor);
    }
}

void OtherPrograms::finish()
{
    release();
    waiting_.clear();
}

}  // namespace dunmora::test
