#pragma once

#include <string>

namespace tessel {

/// SafeName for hosts with "/" paths, and for hosts with drive letters. Both are built on every
/// host, so that both are tested on every host.
std::string SafePosixName(const std::string& name);
std::string SafeWindowsName(const std::string& name);

}  // namespace tessel
