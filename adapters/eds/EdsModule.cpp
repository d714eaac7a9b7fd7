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

/// Where the module of a program is looked for: beside it, as a build leaves them, and where
/// libraries are installed.
std::filesystem::path moduleFile()
{
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const auto beside = folder / kEdsModuleFile;
    const auto installed = folder.parent_path() / "lib" / "dunmora" / kEdsModuleFile;
    return std::filesystem::exists(beside, error) ? beside : installed;
}

[[noreturn]] void fail(const std::string& reason)
{
    throw PlatformError("The desktop's address books cannot be opened: " + reason);
}

}  // namespace

bool hasContactModule()
{
    std::error_code error;
    return std::filesystem::exists(moduleFile(), error);
}

std::unique_ptr<ContactService> loadContactService()
{
    const auto file = moduleFile();
    if (!hasContactModule()) {
        fail("Dunmora's module for them, " + std::string(kEdsModuleFile) + ", is not installed.");
    }
    // The libraries behind it register types for as long as the process lives.
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = module != nullptr ? dlsym(module, kEdsModuleEntry) : nullptr;
    if (entry == nullptr) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): it answers for the calling thread
        const char* const reason = dlerror();
        fail(std::string(reason != nullptr ? reason : "the module is empty") + ".");
    }
    return std::unique_ptr<ContactService>(reinterpret_cast<MakeContactService*>(entry)());
}

}  // namespace dunmora
