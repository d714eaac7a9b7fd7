#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/CheckBox.h"

class QCheckBox;

namespace dunmora {

/// A check box of an interface.
class QtCheckBox final : public CheckBox {
public:
    /// The widget must outlive it.
    explicit QtCheckBox(QCheckBox& widget);

    CheckState state() const override;
    void setState(CheckState state) override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.ask(); }

private:
    QCheckBox& widget_;
    Redraw redraw_;
};

}  // namespace dunmora
