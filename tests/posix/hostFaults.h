#pragma once

#include <array>
#include <string>

namespace tessel {

/// The calls of the host that saving makes and that can be made to fail.
inline constexpr std::array kHostCalls = {"openat",   "mkdirat", "fstatat", "fstat",    "renameat",
                                          "unlinkat", "write",   "close",   "futimens", "fchdir"};

/// While one lives, the `nth` (from 1) call of this name fails with an input/output error. A file
/// that is not closed then is closed all the same.
class HostFault {
  public:
    HostFault(const std::string& call, int nth);
    ~HostFault();
    HostFault(const HostFault&) = delete;
    HostFault& operator=(const HostFault&) = delete;
    /// Whether there was such a call.
    static bool Happened();
};

}  // namespace tessel
