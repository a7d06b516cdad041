#pragma once

#include "platform/runtimeError.h"

namespace tessel {

/// Raises the program's error for an errno value: the one place that maps host errors to numbers.
[[noreturn]] void RaiseHostError(int hostError);

/// As above for a failure to open `path` for reading: distinguishes a missing folder (76) from a
/// missing file (53).
[[noreturn]] void RaiseOpenError(int hostError, const char* path);

}  // namespace tessel
