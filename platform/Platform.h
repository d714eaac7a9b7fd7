#pragma once

namespace dunmora {

class AddressBook;
class Alert;
class Bundle;
class CardSource;
class UserDefaults;
class Workspace;

/// The ports that a program has chosen. The program owns them and keeps them until it ends.
struct Platform {
    /// The open address book; null while none is open. The program changes it on the main thread,
    /// and only while no job runs.
    AddressBook* addressBook;
    UserDefaults& userDefaults;
    Alert& alert;
    Workspace& workspace;
    Bundle& bundle;
    /// The whole cards of the open address book; null while none is open, and for a book without
    /// cards. It changes together with `addressBook`.
    CardSource* cardSource = nullptr;

    /// Sets the ports that the core uses.
    /// Thread: the main thread, before any job runs. `platform` must outlive its use.
    static void install(const Platform& platform) { installed() = &platform; }

    /// The ports installed last. Thread: any, after `install`.
    static const Platform& current() { return *installed(); }

private:
    static const Platform*& installed()
    {
        static const Platform* platform = nullptr;
        return platform;
    }
};

}  // namespace dunmora
