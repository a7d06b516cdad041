#pragma once

#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// The report of a file that cannot be opened, an image or a host file to write: the error, a hint
/// (on 75 about network shares, two lines), and the path. Lines end with CR LF, but for the last.
std::string OpenErrorReport(const RuntimeError& error, const std::string& path);

}  // namespace tessel
