#pragma once

namespace dunmora {

/// Releases autoreleased objects at the end of its scope. Enclose a handler of exceptions in it,
/// not the other way round. Thread: the one that created it.
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
