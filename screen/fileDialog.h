#pragma once

#include "platform/host.h"

namespace tessel {

/// The common file dialog in the desktop's own look. What its flags ask for (a file that exists, a
/// question before one is overwritten) is asked here and about the name with its default extension,
/// since desktops differ in it. Raises 32755 as Host says.
void ShowFileDialog(CommonDialog& dialog, bool saving);

}  // namespace tessel
