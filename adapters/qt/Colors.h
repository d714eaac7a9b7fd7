#pragma once

#include <QColor>

namespace dunmora {

/// The share of the text's colour in a text that is less important: still four and a half times as
/// light or as dark as its background (WCAG 2, contrast).
inline constexpr double kQuiet = 0.7;

/// Blends a share of one colour into another; works for light and dark text alike.
QColor mixed(const QColor& ground, const QColor& ink, double share);

}  // namespace dunmora
