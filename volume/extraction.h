#pragma once

#include <string>

#include "platform/runtimeError.h"
#include "volume/errorReports.h"

/// Copying a row's cluster chain into a host file.
namespace tessel {

/// Copies the content of a row to the file at `path`, which replaces a visible file there (see
/// CreateTarget): a file cut at its size, anything else to the end of its chain. The file gets the
/// entry's modification time where that is a valid one. True when the copy ended normally; false
/// without an image, after STOP, and after an error, which a message box has reported. What was
/// written stays.
bool SaveEntryToFile(Long row, const std::string& path);

/// The copy alone, into the file that is open under kTargetFile, which it closes. `path` is for the
/// reports of its errors.
bool CopyEntry(Long row, const std::string& path, SaveErrors& errors);

}  // namespace tessel
