#include "volume/errorReports.h"

#include "platform/host.h"

namespace tessel {
namespace {

constexpr const char* kNetworkShareHint =
    "This may be caused by a defect of the platform's file layer that prevents opening files on a "
    "network share that is not marked as FULL control in MS windows NT and later!\r\n"
    "The network share MUST be Read and Writable (FULL control) even if you open the file as R/O";
constexpr const char* kHiddenHint = "File may be Hidden or System";
constexpr const char* kLineEnd = "\r\n";

/// `report` with `line` appended, unless that is "".
std::string WithLine(std::string report, const std::string& line) {
    if (line.empty()) return report;
    if (!report.ends_with(kLineEnd)) report += kLineEnd;
    return report + line;
}

std::string SaveErrorReport(SaveStep step, const RuntimeError& error, const std::string& path) {
    switch (step) {
        case SaveStep::kEnterFolder:
            return WithLine(ErrorReport(error) + "\r\nError entering Folder " + path, error.Cause);
        case SaveStep::kReadImage:
            return WithLine(ErrorReport(error) + "\r\nError reading Disk Image " + path + kLineEnd,
                            error.Cause);
        case SaveStep::kWrite:
            return WithLine(ErrorReport(error) + "\r\nError Writting File " + path + kLineEnd,
                            error.Cause);
        case SaveStep::kWriteText:
            return WithLine(
                ErrorReport(error) + "\r\nThe text was not saved completely:\r\n" + path,
                error.Cause);
        case SaveStep::kCreate:
            break;
    }
    return OpenErrorReport(error, path);
}

}  // namespace

std::string OpenErrorReport(const RuntimeError& error, const std::string& path) {
    const char* hint = error.Number == kPathFileAccessError ? kNetworkShareHint : kHiddenHint;
    return WithLine(ErrorReport(error) + kLineEnd + hint + kLineEnd + path, error.Cause);
}

void SaveErrors::Show(SaveStep step, const RuntimeError& error, const std::string& path) {
    if (ManyFiles && !Shown.insert(SaveErrorReport(step, error, "")).second) return;
    const bool isFile = step != SaveStep::kEnterFolder;
    TheHost.MessageBox(
        WithLine(SaveErrorReport(step, error, path),
                 ManyFiles && isFile ? "Other files with this error are only listed." : ""),
        "Error");
}

}  // namespace tessel
