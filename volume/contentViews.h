#pragma once

#include "platform/runtimeError.h"
#include "platform/textDisplay.h"

/// Show the content of a directory row, read through its cluster chain. Both clear the display,
/// show nothing for a file of size 0, and append text only for bytes that could be read. On STOP,
/// and when a read fails, the display keeps the text so far; no message is shown.
namespace tessel {

/// The bytes as text.
void ShowFileText(Long row, TextDisplay& display);
/// The bytes as a hexadecimal dump, 16 per line.
void ShowFileDump(Long row, TextDisplay& display);

}  // namespace tessel
