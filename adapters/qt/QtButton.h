#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/Button.h"

class QAbstractButton;

namespace dunmora {

/// A push button or a tool button of an interface.
class QtButton final : public Button {
public:
    /// The widget must outlive it.
    explicit QtButton(QAbstractButton& widget);

    void setTitle(const std::string& title) override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.ask(); }

private:
    QAbstractButton& widget_;
    Redraw redraw_;
};

}  // namespace dunmora
