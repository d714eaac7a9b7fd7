#pragma once

#include "adapters/qt/AppearanceAnnouncement.h"
#include "platform/Button.h"

class QAbstractButton;

namespace dunmora {

/// A push button or a tool button of an interface.
class QtButton final : public Button {
public:
    /// `widget` must outlive the button.
    explicit QtButton(QAbstractButton& widget);

    void setTitle(const std::string& title) override;
    void setHidden(bool hidden) override;

private:
    QAbstractButton& widget_;
    AppearanceAnnouncement announcement_;
};

}  // namespace dunmora
