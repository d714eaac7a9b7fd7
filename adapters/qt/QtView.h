#pragma once

#include "platform/View.h"

class QWidget;

namespace dunmora {

/// Any widget of an interface.
class QtView final : public View {
public:
    /// `widget` must outlive the view.
    explicit QtView(QWidget& widget) : widget_(widget) {}

    void setHidden(bool hidden) override;

private:
    QWidget& widget_;
};

}  // namespace dunmora
