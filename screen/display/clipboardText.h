#pragma once

#include <QString>

#include "screen/display/text/textSelection.h"

namespace tessel {

/// A range of the text for the clipboard: each line break becomes a single LF.
QString ClipboardText(const TextDisplay& text, TextRange range);

}  // namespace tessel
