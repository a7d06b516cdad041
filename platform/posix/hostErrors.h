#pragma once

#include "platform/runtimeError.h"

namespace tessel {

/// Raises the program's error for an errno value: the one place that maps host errors to numbers.
[[noreturn]] void RaiseHostError(int hostError);

/// As above for a failure to open or create `path`: tells a missing folder (76) from a missing file
/// (53), and a folder in the way (75) from a file in the way (58).
[[noreturn]] void RaiseOpenError(int hostError, const char* path);

}  // namespace tessel
