#pragma once

#include <QObject>

class QWidget;

namespace dunmora {

/// Notifies assistive technology of a widget's text whenever the widget appears: Qt does so only
/// when the text changes.
///
/// Thread: the main thread. Errors: none.
class AppearanceAnnouncement final : public QObject {
public:
    /// `widget` must outlive this.
    explicit AppearanceAnnouncement(QWidget& widget);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void announce() const;

    QWidget& widget_;
};

}  // namespace dunmora
