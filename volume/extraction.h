#pragma once

#include <string>

#include "platform/runtimeError.h"
#include "volume/errorReports.h"

/// Copying the content of a directory row to a host file.
namespace tessel {

/// Copies the content of directory row `row` to the file at `path`, and replaces a visible file
/// there (see CreateTarget). A file is cut at its size, anything else ends with its chain. The host
/// file gets the entry's modification time if that is valid. Returns true for a complete copy;
/// false without an image, after STOP, and after an error, which is shown in a message box. An
/// incomplete file is kept.
bool SaveEntryToFile(Long row, const std::string& path);

/// As SaveEntryToFile, but copies to the file that is open under kTargetFile, and closes it. `path`
/// is shown with errors.
bool CopyEntry(Long row, const std::string& path, SaveErrors& errors);

}  // namespace tessel
