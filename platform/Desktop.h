#pragma once

namespace dunmora {

class Application;
class ConnectionOpener;
class InterfaceLoader;
class NumberFormat;
class OpenPanel;
class SavePanel;
class TextFolding;

/// The ports that only a program with windows has, in addition to its `Platform`. The program owns
/// them and keeps them alive until it ends.
struct Desktop {
    Application& application;
    InterfaceLoader& interfaceLoader;
    OpenPanel& openPanel;
    ConnectionOpener& connectionOpener;
    const TextFolding& textFolding;
    SavePanel& savePanel;
    const NumberFormat& numberFormat;

    /// Sets the ports that the core uses.
    /// Thread: the main thread, before any job runs. `desktop` must outlive its use.
    static void install(const Desktop& desktop) { installed() = &desktop; }

    /// The ports installed last. Thread: any, after `install`.
    static const Desktop& current() { return *installed(); }

private:
    static const Desktop*& installed()
    {
        static const Desktop* desktop = nullptr;
        return desktop;
    }
};

}  // namespace dunmora
