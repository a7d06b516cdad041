#pragma once

#include <vector>

#include "platform/host.h"

namespace tessel {

/// Aborts the process, with `what` on standard error, unless the condition holds.
void Require(bool condition, const char* what);

/// Checks what the offset box offers: 0 first, then what can be chosen, each a number that the text
/// line accepts, then the rest; a bounded number of lines, each one line of text.
void CheckOffsetLines(const std::vector<InputChoice>& lines);

}  // namespace tessel
