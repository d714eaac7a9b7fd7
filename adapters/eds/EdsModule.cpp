#include "adapters/eds/EdsModule.h"

#include "adapters/eds/ContactService.h"
#include "adapters/eds/ModuleEntry.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace dunmora {

namespace {

constexpr auto kProgram = "/proc/self/exe";

/// The plug-in of this program; empty when it is not installed.
std::filesystem::path moduleFile()
{
    std::error_code error;
    const auto file = moduleOf(std::filesystem::read_symlink(kProgram, error));
    return std::filesystem::exists(file, error) ? file : std::filesystem::path();
}

[[noreturn]] void fail(const std::string& reason)
{
    throw PlatformError("The desktop's address books cannot be opened: " + reason);
}

[[noreturn]] void refuse(const std::filesystem::path& path, const std::string& reason)
{
    fail("Dunmora's module for them is not loaded, because " + quotedPath(path) + " " + reason +
         ".");
}

struct stat statusOf(const std::filesystem::path& path)
{
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        refuse(path, "cannot be checked: " + std::generic_category().message(errno));
    }
    return status;
}

}  // namespace

std::filesystem::path moduleOf(const std::filesystem::path& program)
{
    // Never relative to the current folder, which anybody may have written.
    if (!program.is_absolute()) {
        return {};
    }
    // The program's path has no links, so its parents are what ".." stands for.
    return (program.parent_path() / DUNMORA_MODULE_PATH / kEdsModuleFile).lexically_normal();
}

void checkModule(const std::filesystem::path& module, const std::filesystem::path& program)
{
    struct stat own {};
    if (stat(program.c_str(), &own) != 0) {
        refuse(program, "cannot be checked: " + std::generic_category().message(errno));
    }
    for (const auto& path : {module.parent_path(), module}) {
        const auto status = statusOf(path);
        if (path == module && !S_ISREG(status.st_mode)) {
            refuse(path, "is not a file");
        }
        if (status.st_uid != 0 && status.st_uid != own.st_uid) {
            refuse(path, "belongs to another user");
        }
        const bool isOwnGroup = status.st_gid == own.st_gid && (own.st_mode & S_IWGRP) != 0;
        if ((status.st_mode & S_IWOTH) != 0 || ((status.st_mode & S_IWGRP) != 0 && !isOwnGroup)) {
            refuse(path, "can be changed by other users");
        }
    }
}

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
    checkModule(file, kProgram);
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
