#include "adapters/qt/QtTextField.h"

#include "adapters/qt/QtText.h"

#include <QLabel>

namespace dunmora {

namespace {

// Only untrusted texts are longer, and laying them out would block the program.
constexpr qsizetype kMaximumLength = 10000;
constexpr char16_t kEllipsis = 0x2026;

}  // namespace

QtTextField::QtTextField(QLabel& widget)
    : widget_(widget),
      announcement_(widget),
      text_(widget.text().toStdString()),
      redraw_([this] { draw(); })
{
    widget_.setTextFormat(Qt::PlainText);
}

void QtTextField::setStringValue(std::string_view text)
{
    {
        const std::lock_guard guard(mutex_);
        text_ = text;
    }
    redraw_.request();
}

void QtTextField::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

void QtTextField::draw()
{
    QString text;
    {
        // Held only for the copy, so that no job waits for the drawing.
        const std::lock_guard guard(mutex_);
        text = toQString(text_);
    }
    if (text.size() > kMaximumLength) {
        const bool cutsCharacter = text.at(kMaximumLength).isLowSurrogate();
        text.truncate(cutsCharacter ? kMaximumLength - 1 : kMaximumLength);
        text += QChar(kEllipsis);
    }
    widget_.setText(text);
}

}  // namespace dunmora
