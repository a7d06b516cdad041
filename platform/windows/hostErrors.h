#pragma once

#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// Raises the program's error for a GetLastError value: the one place where host failures get
/// numbers.
[[noreturn]] void RaiseHostError(unsigned long hostError);

/// UTF-8 as the host's 16-bit text, and back.
std::wstring WideText(const std::string& text);
std::string NarrowText(const std::wstring& text);

}  // namespace tessel
