#pragma once

#include "platform/runtimeError.h"
#include "platform/textDisplay.h"

/// A row's content in the display, read through its cluster chain. Both empty the display, show
/// nothing for a file of size 0, and read every byte before they show it: STOP, and a read that
/// fails, end the view with what was shown. No messages.
namespace tessel {

/// The bytes as text.
void ShowFileText(Long row, TextDisplay& display);
/// The bytes as a hexadecimal dump, 16 a line.
void ShowFileDump(Long row, TextDisplay& display);

}  // namespace tessel
