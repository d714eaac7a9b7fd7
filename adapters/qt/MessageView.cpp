#include "adapters/qt/MessageView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QChar>
#include <QEvent>
#include <QPalette>
#include <QString>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace dunmora {

namespace {

/// The most that a character has in a text of the stream-safe format (UAX #15 §13). The time that
/// fonts need to place the marks of one character grows with the square of their number.
constexpr int kMaximumMarks = 30;

QString withoutExcessMarks(const QString& text)
{
    QString kept;
    kept.reserve(text.size());
    int marks = 0;
    for (const char32_t character : text.toUcs4()) {
        if (QChar::isMark(character)) {
            ++marks;
        } else if (QChar::category(character) != QChar::Other_Format) {
            // Fonts place marks across an invisible character, such as a joiner.
            marks = 0;
        }
        if (marks <= kMaximumMarks) {
            kept += QChar::fromUcs4(character);
        }
    }
    return kept;
}

/// Screen readers read the labels of a window out when it opens, but no text edits.
class AccessibleMessage final : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleMessage(MessageView& view)
        : QAccessibleWidget(&view, QAccessible::StaticText), view_(view)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? view_.toPlainText() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        state.readOnly = true;
        state.selectableText = true;
        state.multiLine = true;
        return state;
    }

    // The scroll bar is of no use to a reader.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    int selectionCount() const override { return view_.textCursor().hasSelection() ? 1 : 0; }

    void selection(int /*index*/, int* start, int* end) const override
    {
        *start = view_.textCursor().selectionStart();
        *end = view_.textCursor().selectionEnd();
    }

    void addSelection(int start, int end) override { setSelection(0, start, end); }

    void removeSelection(int /*index*/) override { setCursorPosition(cursorPosition()); }

    void setSelection(int /*index*/, int start, int end) override
    {
        auto cursor = cursorAt(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        view_.setTextCursor(cursor);
    }

    int cursorPosition() const override { return view_.textCursor().position(); }

    void setCursorPosition(int position) override { view_.setTextCursor(cursorAt(position)); }

    QString text(int start, int end) const override
    {
        return view_.toPlainText().mid(start, end - start);
    }

    int characterCount() const override { return static_cast<int>(view_.toPlainText().size()); }

    QRect characterRect(int offset) const override
    {
        const auto place = view_.cursorRect(cursorAt(offset));
        return {view_.viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    int offsetAtPoint(const QPoint& point) const override
    {
        return view_.cursorForPosition(view_.viewport()->mapFromGlobal(point)).position();
    }

    void scrollToSubstring(int start, int /*end*/) override { setCursorPosition(start); }

    QString attributes(int /*offset*/, int* start, int* end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    QTextCursor cursorAt(int position) const
    {
        QTextCursor cursor(view_.document());
        cursor.setPosition(position);
        return cursor;
    }

    MessageView& view_;
};

QAccessibleInterface* accessibleMessage(const QString& /*className*/, QObject* object)
{
    auto* const view = qobject_cast<MessageView*>(object);
    return view == nullptr ? nullptr : new AccessibleMessage(*view);
}

}  // namespace

MessageView::MessageView(QWidget* parent) : QPlainTextEdit(parent)
{
    // Qt ignores a factory that is already installed.
    QAccessible::installFactory(accessibleMessage);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // It looks like a label, too.
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    useColorOfLabels();
    // A cursor without a text would invite the user to type.
    const int width = cursorWidth();
    setCursorWidth(0);
    connect(this, &QPlainTextEdit::textChanged, this, [this, width] {
        setCursorWidth(document()->isEmpty() ? 0 : width);
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    });
}

void MessageView::setText(const QString& text)
{
    setPlainText(withoutExcessMarks(text));
}

void MessageView::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        useColorOfLabels();
    }
}

/// In some colour schemes, the text of an edit cannot be read on the background of a window.
void MessageView::useColorOfLabels()
{
    auto colors = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        colors.setBrush(group, QPalette::Text, colors.brush(group, QPalette::WindowText));
    }
    setPalette(colors);
}

}  // namespace dunmora
