#pragma once

#include <string>

namespace tessel {

/// SafeName of the hosts with "/" paths, and of the hosts with drive letters. Both are built
/// everywhere, so that each can be tested anywhere.
std::string SafePosixName(const std::string& name);
std::string SafeWindowsName(const std::string& name);

}  // namespace tessel
