#pragma once

class QWidget;

namespace dunmora {

/// Carries out what an interface file says in dynamic properties, because the file format has no
/// words for it:
///
/// - `standardKey` on an action: the platform's own shortcut, a name of QKeySequence::StandardKey;
/// - `themeIcon`, an icon of the desktop's theme, and `symbol`, the one of ours for where the theme
///   lacks it (see Symbols.h), on actions and buttons;
/// - `fontScale` on a widget: how many times as large as usual its font is;
/// - `minimumColumns` and `minimumLines` on a widget: its least width and height in characters and
///   lines of its font;
/// - `initialColumns` and `initialLines` on the window: its first size in characters and lines of
///   its font, as far as the screen reaches;
/// - `acceptCommand` and `rejectCommand` on a button box: the commands of its two standard buttons,
///   which stand in the platform's order. The first is the default button.
///
/// Thread: the main thread. Errors: std::logic_error for a name that Qt does not know.
void applyConventions(QWidget& window);

}  // namespace dunmora
