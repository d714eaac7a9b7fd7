#pragma once

#include "text/DisplayText.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <string_view>

namespace dunmora {

/// Returns the text as one line that is safe to draw (`windowText`). A text longer than `maxBytes`
/// is cut between two characters and ends with an ellipsis.
QString oneLineText(std::string_view utf8, std::size_t maxBytes = kMaxShownBytes);

/// Returns the HTML of a tool tip with these paragraphs; markup in them is shown literally.
QString toolTipText(const QStringList& paragraphs);

}  // namespace dunmora
