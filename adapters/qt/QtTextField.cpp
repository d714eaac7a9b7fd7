#include "adapters/qt/QtTextField.h"

#include "adapters/qt/MessageView.h"
#include "adapters/qt/QtText.h"
#include "text/DisplayText.h"

#include <QLabel>

#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

// Only untrusted texts are longer, and laying them out would block the program.
constexpr std::size_t kMaximumBytes = 10000;

}  // namespace

QtTextField::QtTextField(QLabel& widget)
    : QtTextField(widget, widget.text().toStdString(),
                  [&widget](const QString& text) { widget.setText(text); })
{
    widget.setTextFormat(Qt::PlainText);
}

QtTextField::QtTextField(MessageView& widget)
    : QtTextField(widget, widget.toPlainText().toStdString(),
                  [&widget](const QString& text) { widget.setText(text); })
{
}

QtTextField::QtTextField(QWidget& widget, std::string text,
                         std::function<void(const QString&)> show)
    : widget_(widget),
      show_(std::move(show)),
      announcement_(widget),
      text_(std::move(text)),
      redraw_([this] { draw(); })
{
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
    std::string text;
    {
        // Held only for the copy, so that no job waits for the drawing.
        const std::lock_guard guard(mutex_);
        text = shownText(text_, kMaximumBytes);
    }
    show_(toQString(windowLines(text)));
}

}  // namespace dunmora
