#pragma once

class QWidget;

namespace dunmora {

/// Applies the dynamic properties that interface files use for what their format cannot express,
/// except `forFocus` and `remembered`, which `QtInterface` reads:
///
/// - `standardKey` on an action: the platform's shortcut, a name in QKeySequence::StandardKey;
/// - `forFocus` on an action: the widget with the keyboard focus gets the shortcut as a key,
/// because
///   it knows what to copy;
/// - `themeIcon` on actions and buttons: an icon of the desktop's theme; `symbol`: our own icon for
///   themes without it (see Symbols.h);
/// - `fontScale` on a widget: a factor for the size of its font;
/// - `minimumColumns` and `minimumLines` on a widget: its minimum size in characters and lines of
///   its font, limited to most of the screen;
/// - `initialColumns` and `initialLines` on the window: its initial size in characters and lines of
///   its font, limited to the screen;
/// - `initialShares` on a splitter: the shares of its space that its parts get, such as "5 3", at
///   first and when the window is resized;
/// - `footer` on a widget with a horizontal layout: its buttons get a line of their own, or shorter
///   titles, where the line is too long for the window (see FooterLayout.h);
/// - `acceptCommand` and `rejectCommand` on a button box: the commands of its two standard buttons,
///   which appear in the platform's order. The accepting button is the default button.
///
/// Thread: the main thread. Errors: std::logic_error for a name that Qt does not know.
void applyConventions(QWidget& window);

}  // namespace dunmora
