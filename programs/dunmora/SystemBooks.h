#pragma once

#include "platform/DesktopBook.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class Command;
class Interface;
class Menu;
class SupervisedApplication;

/// The menu that opens the system's own address books: all of them, or one by its name. The names
/// are listed again each time before the menu opens.
///
/// Thread: the main thread, except `ListSystemBooks`. Errors: none.
class SystemBooks final {
public:
    /// Lists the books by uid and name; need not read them. Called on a worker.
    /// Errors: PlatformError when they cannot be listed.
    using List = std::function<std::vector<DesktopBook>()>;
    /// Opens the book with this path, under this name for the user.
    using Open = std::function<void(std::string_view name, const std::filesystem::path& path)>;

    /// Finds its menu and its command in the main interface. All three must outlive this, and no
    /// listing may be running when this is destroyed.
    SystemBooks(Interface& mainInterface, SupervisedApplication& application, Open open);
    ~SystemBooks() = default;
    SystemBooks(const SystemBooks&) = delete;
    SystemBooks& operator=(const SystemBooks&) = delete;

    /// Offers all books, by this name in place of a path, and each that `list` lists, by this name
    /// and its uid; `list` may be null. Call it at most once, before any job runs.
    void offer(const std::filesystem::path& name, List list);

    /// Whether the path is the name of such books.
    bool contains(const std::filesystem::path& path) const;

    /// Like the functions of `JobObserver`.
    void jobsBegan();
    void jobsEnded();

    /// Thread body of a listing. Thread: a worker.
    void ListSystemBooks();

    /// The name for the user of all books.
    static constexpr std::string_view kAll = "Address Book";

private:
    void OnMenuOpening();
    /// `books` is empty when they cannot be listed.
    void listed(const std::optional<std::vector<DesktopBook>>& books);
    void enable();

    SupervisedApplication& application_;
    Open open_;
    // Empty while none is offered.
    std::string name_;
    List list_;
    bool isListing_ = false;
    bool isAvailable_ = true;
    bool areJobsRunning_ = false;

    Menu* menuSystemBooks_;
    Command* openAll_;
};

}  // namespace dunmora
