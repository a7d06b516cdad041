#pragma once

#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// Raises the program's error for a GetLastError value: the one place that maps host errors to
/// numbers.
[[noreturn]] void RaiseHostError(unsigned long hostError);

/// Convert UTF-8 to the host's 16-bit text, and back.
std::wstring WideText(const std::string& text);
std::string NarrowText(const std::wstring& text);

}  // namespace tessel
