#pragma once

#include <QString>

#include "screen/display/text/textSelection.h"

namespace tessel {

/// Returns a range of the text for the clipboard, with every line break as a single LF.
QString ClipboardText(const TextDisplay& text, TextRange range);

}  // namespace tessel
