#include "adapters/qt/QtView.h"

#include <QWidget>

namespace dunmora {

QtView::QtView(QWidget& widget) : widget_(widget), redraw_([this] { widget_.update(); }) {}

void QtView::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

}  // namespace dunmora
