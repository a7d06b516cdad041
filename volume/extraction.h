#pragma once

#include <string>

#include "platform/runtimeError.h"

/// Copying a row's cluster chain into a host file.
namespace tessel {

/// Copies the content of a row to the file at `path`, which replaces a visible file there: a file
/// cut at its size, anything else to the end of its chain. The file keeps the entry's modification
/// time where that is a valid one. True when the copy ended normally; false without an image, after
/// STOP, and after a failure, of which a message box has told. What was written stays. The image
/// itself is refused as the target (55) before anything is deleted; a target that cannot be deleted
/// raises its error to the caller.
bool SaveEntryToFile(Long row, const std::string& path);

/// Deletes the visible file at `path`, if one is there. Raises 55 when it is the image, or a file
/// being written, under whatever name; and what DeleteFile raises.
void DeleteExistingFile(const std::string& path);

}  // namespace tessel
