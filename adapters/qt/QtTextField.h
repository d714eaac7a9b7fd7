#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/TextField.h"

#include <mutex>
#include <string>

class QLabel;

namespace dunmora {

/// A label of an interface. Its text is always shown as it is, never read as HTML; of a very
/// long one the beginning is shown.
class QtTextField final : public TextField {
public:
    /// The widget must outlive it.
    explicit QtTextField(QLabel& widget);

    void setStringValue(std::string_view text) override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.ask(); }

private:
    void draw();

    QLabel& widget_;
    std::mutex mutex_;
    std::string text_;
    Redraw redraw_;
};

}  // namespace dunmora
