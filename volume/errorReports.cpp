#include "volume/errorReports.h"

namespace tessel {
namespace {

constexpr const char* kNetworkShareHint =
    "This may be caused by a defect of the platform's file layer that prevents opening files on a "
    "network share that is not marked as FULL control in MS windows NT and later!\r\n"
    "The network share MUST be Read and Writable (FULL control) even if you open the file as R/O";
constexpr const char* kHiddenHint = "File may be Hidden or System";

}  // namespace

std::string OpenErrorReport(const RuntimeError& error, const std::string& path) {
    const char* hint = error.Number == kPathFileAccessError ? kNetworkShareHint : kHiddenHint;
    return ErrorReport(error) + "\r\n" + hint + "\r\n" + path;
}

}  // namespace tessel
