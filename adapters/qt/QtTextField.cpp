#include "adapters/qt/QtTextField.h"

#include "adapters/qt/QtText.h"

#include <QLabel>

namespace dunmora {

namespace {

// Longer texts come from strangers only, and laying them out would hold up the program.
constexpr qsizetype kMostShown = 10000;
constexpr char16_t kEllipsis = 0x2026;

}  // namespace

QtTextField::QtTextField(QLabel& widget)
    : widget_(widget), text_(widget.text().toStdString()), redraw_([this] { draw(); })
{
    widget_.setTextFormat(Qt::PlainText);
}

void QtTextField::setStringValue(std::string_view text)
{
    {
        const std::lock_guard guard(mutex_);
        text_ = text;
    }
    redraw_.ask();
}

void QtTextField::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

void QtTextField::draw()
{
    QString text;
    {
        // Held for a copy only: a job that sets a text meanwhile does not wait for the drawing.
        const std::lock_guard guard(mutex_);
        text = toQString(text_);
    }
    if (text.size() > kMostShown) {
        const bool cutsCharacter = text.at(kMostShown).isLowSurrogate();
        text.truncate(cutsCharacter ? kMostShown - 1 : kMostShown);
        text += QChar(kEllipsis);
    }
    widget_.setText(text);
}

}  // namespace dunmora
