#pragma once

#include "platform/CheckBox.h"

class QCheckBox;

namespace dunmora {

/// A check box of an interface.
class QtCheckBox final : public CheckBox {
public:
    /// `widget` must outlive the check box.
    explicit QtCheckBox(QCheckBox& widget) : widget_(widget) {}

    CheckState state() const override;
    void setState(CheckState state) override;
    void setHidden(bool hidden) override;

private:
    QCheckBox& widget_;
};

}  // namespace dunmora
