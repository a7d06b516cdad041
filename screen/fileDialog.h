#pragma once

#include "platform/host.h"

namespace tessel {

/// Shows the common file dialog in the desktop's look and fills FileName and FileTitle. The checks
/// that the flags request (the file exists, ask before it is overwritten) are made here, on the
/// name with its default extension, because desktops differ in them. Raises 32755 as Host::ShowOpen
/// does.
void ShowFileDialog(CommonDialog& dialog, bool saving);

}  // namespace tessel
