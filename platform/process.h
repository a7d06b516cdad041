#pragma once

namespace tessel {

/// Call first in main. Makes the standard streams binary, and stops the host from loading libraries
/// from the current folder, which may contain files saved from an image.
void PrepareProcess();

}  // namespace tessel
