#pragma once

namespace tessel {

/// Resets all state of the volume, including the directory table, to its initial values, and closes
/// all files: for a process that runs the program more than once.
void ResetVolume();

}  // namespace tessel
