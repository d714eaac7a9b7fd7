#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/View.h"

class QWidget;

namespace dunmora {

/// Any widget of an interface.
class QtView final : public View {
public:
    /// The widget must outlive it.
    explicit QtView(QWidget& widget);

    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.ask(); }

private:
    QWidget& widget_;
    Redraw redraw_;
};

}  // namespace dunmora
