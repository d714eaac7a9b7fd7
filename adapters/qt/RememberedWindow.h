#pragma once

#include "adapters/qt/MemoryWriter.h"
#include "platform/WindowMemory.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class QAction;
class QSplitter;
class QWidget;

namespace dunmora {

/// Restores and stores what the user changes of a window: its size and place and whether it is
/// maximized, and of the parts that have the dynamic property `remembered` the sizes of a
/// splitter's parts and the check mark of a command. The owner of another part does the same for it
/// with `text` and `change`.
///
/// Nothing is stored as long as the user leaves the window as it is. What has been stored may have
/// been damaged, or come from a larger screen; it never makes a window larger than the screen, and
/// never puts it where the user cannot see it.
///
/// Thread: the main thread. Errors: none.
class RememberedWindow final : public QObject {
public:
    /// Restores the window, which must not have been shown yet; it is remembered under its object
    /// name. The check marks follow when it is first shown, when commands have their handlers.
    /// Changes are stored as soon as there has been none for the time `calm`. `window` must outlive
    /// this.
    RememberedWindow(QWidget& window, const std::shared_ptr<WindowMemory>& memory,
                     std::chrono::milliseconds calm = std::chrono::milliseconds(300));

    /// Whether the interface file wants this part of the window to be remembered.
    static bool isRemembered(const QObject& part);

    /// The text that is remembered under a key; empty for none.
    std::string text(std::string_view key) const;

    /// Remembers a text under a key.
    void change(const std::string& key, const std::string& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restorePlacement();
    void restoreSizes(QSplitter& splitter) const;
    void restoreCheckMarks();
    WindowMemory::Texts placement() const;
    void note(const std::string& key, const std::string& text);
    void store();

    QWidget& window_;
    WindowMemory::Texts known_;
    WindowMemory::Texts changes_;
    MemoryWriter writer_;
    std::vector<QAction*> commands_;
    bool wasShown_ = false;
    bool wasPlaced_ = false;
    QTimer calm_;
};

}  // namespace dunmora
