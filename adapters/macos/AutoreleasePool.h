#pragma once

namespace dunmora {

/// Lets go of what Objective-C has put off, at the end of its scope. Stands outside of what catches
/// exceptions. Thread: the one that made it.
class AutoreleasePool final {
public:
    AutoreleasePool();
    ~AutoreleasePool();
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

private:
    void* pool_;
};

}  // namespace dunmora
