#pragma once

#include "adapters/qt/AppearanceAnnouncement.h"
#include "adapters/qt/Redraw.h"
#include "platform/TextField.h"

#include <functional>
#include <mutex>
#include <string>

class QLabel;
class QString;
class QWidget;

namespace dunmora {

class MessageView;

/// A label or a message of an interface. Its text is plain, never HTML, and made safe to show
/// (`windowLines`); a very long one is cut off with an ellipsis.
class QtTextField final : public TextField {
public:
    /// `widget` must outlive the field.
    explicit QtTextField(QLabel& widget);
    explicit QtTextField(MessageView& widget);

    void setStringValue(std::string_view text) override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.request(); }

private:
    QtTextField(QWidget& widget, std::string text, std::function<void(const QString&)> show);

    void draw();

    QWidget& widget_;
    const std::function<void(const QString&)> show_;
    AppearanceAnnouncement announcement_;
    std::mutex mutex_;
    std::string text_;
    Redraw redraw_;
};

}  // namespace dunmora
