#pragma once

#include "adapters/qt/AppearanceAnnouncement.h"
#include "adapters/qt/Redraw.h"
#include "platform/TextField.h"

#include <mutex>
#include <string>

class QLabel;

namespace dunmora {

/// A label of an interface. Its text is plain, never HTML; a very long one is cut off with an
/// ellipsis.
class QtTextField final : public TextField {
public:
    /// `widget` must outlive the field.
    explicit QtTextField(QLabel& widget);

    void setStringValue(std::string_view text) override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.request(); }

private:
    void draw();

    QLabel& widget_;
    AppearanceAnnouncement announcement_;
    std::mutex mutex_;
    std::string text_;
    Redraw redraw_;
};

}  // namespace dunmora
