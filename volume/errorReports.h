#pragma once

#include <set>
#include <string>

#include "platform/runtimeError.h"

namespace tessel {

/// Returns the message for an image or a host file that cannot be opened: the error, for 75 a hint
/// of two lines about network shares, the path, and the error's cause if it has one. Lines are
/// separated by CR LF.
std::string OpenErrorReport(const RuntimeError& error, const std::string& path);

/// The step of a save that an error ended.
enum class SaveStep {
    kEnterFolder,  ///< entering the folder that the user chose
    kCreate,       ///< creating the file, or deleting the one that it replaces
    kReadImage,
    kWrite,
    kWriteText,
};

/// Shows the errors of one save command in message boxes, each with the error, the step, the path
/// and the cause.
class SaveErrors {
  public:
    /// With `manyFiles`, errors that differ only in the path are shown once, and the box says that
    /// others are only listed.
    explicit SaveErrors(bool manyFiles = false) : ManyFiles(manyFiles) {}
    void Show(SaveStep step, const RuntimeError& error, const std::string& path);

  private:
    bool ManyFiles;
    std::set<std::string> Shown;  // messages without their path
};

}  // namespace tessel
