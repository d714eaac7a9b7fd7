#include "adapters/eds/EdsModule.h"

#include "adapters/eds/ContactService.h"
#include "adapters/eds/ModuleEntry.h"
#include "platform/PlatformError.h"

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace dunmora {

namespace {

/// The plug-in, which is in the program's folder; empty when it is not installed. The current
/// folder is never searched.
std::filesystem::path moduleFile()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto file = program.parent_path() / kEdsModuleFile;
    return file.is_absolute() && std::filesystem::exists(file, error) ? file
                                                                      : std::filesystem::path();
}

[[noreturn]] void fail(const std::string& reason)
{
    throw PlatformError("The desktop's address books cannot be opened: " + reason);
}

}  // namespace

bool hasContactModule()
{
    return !moduleFile().empty();
}

std::unique_ptr<ContactService> loadContactService()
{
    const auto file = moduleFile();
    if (file.empty()) {
        fail("Dunmora's module for them, " + std::string(kEdsModuleFile) + ", is not installed.");
    }
    // The libraries behind it register types for as long as the process lives.
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = module != nullptr ? dlsym(module, kEdsModuleEntry) : nullptr;
    if (entry == nullptr) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): it returns the calling thread's error
        const char* const reason = dlerror();
        fail(std::string(reason != nullptr ? reason : "the module is empty") + ".");
    }
    return std::unique_ptr<ContactService>(reinterpret_cast<MakeContactService*>(entry)());
}

}  // namespace dunmora
