#pragma once

namespace dunmora {

class Command;
class Interface;

/// The main menu's commands of the update check. A build without an update service hides them.
///
/// Thread: the main thread. Errors: none.
class UpdateMenu final {
public:
    /// Finds its commands in the main interface, which must outlive this.
    explicit UpdateMenu(Interface& mainInterface);
    ~UpdateMenu();
    UpdateMenu(const UpdateMenu&) = delete;
    UpdateMenu& operator=(const UpdateMenu&) = delete;

private:
    /// Turns the check at every start on or off.
    static void OnCheckAtEveryStart();
    void showState();

    Command* checkAtEveryStart_;
};

}  // namespace dunmora
