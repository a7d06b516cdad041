#pragma once

#include <set>
#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// The report of a file that cannot be opened, an image or a host file to write: the error, a hint
/// (for 75 two lines about network shares), and the path; then the error's cause, if it has one.
/// Lines end with CR LF, except for the last.
std::string OpenErrorReport(const RuntimeError& error, const std::string& path);

/// What a save was doing when an error ended it.
enum class SaveStep {
    kEnterFolder,  ///< entering the folder that the user chose
    kCreate,       ///< creating the file, or deleting the one that it replaces
    kReadImage,
    kWrite,
    kWriteText,
};

/// Shows the errors of one save command, each in a message box with the error, the step, the path
/// and the cause.
class SaveErrors {
  public:
    /// With `manyFiles`, an error is shown once: those that differ from it in nothing except the
    /// path are left out, and each box says so.
    explicit SaveErrors(bool manyFiles = false) : ManyFiles(manyFiles) {}
    void Show(SaveStep step, const RuntimeError& error, const std::string& path);

  private:
    bool ManyFiles;
    std::set<std::string> Shown;  // reports without their path
};

}  // namespace tessel
